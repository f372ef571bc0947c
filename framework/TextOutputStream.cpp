#include "framework/TextOutputStream.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

/// Returns how many bytes have reached the file.
std::size_t WriteAtStart(int fd, std::string_view text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t written = pwrite(fd, text.data() + done, text.size() - done, static_cast<off_t>(done));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) break;
    done += static_cast<std::size_t>(written);
  }
  return done;
}

/// A file system over the network may learn only now that there is no room.
bool IsSafe(int fd) {
  return fsync(fd) == 0 || (errno != EIO && errno != ENOSPC && errno != EDQUOT);
}

std::string ReadAtStart(int fd, std::size_t count) {
  std::string bytes(count, '\0');
  bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(pread(fd, bytes.data(), count, 0), 0)));
  return bytes;
}

}  // namespace

void TextOutputStream::WriteLine(const String& text) {
  text_ += text.Utf8() + "\n";
}

void TextOutputStream::Close() {
  if (!file_) return;
  const int fd = file_.Fd();
  const off_t oldSize = std::max<off_t>(lseek(fd, 0, SEEK_END), 0);
  const std::string old = ReadAtStart(fd, text_.size());
  const std::size_t written = WriteAtStart(fd, text_);
  if (written < text_.size() || !IsSafe(fd) || ftruncate(fd, static_cast<off_t>(written)) != 0) {
    std::fprintf(stderr, "A file could not be written: %s\n", std::strerror(errno));
    const std::string_view lost = std::string_view(old).substr(0, written);
    const bool known = lost.size() == std::min(written, static_cast<std::size_t>(oldSize));
    const bool restored = known && WriteAtStart(fd, lost) == lost.size();
    // Nothing is better than a mixture.
    [[maybe_unused]] const int failed = ftruncate(fd, restored ? oldSize : 0);
  }
  file_.Close();
}
