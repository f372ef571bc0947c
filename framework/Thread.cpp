#include "framework/Thread.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "framework/Application.h"
#include "framework/Baton.h"

namespace {

struct Ending {};  // unwinds a killed thread; no code of the program catches it

thread_local Thread* current = nullptr;

std::vector<Thread*>& Running() {  // guarded by the baton
  static std::vector<Thread*> running;
  return running;
}

constexpr int kSuspendedTick = 20;  // milliseconds between two looks of a suspended thread

}  // namespace

Thread* Thread::Current() {
  return current;
}

Thread::~Thread() {
  if (!thread_.joinable()) return;
  // The last reference may have been the running body's own.
  if (thread_.get_id() == std::this_thread::get_id())
    thread_.detach();
  else
    thread_.join();
}

void Thread::Run() {
  if (running_) throw ThreadAlreadyRunningException();
  if (thread_.joinable()) thread_.join();
  running_ = true;
  killed_ = suspended_ = lookUp_ = false;
  sleep_ = 0;
  kill_ = Pipe::Open();
  Running().push_back(this);
  thread_ = std::thread([self = Ref<Thread>(this)] { self->Body(); });
}

void Thread::Body() {
  current = this;
  const Baton::Turn turn;
  try {
    _CallFunctionWithExceptionHandling([this] {
      if (!killed_) Event_Run();
    });
  } catch (const Ending&) {
  }
  if (lookUp_) Baton::Want(-1);
  std::erase(Running(), this);
  kill_ = Pipe();
  running_ = false;
}

void Thread::LookUp() {
  if (!lookUp_) Baton::Want(+1);
  lookUp_ = true;
}

void Thread::Kill() {
  if (!running_ || killed_) return;
  killed_ = true;
  LookUp();
  if (kill_.WriteFd() >= 0) [[maybe_unused]]
    const auto written = write(kill_.WriteFd(), "k", 1);
  if (current == this) Unwind();
}

void Thread::Suspend() {
  suspended_ = true;
  if (running_) LookUp();
}

void Thread::Resume() {
  suspended_ = false;
}

void Thread::Sleep(int milliseconds) {
  sleep_ = std::max(milliseconds, 0);
  if (running_) LookUp();
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
    while (suspended_ && !killed_) poll(&killFd, 1, kSuspendedTick);
  }
  if (killed_) Unwind();
  if (lookUp_ && sleep_ == 0 && !suspended_) {
    lookUp_ = false;
    Baton::Want(-1);
  }
}

void Thread::EndAll() {
  std::vector<Ref<Thread>> threads;
  {
    const Baton::Turn turn;
    for (Thread* thread : Running()) threads.emplace_back(thread);
    for (const auto& thread : threads) thread->Kill();
  }
  for (const auto& thread : threads)
    if (thread->thread_.joinable()) thread->thread_.join();
}

void Thread::YieldCurrent() {
  if (current) current->Yield();
}
