#include "framework/Text.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/fuzz/Plain.h"

namespace {

constexpr Integer kLeast = std::numeric_limits<Integer>::min();
constexpr Integer kMost = std::numeric_limits<Integer>::max();
constexpr Integer kNumbers[] = {kLeast, kLeast + 1, -9, -8, -1, 0, 1, 2, 3, 5, 6, 7, 8, kMost - 1, kMost};

const String kTexts[] = {"", "x", "abcdef", "aäbΩ�c", "\xF0\x9F\x92\xBE disk", "b\xFF\x80y\xC3"};

TEST(Text, MidTakesWhatLiesInBothRangesForAnyNumbers) {
  for (const String& text : kTexts)
    for (const Integer start : kNumbers)
      for (const Integer length : kNumbers)
        EXPECT_EQ(plain::Of(Mid(text, start, length)), plain::Part(plain::Of(text), start, length))
            << text.Utf8() << " " << start << " " << length;
}

TEST(Text, InStrFindsFromAnyStart) {
  // False starts, bytes that are no text, letters without two cases, and the neighbours of those that have.
  const String texts[] = {"", "ab", "abab", "aab", "0: apple_hfs", "ΩΩdISK1", "\xFF\xFE GB", "É", "@[`{"};
  for (const String& text : texts)
    for (const String find : {"b", "AB", "Ab", "abc", "Apple_HFS", "disk", "GB", "é", "`{@[", "{", "["})
      for (const Integer start : kNumbers)
        EXPECT_EQ(InStr(start, text, find), plain::Position(start, plain::Of(text), plain::Of(find)))
            << start << " \"" << text.Utf8() << "\" \"" << find.Utf8() << "\"";
}

TEST(Text, TrimTakesAllWhiteSpaceOffTheEndsOnly) {
  for (Integer code = 0; code <= 0x3001; ++code) {
    const String c = Chr(code) + "", text = c + c + "a" + c + "b" + c;
    EXPECT_EQ(plain::Of(Trim(text)), plain::Trimmed(plain::Of(text))) << code;
  }
}

TEST(Text, EveryByteComesOutAsItWentIn) {
  std::string bytes;
  for (int first = 0; first < 256; ++first)
    for (const int second : {0x00, 0x41, 0x7F, 0x80, 0x9F, 0xA0, 0xBF, 0xC0, 0xED, 0xF4, 0xFF})
      for (const char byte : {static_cast<char>(first), static_cast<char>(second), '\xBF', '\x80'})
        bytes += byte;
  EXPECT_EQ(String(bytes).Utf8(), bytes);
}

TEST(Text, CountsCodePointsAndComparesWithoutCase) {
  // Spelled too long, half a surrogate pair, behind the last code point, cut short: bytes on their own.
  for (const auto& [utf8, length] :
       {std::pair{"ä", 1}, {"\xC0\x80", 2}, {"\xED\xA0\x80", 3}, {"\xF4\x90\x80\x80", 4}, {"\xE2\x82x", 3}})
    EXPECT_EQ(Len(utf8), length) << utf8;
  for (const Integer code : {kLeast, Integer{-1}, Integer{0x110000}, kMost})
    EXPECT_EQ(Chr(code).Utf8(), "\uFFFD") << code;
  EXPECT_TRUE(String("yEs") == "YES" && !String("yEs").Identical("YES"));
  EXPECT_FALSE(String("yes") == "yes " || String("Ä") == "ä");
  EXPECT_TRUE(Mid("Ωyes", 2, 3).Identical("yes"));  // its last wide character is gone
  EXPECT_EQ(Str(kLeast).Utf8() + Str(kMost).Utf8(), "-92233720368547758089223372036854775807");
}

}  // namespace
