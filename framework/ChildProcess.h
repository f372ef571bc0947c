#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "framework/ByteBuffer.h"
#include "framework/Descriptor.h"
#include "framework/Launch.h"

/// One command as a child process: started, watched and ended, by whatever thread owns it.
///
/// The child reads /dev/null, writes its standard output to us and its standard error to where ours goes, has
/// default signal handling, an empty signal mask and a process group of its own, and inherits no other
/// descriptor. The object never blocks but in `Terminate`, for a bounded time.
class ChildProcess {
 public:
  /// A command that `Launch::OnThisThread` has started. Where it did not, the process has ended, with its
  /// status.
  explicit ChildProcess(Launch::Outcome started) { Adopt(std::move(started)); }
  /// Starts the words as `Launch` says. Where that fails, the process has ended, with one of its statuses.
  ChildProcess(const std::vector<std::string>& words, const std::string& toolFolder)
      : launch_(std::in_place, words, toolFolder) {}
  /// Leaves a child that has been started and has not ended to itself.
  ~ChildProcess() = default;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Readable, or at its end, when there is output to take; -1 where that cannot be told or there is none.
  int OutputFd() const { return outlet_ == Outlet::kPipe ? output_.Fd() : -1; }
  /// Readable once the child has been started, and then once it has exited; -1 where that cannot be told, or
  /// after the exit.
  int StateFd() const { return launch_ ? launch_->DoneFd() : exit_.Fd(); }

  /// Takes what there is of output and exit. True while the command is still running: the child has not been
  /// reaped, or its output is not at its end and the grace after the exit is not over.
  bool Advance();

  /// Milliseconds after which `Advance` wants to be called even if no descriptor is readable; -1 for never.
  int Timeout() const;

  /// Ends a child that has been started with its whole group: asks first, forces it after a moment, and reaps
  /// it.
  void Terminate();

  /// 0 to 255 as exited, 128 + n when ended by signal n.
  int Status() const { return outputLost_ && status_ == 0 ? Launch::kCannotRun : status_; }
  /// All that was printed so far.
  ByteBuffer TakeOutput() { return std::exchange(text_, ByteBuffer()); }

 private:
  bool AdoptLaunched();
  void Adopt(Launch::Outcome started);
  void Read();
  bool GroupLives() const;
  bool Reap();
  bool HasExited();
  void Signal(int signal);

  std::optional<Launch> launch_;  // until the child has been started
  pid_t pid_ = -1;                // -1 before the start and once reaped
  pid_t group_ = -1;
  Outlet outlet_ = Outlet::kPipe;
  Descriptor output_;
  off_t taken_ = 0;       // bytes of the output
  off_t sizeAtExit_ = 0;  // of a file
  bool more_ = false;     // there is more in the file than the last look took
  Descriptor exit_;
  ByteBuffer text_;
  int status_ = Launch::kNotFound;
  bool outputLost_ = false;       // some of the output
  long long outputDeadline_ = 0;  // monotonic milliseconds, set when the child has been reaped
};
