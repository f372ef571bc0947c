#include "bench/Command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

#include "bench/Clock.h"

extern char** environ;

namespace {

/// Starts a command with these as its standard input and output; -1 means nothing there.
pid_t Start(const Words& command, int input, int output) {
  std::vector<char*> argv;
  for (const std::string& word : command) argv.push_back(const_cast<char*>(word.c_str()));
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (input >= 0)
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  else
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  if (output >= 0)
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  else
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t pid = -1;
  const int failed = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failed) throw std::runtime_error("cannot start " + command[0]);
  return pid;
}

void WaitFor(pid_t pid, const Words& command) {
  int status = 0;
  if (waitpid(pid, &status, 0) != pid || status != 0) throw std::runtime_error("this failed: " + command[0]);
}

struct OpenPipe {
  OpenPipe() {
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  }
  std::array<int, 2> ends{};
};

}  // namespace

double TimeOf(const Words& command) {
  const double start = Now();
  WaitFor(Start(command, -1, -1), command);
  return Now() - start;
}

double TimeOf(const Words& producer, const Words& consumer) {
  const OpenPipe pipe;
  const double start = Now();
  const pid_t first = Start(producer, -1, pipe.ends[1]);
  const pid_t second = Start(consumer, pipe.ends[0], -1);
  for (const int end : pipe.ends) close(end);
  WaitFor(first, producer);
  WaitFor(second, consumer);
  return Now() - start;
}

std::string TextFrom(const Words& command) {
  const OpenPipe pipe;
  const pid_t pid = Start(command, -1, pipe.ends[1]);
  close(pipe.ends[1]);
  std::string text;
  std::array<char, 4096> buffer;
  for (ssize_t got; (got = read(pipe.ends[0], buffer.data(), buffer.size())) > 0;)
    text.append(buffer.data(), static_cast<std::size_t>(got));
  close(pipe.ends[0]);
  WaitFor(pid, command);
  return text;
}

double NumberFrom(const Words& command) {
  const std::string text = TextFrom(command);
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (end == text.c_str()) throw std::runtime_error("no number from " + command[0]);
  return number;
}
