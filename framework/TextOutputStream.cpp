#include "framework/TextOutputStream.h"

#include <unistd.h>

void TextOutputStream::WriteLine(const String& text) {
  text_ += text.Utf8() + "\n";
}

void TextOutputStream::Close() {
  if (!file_) return;
  const bool whole = pwrite(file_.Fd(), text_.data(), text_.size(), 0) == static_cast<ssize_t>(text_.size());
  [[maybe_unused]] const int failed = ftruncate(file_.Fd(), whole ? static_cast<off_t>(text_.size()) : 0);
  file_.Close();
}
