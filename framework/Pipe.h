#pragma once

#include <utility>

#include "framework/Descriptor.h"

/// A pipe that no child inherits.
class Pipe {
 public:
  /// A pipe with no ends yet.
  Pipe() = default;
  /// Opens a pipe; it has neither end (-1) when the system has no descriptors left.
  static Pipe Open();

  int ReadFd() const { return read_.Fd(); }
  int WriteFd() const { return write_.Fd(); }
  Descriptor TakeReadEnd() { return std::move(read_); }
  void CloseWriteEnd() { write_.Close(); }
  Descriptor TakeWriteEnd() { return std::move(write_); }

 private:
  Descriptor read_;
  Descriptor write_;
};
