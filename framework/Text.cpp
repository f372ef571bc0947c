#include "framework/Text.h"

#include <algorithm>
#include <string>
#include <type_traits>

namespace {

bool IsWhiteSpace(char32_t c) {
  return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
         (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
         c == 0x3000;
}

/// Index of `find` in `source` at or after `from`, npos if there is none. The first character is looked for
/// alone, as most places fail there.
template <class Source, class Find>
std::size_t Search(const Source& source, std::size_t from, const Find& find) {
  if (source.size() - from < find.size()) return std::string::npos;
  const auto code = [](auto c) { return static_cast<char32_t>(std::make_unsigned_t<decltype(c)>(c)); };
  const auto same = [&](auto a, auto b) { return FoldCase(code(a)) == FoldCase(code(b)); };
  const char32_t first = FoldCase(code(find.front()));
  const char32_t caseBit = first >= 'a' && first <= 'z' ? 'a' - 'A' : 0;
  const auto end = source.end() - static_cast<std::ptrdiff_t>(find.size()) + 1;
  for (auto place = source.begin() + static_cast<std::ptrdiff_t>(from);; ++place) {
    place = std::find_if(place, end, [&](auto c) { return (code(c) | caseBit) == first; });
    if (place == end) return std::string::npos;
    if (std::equal(find.begin(), find.end(), place, same))
      return static_cast<std::size_t>(place - source.begin());
  }
}

}  // namespace

Integer InStr(Integer start, const String& source, const String& find) {
  const Integer first = std::max<Integer>(start, 1);
  if (first > Len(source)) return 0;
  if (find.Empty()) return first;
  const std::size_t from = static_cast<std::size_t>(first - 1);
  const std::size_t index = source.Visit([&](const auto& text) {
    return find.Visit([&](const auto& token) { return Search(text, from, token); });
  });
  return index == std::string::npos ? 0 : static_cast<Integer>(index) + 1;
}

String Part(const String& source, Integer start, Integer length) {
  const Integer size = Len(source);
  if (start > size || length <= 0) return {};
  if (start < 1) {
    const Integer end = start + length;  // cannot overflow: start is not positive
    if (end <= 1) return {};
    length = end - 1;
    start = 1;
  }
  const Integer count = std::min(length, size - start + 1);
  return source.Slice(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(count));
}

String Trim(const String& source) {
  std::size_t begin = 0;
  std::size_t end = source.Size();
  while (begin < end && IsWhiteSpace(source[begin])) ++begin;
  while (end > begin && IsWhiteSpace(source[end - 1])) --end;
  return source.Slice(begin, end - begin);
}

String Str(Integer value) {
  return std::to_string(value);
}
