#pragma once

#include <string>

#include "framework/Object.h"
#include "framework/Pipe.h"
#include "framework/String.h"

/// Writes a text file line by line. Errors go unnoticed by the caller.
///
/// The lines reach the file together, in one write when the stream is closed: what stood there before stays
/// whole until then, and a disk that is full leaves an empty file, never the first half of the new one.
class TextOutputStream : public Object {
 public:
  explicit TextOutputStream(Descriptor file) : file_(std::move(file)) {}
  ~TextOutputStream() override { Close(); }

  /// Writes the text and a line feed.
  void WriteLine(const String& text);
  /// Finishes the file.
  void Close();

 private:
  Descriptor file_;
  std::string text_;
};
