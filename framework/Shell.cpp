#include "framework/Shell.h"

#include <poll.h>

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "framework/Baton.h"
#include "framework/ChildProcess.h"
#include "framework/Folders.h"
#include "framework/MainThread.h"
#include "framework/Thread.h"

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

/// Returns the output as text, made while others have the baton: a flood takes a while to decode.
String WaitOnThread(ChildProcess& child, const Thread& thread) {
  const Baton::Pause pause;
  try {
    while (child.Advance() && !thread.Killed()) {
      pollfd fds[] = {
          {child.OutputFd(), POLLIN, 0}, {child.StateFd(), POLLIN, 0}, {thread.KillFd(), POLLIN, 0}};
      poll(fds, 3, child.Patience());
    }
  } catch (const std::bad_alloc&) {
    child.Terminate();
    throw;
  }
  if (thread.Killed()) child.Terminate();
  return String(child.TakeOutput());
}

/// The main thread keeps the baton: the handler that waits here runs to its end before any other code.
String WaitOnMain(ChildProcess& child) {
  while (child.Advance()) {
    MainThread::Current().WaitForInput({child.OutputFd(), child.StateFd()}, child.Patience());
    MainThread::Current().LeaveWhenQuitting();
  }
  return String(child.TakeOutput());
}

Shell::Outcome RunAsChild(const String& commandLine) {
  Thread* const thread = Thread::Current();
  if (!thread) MainThread::Current().LeaveWhenQuitting();
  // A command of the main thread changes something, and goes on when we have to leave.
  const Outlet outlet = thread ? Outlet::kPipe : Outlet::kFile;
  ChildProcess child(CutAtBlanks(commandLine.Utf8()), ToolFolder(), outlet);
  String output = thread ? WaitOnThread(child, *thread) : WaitOnMain(child);
  if (thread && thread->Killed()) thread->Unwind();
  return {child.Status(), std::move(output)};
}

Shell::Runner run = RunAsChild;

}  // namespace

void Shell::RunCommandsBy(Runner runner) {
  run = std::move(runner);
}

void Shell::Execute(const String& commandLine) {
  errorCode_ = 0;
  result_.Clear();
  auto [code, output] = run(commandLine);
  errorCode_ = code;
  result_ = std::move(output);
}
