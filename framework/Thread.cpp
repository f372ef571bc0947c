#include "framework/Thread.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <new>
#include <system_error>
#include <utility>
#include <vector>

#include "framework/Baton.h"
#include "framework/Callback.h"
#include "framework/MainThread.h"

namespace {

constexpr auto kTimeToComeBack = std::chrono::milliseconds(200);

struct Ending {};  // unwinds a killed thread; no code of the program catches it

thread_local Thread* current = nullptr;

/// Both guarded by the baton, and there until the very end of the process.
std::vector<Thread*> running;
/// Threads whose run has ended. They are joined before the next run and at the end.
std::vector<std::thread> leaving;

void Join(std::vector<std::thread> threads) {
  for (std::thread& thread : threads) thread.join();
}

[[noreturn]] void CannotRun(int error) {
  std::fprintf(stderr, "No thread can be started: %s\n", std::strerror(error));
  throw RuntimeException();
}

}  // namespace

Thread* Thread::Current() {
  return current;
}

void Thread::Run() {
  if (running_) throw ThreadAlreadyRunningException();
  Join(std::exchange(leaving, {}));
  Pipe kill = Pipe::Open();
  if (kill.ReadFd() < 0) CannotRun(errno);
  try {
    // Nothing is allocated once the thread runs.
    running.reserve(running.size() + 1);
    leaving.reserve(leaving.size() + running.size() + 1);
    thread_ = std::thread([self = Ref<Thread>(this)] { self->Body(); });  // which waits for the baton
  } catch (const std::system_error& error) {
    CannotRun(error.code().value());
  } catch (const std::bad_alloc&) {
    CannotRun(ENOMEM);
  }
  kill_ = std::move(kill);
  running_ = true;
  killed_ = suspended_ = yieldRequested_ = false;
  sleep_ = 0;
  running.push_back(this);
  MainThread::Installed().ThreadHasChanged();
}

void Thread::Body() {
  current = this;
  const Baton::Turn turn;
  try {
    RunCallback([this] {
      if (!killed_) Event_Run();
    });
  } catch (const Ending&) {
  }
  if (yieldRequested_) Baton::DropReason();
  std::erase(running, this);
  if (thread_.joinable()) leaving.push_back(std::move(thread_));
  kill_ = Pipe();
  running_ = false;
  MainThread::Installed().ThreadHasChanged();
}

bool Thread::RunsFor(const Object& window) {
  return std::any_of(running.begin(), running.end(),
                     [&](const Thread* thread) { return thread->Window == &window; });
}

void Thread::RequestYield() {
  if (!yieldRequested_) Baton::AddReason();
  yieldRequested_ = true;
}

void Thread::Kill() {
  if (!running_ || killed_) return;
  killed_ = true;
  RequestYield();
  [[maybe_unused]] const auto written = write(kill_.WriteFd(), "k", 1);
  Resume();
  if (current == this) Unwind();
}

void Thread::Suspend() {
  suspended_ = true;
  if (running_) RequestYield();
}

void Thread::Resume() {
  suspended_ = false;
  suspended_.notify_one();
}

void Thread::Sleep(int milliseconds) {
  sleep_ = std::max(milliseconds, 0);
  if (running_) RequestYield();
}

void Thread::Unwind() {
  throw Ending();
}

void Thread::Yield() {
  const int sleep = std::exchange(sleep_, 0);
  {
    const Baton::Pause pause;
    pollfd killFd{kill_.ReadFd(), POLLIN, 0};
    if (sleep > 0) poll(&killFd, 1, sleep);
    while (suspended_ && !killed_) suspended_.wait(true);
  }
  if (killed_) Unwind();
  if (yieldRequested_ && sleep_ == 0 && !suspended_) {
    yieldRequested_ = false;
    Baton::DropReason();
  }
}

Thread::Absence::Absence(Thread& thread) : thread_(thread) {
  thread_.whereabouts_ = Whereabouts::kAway;  // first: whoever has just killed us looks for it next
  if (!thread_.killed_) return;
  thread_.ComeBack();
  thread_.Unwind();
}

Thread::Absence::~Absence() {
  thread_.ComeBack();
}

void Thread::ComeBack() {
  Whereabouts expected = Whereabouts::kAway;
  if (whereabouts_.compare_exchange_strong(expected, Whereabouts::kHere)) return;
  for (;;) pause();  // what the thread would come back to is being taken apart
}

/// Whether a killed thread has to be left behind. One that has come back does not leave again.
bool Thread::StaysAway() {
  const auto deadline = std::chrono::steady_clock::now() + kTimeToComeBack;
  while (whereabouts_ == Whereabouts::kAway) {
    Whereabouts expected = Whereabouts::kAway;
    if (std::chrono::steady_clock::now() >= deadline)
      return whereabouts_.compare_exchange_strong(expected, Whereabouts::kLeftBehind);
    poll(nullptr, 0, 1);
  }
  return false;
}

void Thread::KillAll() {
  for (Thread* thread : running)
    if (thread != current) thread->Kill();
}

void Thread::EndAll() {
  std::vector<std::thread> threads;
  {
    const Baton::Turn turn;
    threads = std::exchange(leaving, {});
    KillAll();
    for (Thread* thread : std::vector(running)) {
      if (thread->StaysAway()) {
        thread->thread_.detach();
        std::erase(running, thread);
      } else {
        threads.push_back(std::move(thread->thread_));
      }
    }
  }
  Join(std::move(threads));
}

void Thread::YieldCurrent() {
  if (current) current->Yield();
}
