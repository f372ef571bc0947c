#include "framework/TextInputStream.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::size_t kBufferSize = 4096;
constexpr std::size_t kLongestLine = 64 * 1024;

}  // namespace

/// The next byte, -1 at the end.
int TextInputStream::NextByte() {
  if (position_ == buffer_.size()) {
    if (!file_) return -1;
    buffer_.resize(kBufferSize);
    ssize_t got;
    do {
      got = read(file_.Fd(), buffer_.data(), buffer_.size());
    } while (got < 0 && errno == EINTR);
    buffer_.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    position_ = 0;
    failed_ = got < 0;
    if (failed_) std::fprintf(stderr, "A file could not be read to its end: %s\n", std::strerror(errno));
    if (got <= 0) file_.Close();
    if (buffer_.empty()) return -1;
  }
  return static_cast<unsigned char>(buffer_[position_++]);
}

String TextInputStream::ReadLine() {
  std::string line;
  for (int byte = NextByte(); byte >= 0; byte = NextByte()) {
    if (std::exchange(skipLineFeed_, false) && byte == '\n') continue;
    skipLineFeed_ = byte == '\r';
    if (byte == '\r' || byte == '\n') break;
    line.push_back(static_cast<char>(byte));
    if (line.size() > kLongestLine) {
      file_.Close();
      buffer_.clear();
      position_ = 0;
      return {};
    }
  }
  return String(line);
}
