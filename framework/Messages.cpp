#include "framework/Messages.h"

#include <poll.h>

#include <atomic>
#include <cstdio>
#include <memory>

#include "framework/Baton.h"
#include "framework/EventLoop.h"
#include "framework/Pipe.h"
#include "framework/Thread.h"
#include "framework/Toolkit.h"

namespace {

std::atomic<bool> silent = false;

/// Asks the main thread to show the message, and waits. The task holds the other end of a pipe, which closes
/// when the task goes, also when that never runs.
void ShowFromThread(const String& text, Thread& thread) {
  Pipe dismissed = Pipe::Open();
  EventLoop::Post([text, other = std::make_shared<Descriptor>(dismissed.TakeWriteEnd())] {
    EventLoop::Toolkit()->ShowMessage(text);
  });
  {
    const Baton::Pause pause;
    pollfd watched[] = {{dismissed.ReadFd(), POLLIN, 0}, {thread.KillFd(), POLLIN, 0}};
    while (poll(watched, 2, -1) < 0) continue;
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
