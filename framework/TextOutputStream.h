#pragma once

#include <exception>
#include <string>

#include "framework/Descriptor.h"
#include "framework/Object.h"
#include "framework/String.h"

/// Writes a text file line by line. Errors go unnoticed by the caller.
///
/// The lines reach the file together when the stream is closed. Where they cannot be written whole, what
/// stood there before is put back, and standard error says why: the file holds the old lines or the new ones,
/// never a part of each.
class TextOutputStream : public Object {
 public:
  explicit TextOutputStream(Descriptor file) : file_(std::move(file)) {}
  /// Finishes the file, unless an exception is the reason: then lines are missing.
  ~TextOutputStream() override {
    if (std::uncaught_exceptions() == exceptions_) Close();
  }

  /// Writes the text and a line feed.
  void WriteLine(const String& text);
  /// Finishes the file.
  void Close();

 private:
  Descriptor file_;
  std::string text_;
  int exceptions_ = std::uncaught_exceptions();
};
