#pragma once

#include <utility>

/// A file descriptor that is closed with its owner.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~Descriptor() { Close(); }

  int Fd() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }
  void Close();

 private:
  int fd_ = -1;
};

/// A pipe that no child inherits.
class Pipe {
 public:
  /// A pipe with no ends yet.
  Pipe() = default;
  /// Opens a pipe; its ends are closed (-1) when the system has no descriptors left.
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
