#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

#include "framework/ByteBuffer.h"
#include "framework/Pipe.h"

/// One command as a child process: started, watched and ended, by whatever thread owns it.
///
/// The child reads /dev/null, writes its standard output to us and its standard error to where ours goes, has
/// default signal handling, an empty signal mask and a process group of its own, and inherits no other
/// descriptor. The object never blocks but in `Terminate`.
class ChildProcess {
 public:
  /// Statuses for a command that did not run, as shells give them.
  static constexpr int kNotFound = 127;
  static constexpr int kCannotRun = 126;

  /// Starts `words`, the first of which is looked up on PATH (empty and relative entries are skipped) and
  /// last in `toolFolder`. Where that fails, the process has ended at once, with one of the statuses above.
  ChildProcess(const std::vector<std::string>& words, const std::string& toolFolder);
  /// Leaves a child that has not ended to itself.
  ~ChildProcess() = default;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Readable, or at its end, when there is output to take; -1 once the output has ended.
  int OutputFd() const { return output_.Fd(); }
  /// Readable once the child has exited; -1 where the system has no such thing, or after the exit.
  int ExitFd() const { return exit_.Fd(); }

  /// Takes what there is of output and exit. True while the command is still running: the child has not been
  /// reaped, or its output is not at its end and the grace after the exit is not over.
  bool Advance();

  /// Milliseconds after which `Advance` wants to be called even if no descriptor is readable; -1 for never.
  int Patience() const;

  /// Ends the child with its whole group: asks first, forces it after a moment, and reaps it.
  void Terminate();

  /// 0 to 255 as exited, 128 + n when ended by signal n.
  int Status() const { return status_; }
  /// All that was printed so far.
  ByteBuffer TakeOutput() { return std::exchange(text_, ByteBuffer()); }

 private:
  void Start(const std::string& path, const std::vector<std::string>& words);
  void Read();
  bool Reap();
  void Signal(int signal);

  pid_t pid_ = -1;  // -1 before the start and once reaped
  Descriptor output_;
  Descriptor exit_;
  ByteBuffer text_;
  int status_ = kNotFound;
  long long outputDeadline_ = 0;  // monotonic milliseconds, set when the child has been reaped
};
