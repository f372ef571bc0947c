#pragma once

#include <exception>
#include <string>

#include "framework/Descriptor.h"
#include "framework/Object.h"
#include "framework/String.h"

/// Reads a text file line by line. Errors read as the end of the file, and standard error tells of them. A
/// line longer than 64 KiB reads as the end too: no text file has one, and a reader of a few lines must not
/// wait for gigabytes. The file is closed with the last reference.
class TextInputStream : public Object {
 public:
  /// `unread` becomes false when the stream goes with all read that was asked for.
  TextInputStream(Descriptor file, bool& unread) : file_(std::move(file)), unread_(unread) {}
  ~TextInputStream() override {
    if (!failed_ && std::uncaught_exceptions() == exceptions_) unread_ = false;
  }

  /// The next line without its terminator, which is CR, LF or both; empty at the end of the file.
  String ReadLine();

 private:
  int NextByte();

  Descriptor file_;
  std::string buffer_;
  std::size_t position_ = 0;
  bool& unread_;
  bool failed_ = false;
  int exceptions_ = std::uncaught_exceptions();
  bool skipLineFeed_ = false;  // the last line ended with a CR, which an LF may follow
};
