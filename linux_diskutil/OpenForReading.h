#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>

#include "framework/Descriptor.h"

namespace diskutil {

/// Throws std::system_error when `errno` says that it is we who have no descriptor or no memory left: that
/// says nothing about what was to be read. Any other failure is the file's own.
inline void ThrowIfExhausted(const std::string& path) {
  if (errno == EMFILE || errno == ENFILE || errno == ENOMEM)
    throw std::system_error(errno, std::generic_category(), "Could not read " + path);
}

/// Opens a file or a device; nothing when it is not there or may not be read. Throws like `ThrowIfExhausted`.
/// A device is not waited for, as the open of an optical drive otherwise waits for its tray.
inline Descriptor OpenForReading(const std::string& path) {
  Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file) ThrowIfExhausted(path);
  return file;
}

/// What the file holds from `start` on, `most` bytes at most. Nothing where it cannot be read. Throws like
/// `ThrowIfExhausted`.
inline std::string ReadPiece(const Descriptor& file, off_t start, std::size_t most) {
  std::string piece(most, '\0');
  const ssize_t length = file ? TEMP_FAILURE_RETRY(pread(file.Fd(), piece.data(), piece.size(), start)) : 0;
  if (length < 0) ThrowIfExhausted("the device");
  piece.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  return piece;
}

}  // namespace diskutil
