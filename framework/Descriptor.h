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
