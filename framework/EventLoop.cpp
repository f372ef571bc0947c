#include "framework/EventLoop.h"

#include <atomic>
#include <deque>
#include <mutex>
#include <utility>

#include "framework/Baton.h"
#include "framework/Callback.h"
#include "framework/MainThread.h"
#include "framework/Screen.h"
#include "framework/Thread.h"
#include "framework/Toolkit.h"

namespace {

using Callback = std::function<void()>;

/// Leaves a handler that waits on the main thread while the program quits.
struct Leaving {};

struct State {
  std::unique_ptr<Toolkit> toolkit;
  Ref<MenuBar> (*applicationBar)() = nullptr;
  int handlers = 0;               // that run; more than one while a message box is up
  std::deque<Callback> deferred;  // events that came in the middle of a handler; main thread only
  bool stale = false;
  bool updating = false;
  Area usable;
  std::atomic<bool> quitting = false;
  std::atomic<bool> end = false;  // what is asked of the toolkit at its next wake
  std::mutex postedMutex;
  std::deque<Callback> posted;
};

State& TheLoop() {
  static State state;
  return state;
}

/// What lower floors need of the loop.
class LoopServices final : public Screen, public MainThread {
 public:
  void MarkOutOfDate() override {
    State& loop = TheLoop();
    if (std::exchange(loop.stale, true)) return;
    // The main thread hands the change over at the end of what it is doing.
    if (Thread::Current() && loop.toolkit) loop.toolkit->Wake();
  }
  void ThreadHasChanged() override { MarkOutOfDate(); }
  void Present(Window& window) override {
    if (Thread::Current() || EventLoop::Quitting()) return;
    EventLoop::UpdateScreen();
    TheLoop().toolkit->Present(window);
  }
  Area Usable() override { return TheLoop().usable; }

  void WaitForInput(const std::vector<int>& descriptors, int milliseconds) override {
    EventLoop::UpdateScreen();
    TheLoop().toolkit->WaitForInput(descriptors, milliseconds);
  }
  void LeaveWhenQuitting() override {
    if (EventLoop::Quitting()) throw Leaving();
  }
};

Callback TakePosted() {
  State& loop = TheLoop();
  const std::lock_guard lock(loop.postedMutex);
  if (loop.posted.empty() || loop.quitting) return nullptr;
  Callback task = std::move(loop.posted.front());
  loop.posted.pop_front();
  return task;
}

/// Wakes the loop for what was posted while a handler ran, which RunPending passes over.
void WakeForPosted() {
  State& loop = TheLoop();
  const std::lock_guard lock(loop.postedMutex);
  if (!loop.posted.empty()) loop.toolkit->Wake();
}

}  // namespace

void EventLoop::Start(std::unique_ptr<::Toolkit> toolkit, Ref<MenuBar> (*applicationBar)()) {
  static LoopServices services;
  State& loop = TheLoop();
  loop.toolkit = std::move(toolkit);
  loop.applicationBar = applicationBar;
  loop.usable = loop.toolkit->ScreenArea();
  Screen::Install(services);
  MainThread::Install(services);
}

void EventLoop::Run() {
  if (!Quitting()) TheLoop().toolkit->RunLoop();
}

void EventLoop::EndSoon() {
  TheLoop().end = true;
  TheLoop().toolkit->Wake();
}

void EventLoop::Shutdown() {
  TheLoop().deferred.clear();
  TheLoop().toolkit.reset();
}

bool EventLoop::BeginQuit() {
  return !TheLoop().quitting.exchange(true);
}

bool EventLoop::Quitting() {
  return TheLoop().quitting;
}

void EventLoop::DeliverOrThrow(std::function<void()> event) {
  State& loop = TheLoop();
  if (loop.quitting) return;
  if (loop.handlers > 0 || Baton::HeldHere()) {
    loop.deferred.push_back(std::move(event));
    return;
  }
  const Baton::Turn turn;
  RunHandler(event);
  EndEvent();
  WakeForPosted();
}

void EventLoop::Record(const std::function<void()>& change) {
  const Baton::Turn turn;
  change();
  UpdateScreen();
}

void EventLoop::RunPending() {
  State& loop = TheLoop();
  if (loop.end.exchange(false)) loop.toolkit->EndLoop();
  const bool inHandler = Baton::HeldHere();
  {
    const Baton::Turn turn;
    if (inHandler || loop.handlers > 0)
      UpdateScreen();
    else
      EndEvent();
  }
  if (inHandler) return;
  while (const Callback task = TakePosted()) task();
}

void EventLoop::Post(std::function<void()> task) {
  State& loop = TheLoop();
  {
    const std::lock_guard lock(loop.postedMutex);
    loop.posted.push_back(std::move(task));
  }
  loop.toolkit->Wake();
}

void EventLoop::RunHandler(const std::function<void()>& callback) {
  const struct Running {
    Running() { ++TheLoop().handlers; }
    ~Running() { --TheLoop().handlers; }
  } running;
  try {
    RunCallback(callback);
  } catch (const Leaving&) {
  }
}

void EventLoop::EndEvent() {
  State& loop = TheLoop();
  const auto isWaiting = [&loop] { return !loop.deferred.empty() && !loop.quitting; };
  do {
    while (isWaiting()) {
      const Callback next = std::move(loop.deferred.front());
      loop.deferred.pop_front();
      RunHandler(next);
    }
    UpdateScreen();  // which waits for the first picture of a new window, and more may come meanwhile
  } while (isWaiting());
}

void EventLoop::UpdateScreen() {
  State& loop = TheLoop();
  loop.usable = loop.toolkit->ScreenArea();
  if (loop.updating) return;  // the toolkit waits for a picture, and what changes meanwhile comes after it
  const struct Updating {
    bool& on;
    explicit Updating(bool& flag) : on(flag) { on = true; }
    ~Updating() { on = false; }
  } updating(loop.updating);
  while (std::exchange(loop.stale, false)) loop.toolkit->Update(Window::OpenWindows(), loop.applicationBar());
}

::Toolkit* EventLoop::Toolkit() {
  return TheLoop().toolkit.get();
}
