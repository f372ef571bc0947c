#pragma once

#include <fcntl.h>

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

}  // namespace diskutil
