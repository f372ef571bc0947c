#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "bench/Clock.h"

// The commands of a scan of so many rows, one after the other, with nothing around them. Prints the seconds
// they took.
//
//     bench_spawn_loop TOOL ROWS [ID...]      the rows' identifiers, where the tool cares for them

extern char** environ;

namespace {

bool RunOnce(char* const* words) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return false;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  pid_t pid = -1;
  const int failed = posix_spawn(&pid, words[0], &actions, nullptr, words, environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  static char buffer[64 * 1024];
  while (!failed && read(ends[0], buffer, sizeof buffer) > 0) continue;
  close(ends[0]);
  int status = 0;
  return !failed && waitpid(pid, &status, 0) == pid && status == 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  char verbs[][8] = {"list", "info", "disk0s0"};
  char* const list[] = {argv[1], verbs[0], nullptr};
  const int rows = std::atoi(argv[2]);
  const double start = Now();
  bool fine = RunOnce(list);
  for (int row = 0; row < rows; ++row) {
    char* const info[] = {argv[1], verbs[1], row + 3 < argc ? argv[row + 3] : verbs[2], nullptr};
    fine = RunOnce(info) && fine;
  }
  std::printf("%.9f\n", Now() - start);
  return fine ? 0 : 1;
}
