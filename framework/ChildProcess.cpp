#include "framework/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#ifdef __linux__
#include <sys/syscall.h>
#endif

namespace {

constexpr int kGrace = 250;           // milliseconds for the output of a reaped child to reach its end
constexpr int kPollTick = 10;         // milliseconds between two looks at what cannot be polled for
constexpr int kFileTick = 100;        // milliseconds between two looks into a file that a command prints into
constexpr int kTerminateGrace = 200;  // milliseconds between asking a child to end and forcing it
constexpr int kKillGrace = 300;       // milliseconds to wait for a forced child, which the kernel may hold
constexpr std::size_t kReadSize = 64 * 1024;
constexpr std::size_t kOutputLimit = std::size_t{1} << 30;  // bytes; what comes behind them is dropped

long long Now() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

/// Makes room for larger pieces, so that a flood takes fewer turns between the command and us.
void EnlargePipe([[maybe_unused]] int outputFd) {
#ifdef F_SETPIPE_SZ
  constexpr int kWide = 1024 * 1024;  // bytes, which any user may ask for
  fcntl(outputFd, F_SETPIPE_SZ, kWide);
#endif
}

/// Frees a part of the file that has been read, so that a flood is not in memory twice.
void FreeFileRange([[maybe_unused]] int file, [[maybe_unused]] off_t begin, [[maybe_unused]] off_t end) {
#ifdef FALLOC_FL_PUNCH_HOLE
  fallocate(file, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, begin, end - begin);
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

bool ChildProcess::AdoptLaunched() {
  auto outcome = launch_->TakeOutcome();
  if (!outcome) return false;
  launch_.reset();
  Adopt(std::move(*outcome));
  return true;
}

void ChildProcess::Adopt(Launch::Outcome started) {
  pid_ = group_ = started.pid;
  status_ = started.status;
  outlet_ = started.outlet;
  output_ = std::move(started.output);
  if (pid_ >= 0) exit_ = OpenExitFd(pid_);
}

bool ChildProcess::Advance() {
  if (launch_ && !AdoptLaunched()) return true;
  if (output_) Read();
  if (pid_ >= 0 && Reap()) {
    outputDeadline_ = Now() + kGrace;
    sizeAtExit_ = outlet_ == Outlet::kFile ? lseek(output_.Fd(), 0, SEEK_END) : 0;
    if (output_) Read();  // what it printed between the last look and its exit
  }
  if (pid_ >= 0) return true;
  if (output_ && outlet_ == Outlet::kFile && more_ && taken_ < sizeAtExit_) return true;
  if (output_ && (Now() >= outputDeadline_ || (outlet_ == Outlet::kFile && !GroupLives()))) output_.Close();
  return static_cast<bool>(output_);
}

int ChildProcess::Timeout() const {
  if (launch_) return launch_->DoneFd() >= 0 ? -1 : 0;
  if (more_) return 0;
  if (pid_ >= 0) return !exit_ ? kPollTick : outlet_ == Outlet::kFile ? kFileTick : -1;
  if (!output_) return 0;
  const int left = static_cast<int>(std::max(outputDeadline_ - Now(), 0LL));
  return outlet_ == Outlet::kFile ? std::min(left, kPollTick) : left;
}

/// Takes what there is by now, but not more than a moment's worth, so that a flood cannot hold its reader.
void ChildProcess::Read() {
  const bool fromFile = outlet_ == Outlet::kFile;
  const off_t from = taken_;
  more_ = false;
  for (int round = 0; round < 16; ++round) {
    char* const room = text_.Room(kReadSize);
    const ssize_t got =
        fromFile ? pread(output_.Fd(), room, kReadSize, taken_) : read(output_.Fd(), room, kReadSize);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0 && errno == EAGAIN) return;
    if (got < 0) {
      std::fprintf(stderr, "The output of a command was lost: %s\n", std::strerror(errno));
      outputLost_ = true;
    }
    if (got <= 0) {
      if (!fromFile || outputLost_) output_.Close();
      return;
    }
    const std::size_t old = text_.Size();
    text_.Add(std::min(static_cast<std::size_t>(got), kOutputLimit - old));
    taken_ += got;
    if (!fromFile && old < kReadSize && text_.Size() >= kReadSize) EnlargePipe(output_.Fd());
  }
  more_ = fromFile;
  if (more_) FreeFileRange(output_.Fd(), from, taken_);
}

/// Whether anything that the command has left behind still lives and may print.
bool ChildProcess::GroupLives() const {
  return kill(-group_, 0) == 0 || errno == EPERM;
}

bool ChildProcess::Reap() {
  int status = 0;
  const pid_t reaped = waitpid(pid_, &status, WNOHANG);
  if (reaped == 0 || (reaped < 0 && errno == EINTR)) return false;
  // A child that somebody else has reaped counts as failed.
  status_ = reaped < 0          ? Launch::kCannotRun
            : WIFEXITED(status) ? WEXITSTATUS(status)
                                : 128 + WTERMSIG(status);
  pid_ = -1;
  exit_.Close();
  return true;
}

/// Leaves it unreaped, so that its group stays its own.
bool ChildProcess::HasExited() {
  siginfo_t state{};
  return waitid(P_PID, static_cast<id_t>(pid_), &state, WEXITED | WNOHANG | WNOWAIT) != 0 ||
         state.si_pid != 0;
}

void ChildProcess::Signal(int signal) {
  if (pid_ >= 0) kill(-pid_, signal);  // not reaped yet, so the group is still its own
}

void ChildProcess::Terminate() {
  const auto waitFor = [this](bool (ChildProcess::*ended)(), int milliseconds) {
    const long long deadline = Now() + milliseconds;
    while (pid_ >= 0 && !(this->*ended)() && Now() < deadline) {
      pollfd exited{exit_.Fd(), POLLIN, 0};
      poll(&exited, 1, exit_ ? static_cast<int>(std::max(deadline - Now(), 0LL)) : kPollTick);
    }
  };
  output_.Close();
  Signal(SIGTERM);
  waitFor(&ChildProcess::HasExited, kTerminateGrace);
  Signal(SIGKILL);  // to what it has left behind too
  waitFor(&ChildProcess::Reap, kKillGrace);
}
