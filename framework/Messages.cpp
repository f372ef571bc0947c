#include "framework/Messages.h"

#include <poll.h>

#include <atomic>
#include <cstdio>
#include <memory>
#include <utility>

#include "framework/Baton.h"
#include "framework/EventLoop.h"
#include "framework/Pipe.h"
#include "framework/Thread.h"
#include "framework/Toolkit.h"

namespace {

constexpr int kMillisecondsBetweenLooks = 50;

std::atomic<bool> silent = false;

/// Asks the main thread to show the message, and waits. The task holds the other end of a pipe, which closes
/// when the task goes, also when that never runs. Where there are no descriptors for a pipe, the thread looks
/// every now and then whether the task is gone.
void ShowFromThread(const String& text, Thread& thread) {
  Pipe dismissed = Pipe::Open();
  auto other = std::make_shared<Descriptor>(dismissed.TakeWriteEnd());
  const std::weak_ptr<Descriptor> task = other;
  EventLoop::Post([text, other = std::move(other)] { EventLoop::Toolkit()->ShowMessage(text); });
  {
    const Baton::Pause pause;
    pollfd watched[] = {{dismissed.ReadFd(), POLLIN, 0}, {thread.KillFd(), POLLIN, 0}};
    const int patience = dismissed.ReadFd() < 0 || thread.KillFd() < 0 ? kMillisecondsBetweenLooks : -1;
    while (!task.expired() && !thread.Killed()) poll(watched, 2, patience);
  }
  if (thread.Killed()) thread.Unwind();
}

}  // namespace

void MsgBox(const String& text) {
  if (silent) {
    std::fprintf(stderr, "%s\n", text.Utf8().c_str());
  } else if (Thread* thread = Thread::Current()) {
    ShowFromThread(text, *thread);
  } else {
    EventLoop::UpdateScreen();
    const Baton::Pause pause;
    EventLoop::Toolkit()->ShowMessage(text);
  }
}

void SilenceMessages() {
  silent = true;
}
