#include "linux_diskutil/PrintableText.h"

#include <utf8proc.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <memory>

namespace diskutil {
namespace {

bool IsContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The marks, embeddings, overrides and isolates of the bidirectional algorithm: with them a name could make
/// the size or the identifier behind it read as something else.
bool TurnsDirection(utf8proc_int32_t point) {
  return point == 0x061C || point == 0x200E || point == 0x200F || (point >= 0x202A && point <= 0x202E) ||
         (point >= 0x2066 && point <= 0x2069);
}

bool CanBeShown(utf8proc_int32_t point) {
  switch (utf8proc_category(point)) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
      return false;
    default:
      return !TurnsDirection(point);
  }
}

std::string Composed(const std::string& text) {
  struct Free {
    void operator()(utf8proc_uint8_t* memory) const { std::free(memory); }
  };
  const std::unique_ptr<utf8proc_uint8_t, Free> composed(
      utf8proc_NFC(reinterpret_cast<const utf8proc_uint8_t*>(text.c_str())));
  return composed ? std::string(reinterpret_cast<const char*>(composed.get())) : text;
}

}  // namespace

std::string PrintableText(std::string_view bytes) {
  std::string clean;
  bool plain = true;
  while (!bytes.empty()) {
    utf8proc_int32_t point = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(bytes.data()),
                                         static_cast<utf8proc_ssize_t>(bytes.size()), &point);
    std::size_t used = length > 0 ? static_cast<std::size_t>(length) : 1;
    if (length <= 0) {
      // One mark for a broken sequence, not one for each of its bytes.
      while (used < bytes.size() && IsContinuation(bytes[used])) ++used;
      clean += '?';
    } else if (point == ' ') {
      if (!clean.empty() && clean.back() != ' ') clean += ' ';
    } else if (CanBeShown(point)) {
      clean += bytes.substr(0, used);
      plain = plain && point < 0x80;
    } else {
      clean += '?';
    }
    bytes.remove_prefix(used);
  }
  if (clean.ends_with(' ')) clean.pop_back();
  return plain ? clean : Composed(clean);
}

std::string DecodeUdevEscapes(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    unsigned value = 0;
    if (text.size() >= 4 && text.starts_with("\\x") &&
        std::from_chars(text.data() + 2, text.data() + 4, value, 16).ptr == text.data() + 4) {
      bytes += static_cast<char>(value);
      text.remove_prefix(4);
    } else {
      bytes += text.front();
      text.remove_prefix(1);
    }
  }
  return bytes;
}

std::size_t CharacterCount(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::ranges::count_if(utf8, [](char byte) { return !IsContinuation(byte); }));
}

}  // namespace diskutil
