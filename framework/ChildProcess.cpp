#include "framework/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <sstream>
#ifdef __linux__
#include <sys/syscall.h>
#endif

extern char** environ;

namespace {

constexpr int kGrace = 250;           // milliseconds for the output of a reaped child to reach its end
constexpr int kPollTick = 10;         // milliseconds between two looks where an exit cannot be polled for
constexpr int kTerminateGrace = 200;  // milliseconds between asking a child to end and forcing it
constexpr int kKillGrace = 300;       // milliseconds to wait for a forced child, which the kernel may hold
constexpr std::size_t kReadSize = 64 * 1024;
constexpr std::size_t kOutputLimit = std::size_t{1} << 30;  // bytes; a command that prints more is ended

long long Now() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

enum class Found { kNo, kNotExecutable, kYes };

Found Look(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return Found::kNo;
  const bool executable = S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0;
  return executable ? Found::kYes : Found::kNotExecutable;
}

struct Lookup {
  Found found;
  std::string path;
};

Lookup FindCommand(const std::string& name, const std::string& toolFolder) {
  if (name.find('/') != std::string::npos) return {Look(name), name};
  Found best = Found::kNo;
  const char* const path = std::getenv("PATH");
  std::istringstream entries(path ? path : "");
  std::vector<std::string> folders;
  for (std::string folder; std::getline(entries, folder, ':');)
    if (!folder.empty() && folder.front() == '/') folders.push_back(folder);
  if (!toolFolder.empty()) folders.push_back(toolFolder);
  for (const std::string& folder : folders) {
    const std::string candidate = folder + "/" + name;
    const Found found = Look(candidate);
    if (found == Found::kYes) return {found, candidate};
    best = std::max(best, found);
  }
  return {best, {}};
}

/// What the child gets besides its words.
class SpawnPlan {
 public:
  explicit SpawnPlan(int outputFd) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, outputFd, STDOUT_FILENO);

    posix_spawnattr_init(&attributes_);
    short flags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
#if defined(__APPLE__)
    flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
    posix_spawn_file_actions_addinherit_np(&actions_, STDERR_FILENO);
#elif defined(__GLIBC__)
    posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
#endif
    sigset_t signals;
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(&attributes_, flags);
  }
  ~SpawnPlan() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  int Spawn(pid_t& pid, const std::string& path, const std::vector<std::string>& words) {
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (const std::string& word : words) argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    return posix_spawn(&pid, path.c_str(), &actions_, &attributes_, argv.data(), environ);
  }

 private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

/// Has a flood come in larger pieces, with fewer turns between the command and us.
void Widen([[maybe_unused]] int outputFd) {
#ifdef F_SETPIPE_SZ
  constexpr int kWide = 1024 * 1024;  // bytes, which any user may ask for
  fcntl(outputFd, F_SETPIPE_SZ, kWide);
#endif
}

Descriptor OpenExitFd([[maybe_unused]] pid_t pid) {
#ifdef SYS_pidfd_open
  return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));  // closed on exec by itself
#else
  return {};
#endif
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& words, const std::string& toolFolder) {
  if (words.empty()) return;
  const Lookup command = FindCommand(words.front(), toolFolder);
  if (command.found == Found::kNotExecutable) status_ = kCannotRun;
  if (command.found == Found::kYes) Start(command.path, words);
}

void ChildProcess::Start(const std::string& path, const std::vector<std::string>& words) {
  status_ = kCannotRun;
  // A word with a NUL would reach the command cut short, as another word.
  const auto holdsNul = [](const std::string& word) { return word.find('\0') != std::string::npos; };
  if (std::any_of(words.begin(), words.end(), holdsNul)) return;
  Pipe pipe = Pipe::Open();
  if (pipe.ReadFd() < 0 || pipe.WriteFd() < 0) return;
  if (SpawnPlan(pipe.WriteFd()).Spawn(pid_, path, words) != 0) {
    pid_ = -1;
    return;
  }
  output_ = pipe.TakeReadEnd();
  fcntl(output_.Fd(), F_SETFL, O_NONBLOCK);
  exit_ = OpenExitFd(pid_);
}

bool ChildProcess::Advance() {
  if (output_) Read();
  if (pid_ >= 0 && Reap()) {
    outputDeadline_ = Now() + kGrace;
    if (output_) Read();  // what it printed between the last look and its exit
  }
  if (pid_ >= 0) return true;
  if (output_ && Now() >= outputDeadline_) output_.Close();
  return static_cast<bool>(output_);
}

int ChildProcess::Patience() const {
  if (pid_ >= 0) return exit_ ? -1 : kPollTick;
  return output_ ? static_cast<int>(std::max(outputDeadline_ - Now(), 0LL)) : 0;
}

/// Takes what the pipe holds now, but not more than a moment's worth, so that a flood cannot hold its reader.
void ChildProcess::Read() {
  for (int round = 0; round < 16; ++round) {
    const ssize_t got = read(output_.Fd(), text_.Room(kReadSize), kReadSize);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0 && errno == EAGAIN) return;
    const std::size_t old = text_.Size();
    if (got > 0) text_.Add(static_cast<std::size_t>(got));
    if (old < kReadSize && text_.Size() >= kReadSize) Widen(output_.Fd());
    if (text_.Size() > kOutputLimit) Signal(SIGKILL);
    if (got <= 0 || text_.Size() > kOutputLimit) {
      output_.Close();
      return;
    }
  }
}

bool ChildProcess::Reap() {
  int status = 0;
  const pid_t reaped = waitpid(pid_, &status, WNOHANG);
  if (reaped == 0 || (reaped < 0 && errno == EINTR)) return false;
  // A child that somebody else has reaped counts as failed.
  status_ = reaped < 0 ? kCannotRun : WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  pid_ = -1;
  exit_.Close();
  return true;
}

void ChildProcess::Signal(int signal) {
  if (pid_ >= 0) kill(-pid_, signal);  // not reaped yet, so the group is still its own
}

void ChildProcess::Terminate() {
  const auto waitUntil = [this](long long deadline) {
    while (pid_ >= 0 && !Reap() && Now() < deadline) {
      pollfd exited{exit_.Fd(), POLLIN, 0};
      poll(&exited, 1, exit_ ? static_cast<int>(std::max(deadline - Now(), 0LL)) : kPollTick);
    }
  };
  output_.Close();
  Signal(SIGTERM);
  waitUntil(Now() + kTerminateGrace);
  Signal(SIGKILL);
  waitUntil(Now() + kKillGrace);
}
