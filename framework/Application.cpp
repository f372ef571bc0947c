#include "framework/Application.h"

#include <cxxabi.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <typeinfo>
#include <utility>

#include "framework/Baton.h"
#include "framework/Pipe.h"
#include "framework/Thread.h"
#include "framework/Toolkit.h"

namespace {

/// A message that a thread asks the main thread to show.
struct MessageRequest {
  String text;
  std::atomic<bool> dismissed = false;
};

/// Leaves a handler that waits on the main thread while the program quits.
struct Leaving {};

using Callback = std::function<void()>;

struct Run {
  std::unique_ptr<Toolkit> toolkit;
  Ref<Application> application;
  std::vector<Ref<Window>> windows;  // in the order in which they were opened
  void (*callbackRoutine)(const Callback&) = _CallFunctionWithExceptionHandling;
  int handlers = 0;               // that run on the main thread, one in the other's message box
  std::deque<Callback> deferred;  // events that came in the middle of a handler; main thread only
  std::thread::id mainThread;
  Area screen;
  bool stale = false;
  std::atomic<bool> quitting = false;
  std::atomic<bool> endLoop = false;  // what is asked of the toolkit at its next wake
  std::atomic<bool> quiet = false;
  std::atomic<bool> displayGone = false;
  std::atomic<int> exitStatus = 0;
  std::mutex requestsMutex;
  std::deque<std::shared_ptr<MessageRequest>> requests;
};

Run& TheRun() {
  static Run run;
  return run;
}

/// Runs a callback of the program on the main thread, with the baton.
void RunCallback(const Callback& callback) {
  Run& run = TheRun();
  ++run.handlers;
  try {
    run.callbackRoutine(callback);
  } catch (const Leaving&) {
  }
  --run.handlers;
}

/// Runs what came in the middle of the handlers that have ended now.
void RunDeferred() {
  Run& run = TheRun();
  while (!run.deferred.empty() && !run.quitting) {
    const Callback next = std::move(run.deferred.front());
    run.deferred.pop_front();
    RunCallback(next);
  }
}

void EndLoopSoon() {
  TheRun().endLoop = true;
  TheRun().toolkit->Wake();
}

/// On the main thread, with the baton.
void UpdateScreen() {
  Run& run = TheRun();
  run.screen = run.toolkit->ScreenArea();
  if (!std::exchange(run.stale, false)) return;
  run.toolkit->Update(run.windows, run.application ? run.application->MenuBar : nullptr);
}

/// At the end of an event: hands over what has changed, and runs what has come in meanwhile, for a new
/// window's first picture is waited for there.
void EndEvent() {
  do {
    RunDeferred();
    UpdateScreen();
  } while (!TheRun().deferred.empty() && !TheRun().quitting);
}

void ShowRequestedMessages() {
  Run& run = TheRun();
  for (;;) {
    std::shared_ptr<MessageRequest> request;
    {
      const std::lock_guard lock(run.requestsMutex);
      if (run.requests.empty() || run.quitting) return;
      request = run.requests.front();
      run.requests.pop_front();
    }
    run.toolkit->ShowMessage(request->text);
    request->dismissed = true;
  }
}

/// A message that was asked for in the middle of a handler has been passed over then.
void WakeForMessages() {
  Run& run = TheRun();
  const std::lock_guard lock(run.requestsMutex);
  if (!run.requests.empty()) run.toolkit->Wake();
}

void MsgBoxFromThread(const String& text, Thread& thread) {
  constexpr int kTick = 20;  // milliseconds between two looks at whether the message has been dismissed
  const auto request = std::make_shared<MessageRequest>();
  request->text = text;
  {
    const std::lock_guard lock(TheRun().requestsMutex);
    TheRun().requests.push_back(request);
  }
  TheRun().toolkit->Wake();
  {
    const Baton::Pause pause;
    pollfd killed{thread.KillFd(), POLLIN, 0};
    while (!request->dismissed && !thread.Killed()) poll(&killed, 1, kTick);
  }
  if (thread.Killed()) thread.Unwind();
}

/// A quit from outside, out of whatever the main thread is doing: threads end and the application is closed;
/// only its windows are past closing. Also run by `exit`, with which a toolkit may end the process.
void LeaveWithoutDisplay() {
  Run& run = TheRun();
  if (!run.application) return;  // the ordinary end
  run.quiet = true;
  run.quitting = true;
  const Baton::Pause pause;
  Thread::EndAll();
  const Baton::Turn turn;
  RunCallback([&] { run.application->Event_Close(); });
  std::_Exit(EXIT_FAILURE);
}

struct EditItem {
  const char* name;
  EditCommand command;
};

constexpr std::array kEditItems{
    EditItem{"EditUndo", EditCommand::kUndo}, EditItem{"EditCut", EditCommand::kCut},
    EditItem{"EditCopy", EditCommand::kCopy}, EditItem{"EditPaste", EditCommand::kPaste},
    EditItem{"EditClear", EditCommand::kClear}};

const EditItem* EditItemNamed(const String& name) {
  const auto found = std::find_if(kEditItems.begin(), kEditItems.end(),
                                  [&](const EditItem& item) { return name == String(item.name); });
  return found == kEditItems.end() ? nullptr : &*found;
}

bool DoesSomething(const MenuItem& item, const MenuHandlers& application, const Ref<Window>& front) {
  if (!item.Children().empty() || item.HasAction() || application.Has(item.Name)) return true;
  if (front && front->Handlers().Has(item.Name)) return true;
  const EditItem* edit = EditItemNamed(item.Name);
  return edit && TheRun().toolkit->CanEdit(edit->command);
}

void EnableItems(const MenuItem& parent, const MenuHandlers& application, const Ref<Window>& front) {
  for (const auto& item : parent.Children()) {
    if (item->AutoEnable) item->Enabled = DoesSomething(*item, application, front);
    EnableItems(*item, application, front);
  }
}

}  // namespace

void Application::_AddMenuHandler(const String& name, MenuHandlers::Handler handler) {
  handlers_.Add(name, std::move(handler));
}

Ref<Application> Application::Current() {
  return TheRun().application;
}

void Application::Register(const Ref<Application>& application) {
  TheRun().application = application;
}

void Application::Start(int& argc, char** argv) {
  // A command that ends early must not end us with it.
  std::signal(SIGPIPE, SIG_IGN);
  TheRun().mainThread = std::this_thread::get_id();
  TheRun().toolkit = Toolkit::Make(argc, argv);
  TheRun().screen = TheRun().toolkit->ScreenArea();
}

void Application::RunFrameworkInitialization(void (*lateStartup)()) {
  const Baton::Turn turn;
  RunCallback([] { TheRun().application->Event_Open(); });
  [[maybe_unused]] static const int registered = std::atexit(LeaveWithoutDisplay);
  bool started = false;
  RunCallback([&] {
    lateStartup();
    started = true;
  });
  if (!started) Quit(EXIT_FAILURE);  // without its window nobody could ever end the program
  RunDeferred();
  UpdateScreen();
  // With the baton still here: the picture of a window comes before the work of a thread that it has started.
  const std::vector<Ref<Window>> shown = TheRun().windows;
  for (const auto& window : shown) Present(*window);
}

void Application::RunEventLoop() {
  Run& run = TheRun();
  if (!run.quitting) run.toolkit->RunLoop();
  if (run.displayGone) LeaveWithoutDisplay();
  run.quitting = true;
  Thread::EndAll();

  const Baton::Turn turn;
  while (!run.windows.empty()) {
    const Ref<Window> last = run.windows.back();
    RunCallback([&] { last->Close(); });
    Forget(*last);  // also a window whose close event has raised something goes
  }
  UpdateScreen();
  RunCallback([&] { run.application->Event_Close(); });
}

int Application::Shutdown() {
  Run& run = TheRun();
  run.application = nullptr;
  run.deferred.clear();
  run.toolkit.reset();
  return run.exitStatus;
}

void Application::Deliver(std::function<void()> event) {
  Run& run = TheRun();
  if (run.quitting) return;
  if (run.handlers > 0 || Baton::HeldHere()) {
    run.deferred.push_back(std::move(event));
    return;
  }
  const Baton::Turn turn;
  RunCallback(event);
  EndEvent();
  WakeForMessages();
}

void Application::Note(const std::function<void()>& change) {
  const Baton::Turn turn;
  change();
  UpdateScreen();
}

void Application::RunPending() {
  Run& run = TheRun();
  if (run.endLoop.exchange(false)) run.toolkit->EndLoop();
  const bool inHandler = Baton::HeldHere();
  {
    const Baton::Turn turn;
    if (inHandler || run.handlers > 0)
      UpdateScreen();
    else
      EndEvent();
  }
  if (!inHandler) ShowRequestedMessages();
}

void Application::RefreshMenus(const Ref<Window>& front) {
  Deliver([front] {
    const Ref<Application> application = Current();
    if (application->MenuBar) EnableItems(*application->MenuBar, application->handlers_, front);
    application->Event_EnableMenuItems();
  });
}

void Application::Choose(const Ref<MenuItem>& item, const Ref<Window>& front) {
  Deliver([item, front] {
    if (!item->Enabled) return;
    if (front && front->IsOpen() && front->Handlers().Run(item->Name)) return;
    if (Current()->handlers_.Run(item->Name) || item->Event_Action()) return;
    if (const EditItem* edit = EditItemNamed(item->Name)) TheRun().toolkit->Edit(edit->command);
  });
}

void Application::ScreenChanged() {
  Run& run = TheRun();
  if (run.stale) return;
  run.stale = true;
  // The main thread hands the change over at the end of what it is doing.
  if (Thread::Current() && run.toolkit) run.toolkit->Wake();
}

void Application::Place(Window& window) {
  const Run& run = TheRun();
  const auto centreOn = [&](const Area& area) {
    window.Left = area.Left + (area.Width - window.Width) / 2;
    window.Top = area.Top + (area.Height - window.Height) / 2;
  };
  constexpr int kDefaultOffset = 40;  // pixels from the corner of the screen
  if (window.Placement == Window::kMainScreen) {
    centreOn(run.screen);
  } else if (window.Placement == Window::kParentWindow) {
    const auto& parent = run.windows.front();  // the window the program opened first is its main window
    if (parent.Get() == &window)
      centreOn(run.screen);
    else
      centreOn({parent->Left, parent->Top, parent->Width, parent->Height});
  } else {
    window.Left = run.screen.Left + kDefaultOffset;
    window.Top = run.screen.Top + kDefaultOffset;
  }
}

void Application::Present(Window& window) {
  Run& run = TheRun();
  if (Thread::Current() || run.quitting) return;
  UpdateScreen();
  run.toolkit->Present(window);
}

void Application::Open(const Ref<Window>& window) {
  TheRun().windows.push_back(window);
  ScreenChanged();
}

void Application::Forget(Window& window) {
  std::erase_if(TheRun().windows, [&](const Ref<Window>& open) { return open.Get() == &window; });
  ScreenChanged();
}

const std::vector<Ref<Window>>& Application::OpenWindows() {
  return TheRun().windows;
}

void Application::WaitForInput(const std::vector<int>& descriptors, int milliseconds) {
  UpdateScreen();
  TheRun().toolkit->WaitForInput(descriptors, milliseconds);
}

void Application::LeaveWhenQuitting() {
  if (TheRun().quitting) throw Leaving();
}

void Application::QuitFromOutside() {
  TheRun().quiet = true;
  TheRun().quitting = true;
  EndLoopSoon();  // and the end of a message that has come up since the program quits
}

void Application::DisplayHasGone() {
  constexpr auto kTimeToLeave = std::chrono::seconds(2);
  Run& run = TheRun();
  if (std::this_thread::get_id() == run.mainThread) {
    LeaveWithoutDisplay();
  } else if (run.toolkit) {
    run.displayGone = true;
    QuitFromOutside();
    std::this_thread::sleep_for(kTimeToLeave);  // in which the main thread ends the process
  }
}

bool Application::Quitting() {
  return TheRun().quitting;
}

::Toolkit* Application::Toolkit() {
  return TheRun().toolkit.get();
}

void Quit(int exitStatus) {
  Run& run = TheRun();
  if (run.quitting.exchange(true)) return;
  run.exitStatus = exitStatus;
  Thread::KillAll();
  EndLoopSoon();
}

void MsgBox(const String& text) {
  Run& run = TheRun();
  if (run.quiet) {
    std::fprintf(stderr, "%s\n", text.Utf8().c_str());
  } else if (Thread* thread = Thread::Current()) {
    MsgBoxFromThread(text, *thread);
  } else {
    UpdateScreen();
    const Baton::Pause pause;
    run.toolkit->ShowMessage(text);
  }
}

void ShowURL(const String& address) {
  TheRun().toolkit->OpenAddress(address);
}

namespace {

std::string ClassName(const std::exception& exception) {
  const char* const mangled = typeid(exception).name();
  int failed = 0;
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(mangled, nullptr, nullptr, &failed), std::free);
  return name ? name.get() : mangled;
}

void TellOfException(const std::string& name) {
  MsgBox("An exception of the class " + String(name) + " was not handled.");
}

}  // namespace

void _CallFunctionWithExceptionHandling(const std::function<void()>& callback) {
  try {
    callback();
  } catch (const RuntimeException& exception) {
    TellOfException(exception.what());
  } catch (const std::exception& exception) {  // of a library, which says what happened and not what it is
    std::fprintf(stderr, "%s\n", exception.what());
    TellOfException(ClassName(exception));
  }
}

void InstallCallbackRoutine(void (*routine)(const std::function<void()>&)) {
  TheRun().callbackRoutine = routine;
}

Ref<Window> _GetImplicitWindow(const String& name) {
  for (const auto& window : TheRun().windows)
    if (window->ImplicitName().Identical(name)) return window;
  return nullptr;
}
