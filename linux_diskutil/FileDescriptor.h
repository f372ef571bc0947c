#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace diskutil {

/// Owns an open file descriptor, or -1 for none.
class FileDescriptor {
 public:
  explicit FileDescriptor(int number) : number_(number) {}
  ~FileDescriptor() {
    if (number_ >= 0) close(number_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  explicit operator bool() const { return number_ >= 0; }
  int Number() const { return number_; }

 private:
  int number_;
};

/// Throws std::system_error when `errno` says that it is we who have no descriptor or no memory left: that
/// says nothing about what was to be read. Any other failure is the file's own.
inline void ThrowIfExhausted(const std::string& path) {
  if (errno == EMFILE || errno == ENFILE || errno == ENOMEM) {
    throw std::system_error(errno, std::generic_category(), "Could not read " + path);
  }
}

/// Opens a file or a device; nothing when it is not there or may not be read. Throws like `ThrowIfExhausted`.
/// A device is not waited for, as the open of an optical drive otherwise waits for its tray.
inline FileDescriptor OpenForReading(const std::string& path) {
  const int number = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (number < 0) ThrowIfExhausted(path);
  return FileDescriptor(number);
}

}  // namespace diskutil
