#pragma once

#include <string>

#include "framework/Descriptor.h"
#include "framework/Object.h"
#include "framework/String.h"

/// Reads a text file line by line. Errors read as the end of the file, and standard error tells of them. So
/// does a line of more than 64 KiB, which no text file has: whoever asks for a few lines waits for no more
/// than a few of these. The file is closed with the last reference.
class TextInputStream : public Object {
 public:
  explicit TextInputStream(Descriptor file) : file_(std::move(file)) {}

  /// The next line without its terminator, which is CR, LF or both; empty at the end of the file.
  String ReadLine();

 private:
  int NextByte();

  Descriptor file_;
  std::string buffer_;
  std::size_t position_ = 0;
  bool skipLineFeed_ = false;  // the last line ended with a CR, which an LF may follow
};
