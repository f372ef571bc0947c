#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

/// Text as a value: a sequence of Unicode code points, each reached in constant time.
///
/// UTF-8 is decoded on the way in and encoded on the way out. A byte that is no valid UTF-8 is carried as
/// a code point of its own (U+DC80 to U+DCFF, which valid text never holds) and comes out as that byte again,
/// so text that only passes through the program is never changed.
///
/// Text of ASCII alone, which nearly all tool output is, is kept at one byte a character.
class String {
 public:
  String() = default;
  String(const char* utf8) : String(std::string(utf8)) {}
  String(std::string_view utf8) : String(std::string(utf8)) {}
  String(std::string utf8);
  explicit String(char32_t codePoint);

  /// The text as UTF-8, with carried bytes as they came.
  std::string Utf8() const;

  /// Number of code points.
  std::size_t Size() const;
  bool Empty() const { return Size() == 0; }

  /// The code point at `index`, counted from 0; `index` must be below Size().
  char32_t operator[](std::size_t index) const;

  /// `count` code points from `index` on, counted from 0; the range must lie inside the text.
  String Slice(std::size_t index, std::size_t count) const;

  String& operator+=(const String& tail);
  void Clear() { *this = String(); }

  /// True when the two are the same to the letter. `==` ignores case.
  bool Identical(const String& other) const { return text_ == other.text_; }

  template <class Visitor>
  auto Visit(Visitor&& visitor) const {
    return std::visit(visitor, text_);
  }

 private:
  using Ascii = std::string;
  using Wide = std::u32string;  // holds at least one code point above 127

  explicit String(Wide wide);

  std::variant<Ascii, Wide> text_;
};

String operator+(const String& head, const String& tail);

/// Equality that ignores the case of ASCII letters.
bool operator==(const String& left, const String& right);

inline std::size_t String::Size() const {
  if (const auto* ascii = std::get_if<Ascii>(&text_)) return ascii->size();
  return std::get_if<Wide>(&text_)->size();
}

inline char32_t String::operator[](std::size_t index) const {
  if (const auto* ascii = std::get_if<Ascii>(&text_)) return static_cast<unsigned char>((*ascii)[index]);
  return (*std::get_if<Wide>(&text_))[index];
}

inline String::String(char32_t codePoint) {
  if (codePoint < 0x80)
    std::get_if<Ascii>(&text_)->push_back(static_cast<char>(codePoint));
  else
    text_.emplace<Wide>(1, codePoint);
}

inline String& String::operator+=(const String& tail) {
  auto* ascii = std::get_if<Ascii>(&text_);
  const auto* tailAscii = std::get_if<Ascii>(&tail.text_);
  if (ascii && tailAscii && tailAscii->size() == 1) {  // the case of a loop over characters
    ascii->push_back(tailAscii->front());
    return *this;
  }
  if (ascii && tailAscii) {
    ascii->append(*tailAscii);
    return *this;
  }
  Wide* wide = std::get_if<Wide>(&text_);
  if (!wide) {
    Wide widened(ascii->begin(), ascii->end());
    wide = &text_.emplace<Wide>(std::move(widened));
  }
  if (tailAscii)
    wide->append(tailAscii->begin(), tailAscii->end());
  else
    wide->append(*std::get_if<Wide>(&tail.text_));
  return *this;
}
