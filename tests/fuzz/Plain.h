#pragma once

#include <cstdlib>
#include <string>

#include "framework/Text.h"

/// Ends a fuzz target that has found a fault.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

/// The text primitives in their plainest form, to hold the program's against. Slow, and short enough to be
/// seen to be right.
namespace plain {

using Text = std::u32string;

inline Text Of(const String& source) {
  Text text;
  for (std::size_t i = 0; i < source.Size(); ++i) text += source[i];
  return text;
}

inline Text Part(const Text& source, Integer start, Integer length) {
  Text part;
  Integer position = 0;
  for (const char32_t character : source) {
    if (++position < start || length <= 0) continue;
    const auto behindStart = static_cast<std::uint64_t>(position) - static_cast<std::uint64_t>(start);
    if (behindStart < static_cast<std::uint64_t>(length)) part += character;
  }
  return part;
}

inline bool Same(const Text& left, const Text& right) {
  const auto small = [](Text text) {
    for (char32_t& c : text)
      if (U'A' <= c && c <= U'Z') c += 'a' - 'A';
    return text;
  };
  return small(left) == small(right);
}

inline Integer Position(Integer start, const Text& source, const Text& find) {
  const auto size = static_cast<Integer>(source.size());
  for (Integer position = start < 1 ? 1 : start; position <= size; ++position)
    if (Same(source.substr(static_cast<std::size_t>(position) - 1, find.size()), find)) return position;
  return 0;
}

inline Text Trimmed(const Text& source) {
  constexpr const char32_t* kWhite =
      U"\t\n\v\f\r "
      U"\x85\xA0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A\u2028\u2029"
      U"\u202F\u205F\u3000";
  const std::size_t begin = source.find_first_not_of(kWhite);
  return begin == Text::npos ? Text() : source.substr(begin, source.find_last_not_of(kWhite) - begin + 1);
}

}  // namespace plain
