#include "framework/Shell.h"

#include <poll.h>

#include <algorithm>
#include <csignal>
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

Launch::Outcome Start(const std::vector<std::string>& words, Thread& thread) {
  const Thread::Absence absence(thread);  // for as long as a folder hangs
  Launch::Outcome started = Launch::OnThisThread(words, ToolFolder());
  if (thread.Killed() && started.pid >= 0) kill(-started.pid, SIGTERM);  // we may not come back to it
  return started;
}

/// The output is made text while others have the baton: a flood takes a while to decode.
Shell::Outcome RunOnThread(const std::vector<std::string>& words, Thread& thread) {
  const Baton::Pause pause;
  ChildProcess child(Start(words, thread));
  try {
    while (child.Advance() && !thread.Killed()) {
      pollfd fds[] = {
          {child.OutputFd(), POLLIN, 0}, {child.StateFd(), POLLIN, 0}, {thread.KillFd(), POLLIN, 0}};
      poll(fds, 3, child.Timeout());
    }
  } catch (const std::bad_alloc&) {
    child.Terminate();
    throw;
  }
  if (thread.Killed()) child.Terminate();
  String output(child.TakeOutput());
  return {child.Status(), std::move(output)};
}

/// The main thread keeps the baton: the handler that waits here runs to its end before any other code. Its
/// command changes something, and goes on when we have to leave.
Shell::Outcome RunOnMain(const std::vector<std::string>& words) {
  MainThread::Installed().LeaveWhenQuitting();
  ChildProcess child(words, ToolFolder());
  while (child.Advance()) {
    MainThread::Installed().WaitForInput({child.OutputFd(), child.StateFd()}, child.Timeout());
    MainThread::Installed().LeaveWhenQuitting();
  }
  String output(child.TakeOutput());
  return {child.Status(), std::move(output)};
}

Shell::Outcome RunAsChild(const String& commandLine) {
  const std::vector<std::string> words = CutAtBlanks(commandLine.Utf8());
  Thread* const thread = Thread::Current();
  if (!thread) return RunOnMain(words);
  Shell::Outcome outcome = RunOnThread(words, *thread);
  if (thread->Killed()) thread->Unwind();
  return outcome;
}

Shell::Runner run = RunAsChild;

}  // namespace

void Shell::InstallRunner(Runner runner) {
  run = std::move(runner);
}

void Shell::Execute(const String& commandLine) {
  errorCode_ = 0;
  result_.Clear();
  auto [code, output] = run(commandLine);
  errorCode_ = code;
  result_ = std::move(output);
}
