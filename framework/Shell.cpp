#include "framework/Shell.h"

#include <poll.h>

#include <algorithm>
#include <vector>

#include "framework/Application.h"
#include "framework/Baton.h"
#include "framework/ChildProcess.h"
#include "framework/Folders.h"
#include "framework/Thread.h"
#include "framework/Toolkit.h"

namespace {

std::vector<std::string> CutAtBlanks(const std::string& line) {
  constexpr const char* kBlanks = " \t";
  std::vector<std::string> words;
  std::size_t end = 0;
  for (;;) {
    const std::size_t begin = line.find_first_not_of(kBlanks, end);
    if (begin == std::string::npos) return words;
    end = std::min(line.find_first_of(kBlanks, begin), line.size());
    words.push_back(line.substr(begin, end - begin));
  }
}

void WaitOnThread(ChildProcess& child, const Thread& thread) {
  const Baton::Pause pause;
  while (child.Advance() && !thread.Killed()) {
    pollfd fds[] = {{child.OutputFd(), POLLIN, 0}, {child.ExitFd(), POLLIN, 0}, {thread.KillFd(), POLLIN, 0}};
    poll(fds, 3, child.Patience());
  }
  if (thread.Killed()) child.Terminate();
}

/// The main thread keeps the baton: the handler that waits here runs to its end before any other code.
void WaitOnMain(ChildProcess& child) {
  while (child.Advance()) {
    Application::WaitForInput({child.OutputFd(), child.ExitFd()}, child.Patience());
    Application::LeaveWhenQuitting();
  }
}

}  // namespace

void Shell::Execute(const String& commandLine) {
  errorCode_ = 0;
  result_.Clear();
  ChildProcess child(CutAtBlanks(commandLine.Utf8()), ToolFolder());
  if (Thread* thread = Thread::Current()) {
    WaitOnThread(child, *thread);
    if (thread->Killed()) thread->Unwind();
  } else {
    WaitOnMain(child);
  }
  errorCode_ = child.Status();
  result_ = String(child.TakeOutput());
}
