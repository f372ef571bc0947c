#include "tests/faults/Faults.h"

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "tests/TextOf.h"

namespace faults {
namespace {

/// What a session shares with the process that watches it.
struct Shared {
  int wanted = 0;         // the number of the call that is to fail,
  std::size_t error = 0;  // and with which of its errors
  std::atomic<int> calls = 0;
  const char* struck = nullptr;  // the call that failed,
  std::size_t errors = 1;        // how many errors it can have,
  int code = 0;                  // and the one it had
};
Shared* shared = nullptr;

/// What the session leaves behind comes to us, and has to end.
Run RunOnce(const Session& session, int call, std::size_t error) {
  session.prepare();
  new (shared) Shared{.wanted = call, .error = error};
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    if (!std::freopen("shown", "w", stdout) || !std::freopen("told", "w", stderr)) std::abort();
    alarm(10);  // what takes longer hangs
    armed = true;
    const int result = session.play();
    armed = false;
    std::exit(result);
  }
  Run run;
  waitpid(child, &run.status, 0);
  int looks = 0;
  while (waitpid(-1, nullptr, WNOHANG) >= 0 && ++looks < 5000) usleep(1000);
  run.left = looks == 5000;
  run.shown = TextOf("shown"), run.told = TextOf("told");
  run.struck = shared->struck, run.code = shared->code;
  return run;
}

}  // namespace

int Strike(const char* call, std::span<const int> errors) {
  if (!armed || spared > 0 || ++shared->calls != shared->wanted) return 0;
  shared->struck = call;
  shared->errors = errors.size();
  return shared->code = errors[std::min(shared->error, errors.size() - 1)];
}

const char* Run::WhatIsWrong(const Run& good) const {
  if (left) return "a child stays";
  for (const char* report : {"Sanitizer", "runtime error"})
    if (told.find(report) != std::string::npos) return "a sanitizer complains";
  if (!WIFEXITED(status)) return WTERMSIG(status) == SIGALRM ? "it hangs" : "it crashes";
  if (shown != good.shown && told == good.told) return "nobody is told";
  return shown != good.shown && code == EINTR ? "an interruption is no error" : nullptr;
}

bool FailEachCall(const Session& session, int least) {
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  if (!shared) {
    shared = static_cast<Shared*>(
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  }
  const Run good = RunOnce(session, -1, 0);
  int points = 0, faults = good.status == 0 ? 0 : 1;
  std::size_t error = 0;
  for (int call = 1;; ++points) {
    const Run run = RunOnce(session, call, error);
    if (!run.struck) break;
    if (const char* wrong = session.judge(good, run); wrong && ++faults) {
      std::printf("%s: %s when call %d, %s, fails: %s\n%s", session.name, wrong, call, run.struck,
                  std::strerror(run.code), run.told.c_str());
    }
    if (++error >= shared->errors) ++call, error = 0;
  }
  std::printf("%s: %d points of failure, %d faults\n%s", session.name, points, faults, good.told.c_str());
  return points >= least && faults == 0;
}

}  // namespace faults

#ifdef MEMORY_FAILS
void* operator new(std::size_t size) {
  void* const made = std::malloc(size);  // which fails in its turn
  return made ? made : throw std::bad_alloc();
}
void operator delete(void* old) noexcept {
  std::free(old);
}
void operator delete(void* old, std::size_t) noexcept {
  std::free(old);
}
#endif
