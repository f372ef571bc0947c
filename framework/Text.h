#pragma once

#include <cstdint>

#include "framework/String.h"

// The text primitives. Positions are counted in characters, from 1. Every argument is taken as it comes:
// none of these functions fails.

/// Whole numbers as the text primitives count them.
using Integer = std::int64_t;

/// Position of the first occurrence of `find` at or after `start`, ignoring the case of ASCII letters; 0 if
/// there is none. A `start` below 1 means 1; behind the end of `source` nothing is found.
Integer InStr(Integer start, const String& source, const String& find);

/// `source` without the Unicode white space at its two ends.
String Trim(const String& source);

/// Number of characters.
inline Integer Len(const String& source) {
  return static_cast<Integer>(source.Size());
}

/// Code of the first character, 0 for empty text.
inline Integer Asc(const String& source) {
  return source.Empty() ? 0 : static_cast<Integer>(source[0]);
}

/// The text of the one character with this code. A number that is no code point gives U+FFFD.
inline String Chr(Integer code) {
  return String(code >= 0 && code <= 0x10FFFF ? static_cast<char32_t>(code) : U'\uFFFD');
}

/// `Mid` for any part of the text; `Mid` itself deals with one character, which loops ask for.
String Part(const String& source, Integer start, Integer length);

/// The part of `source` whose positions lie in [start, start + length), for any numbers.
inline String Mid(const String& source, Integer start, Integer length) {
  const bool oneInside = length == 1 && start >= 1 && start <= Len(source);
  return oneInside ? String(source[static_cast<std::size_t>(start - 1)]) : Part(source, start, length);
}

/// `value` in decimal digits.
String Str(Integer value);
