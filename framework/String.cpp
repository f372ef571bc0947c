#include "framework/String.h"

#include <algorithm>
#include <optional>

namespace {

constexpr char32_t kCarriedByte = 0xDC00;  // plus the byte, 0x80 to 0xFF

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool IsAscii(std::u32string_view text) {
  return std::all_of(text.begin(), text.end(), [](char32_t c) { return c < 0x80; });
}

struct Sequence {
  char32_t codePoint;
  std::size_t length;  // bytes
};

/// The well-formed UTF-8 sequence that `bytes` begins with, shortest form only and no surrogates.
std::optional<Sequence> ReadSequence(std::string_view bytes) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return Sequence{lead, 1};
  std::size_t length;
  char32_t codePoint;
  char32_t least;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2, codePoint = lead & 0x1Fu, least = 0x80;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3, codePoint = lead & 0x0Fu, least = 0x800;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4, codePoint = lead & 0x07u, least = 0x10000;
  } else {
    return std::nullopt;
  }
  if (bytes.size() < length) return std::nullopt;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return std::nullopt;
    codePoint = codePoint << 6 | (byte(i) & 0x3Fu);
  }
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  if (codePoint < least || codePoint > 0x10FFFF || surrogate) return std::nullopt;
  return Sequence{codePoint, length};
}

std::u32string Decode(std::string_view utf8) {
  std::u32string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) {
    const auto sequence = ReadSequence(utf8);
    text.push_back(sequence ? sequence->codePoint : kCarriedByte + static_cast<unsigned char>(utf8[0]));
    utf8.remove_prefix(sequence ? sequence->length : 1);
  }
  return text;
}

void Encode(char32_t c, std::string& utf8) {
  const auto put = [&](char32_t byte) { utf8.push_back(static_cast<char>(byte)); };
  if (c < 0x80) {
    put(c);
  } else if (c >= kCarriedByte + 0x80 && c <= kCarriedByte + 0xFF) {
    put(c - kCarriedByte);
  } else if (c < 0x800) {
    put(0xC0 | c >> 6), put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12), put(0x80 | (c >> 6 & 0x3F)), put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | c >> 18), put(0x80 | (c >> 12 & 0x3F)), put(0x80 | (c >> 6 & 0x3F)), put(0x80 | (c & 0x3F));
  }
}

template <class Char>
Char LowerAscii(Char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<Char>(c + ('a' - 'A')) : c;
}

}  // namespace

String::String(std::string utf8) {
  if (IsAscii(utf8))
    text_ = std::move(utf8);
  else
    text_ = Decode(utf8);
}

String::String(Wide wide) {
  if (IsAscii(wide))
    text_ = Ascii(wide.begin(), wide.end());
  else
    text_ = std::move(wide);
}

std::string String::Utf8() const {
  if (const auto* ascii = std::get_if<Ascii>(&text_)) return *ascii;
  std::string utf8;
  for (const char32_t c : std::get<Wide>(text_)) Encode(c, utf8);
  return utf8;
}

String String::Slice(std::size_t index, std::size_t count) const {
  if (const auto* ascii = std::get_if<Ascii>(&text_)) {
    String slice;
    slice.text_.emplace<Ascii>(*ascii, index, count);
    return slice;
  }
  return String(std::get<Wide>(text_).substr(index, count));
}

String operator+(const String& head, const String& tail) {
  String whole = head;
  whole += tail;
  return whole;
}

bool operator==(const String& left, const String& right) {
  if (left.Size() != right.Size()) return false;
  for (std::size_t i = 0; i < left.Size(); ++i)
    if (LowerAscii(left[i]) != LowerAscii(right[i])) return false;
  return true;
}
