#include "framework/qt/ShownText.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

constexpr std::size_t kLongText = 100'000;     // characters from which on a paragraph takes many lines,
constexpr std::size_t kShortParagraph = 1000;  // as long as it has fewer characters than this
constexpr std::size_t kLongLine = 2000;        // characters from which on a line is cut,
constexpr std::size_t kLookBack = 100;         // behind a blank if there is one among so many

constexpr char16_t kLineEnd = 0x2028;
constexpr char16_t kParagraphEnd = 0x2029;

constexpr char32_t kNothing = 0;
constexpr char32_t kReturnAndFeed = 0x0D0A;

/// Characters that are shown as surrogates without their other half.
struct StandIns {
  char32_t first, last;
  char32_t surrogate;  // of the first
};
constexpr StandIns kStandIns[] = {
    {0x0000, 0x0008, 0xDC00},  // control characters
    {0x000E, 0x001F, 0xDC0E},  //
    {0x007F, 0x009F, 0xDD00},  //
    {0xDC80, 0xDCFF, 0xDC80},  // bytes that are no text, as they are carried
    {0x202A, 0x202E, 0xDD40},  // what turns the direction of all text behind it
    {0x2066, 0x206F, 0xDD50},  //
    {0xFDD0, 0xFDEF, 0xDD60},  // what is no character, or means something of its own to Qt
    {0xFFFC, 0xFFFF, 0xDD90},  //
};

const StandIns* StandInsFor(char32_t c) {
  for (const StandIns& known : kStandIns)
    if (c >= known.first && c <= known.last) return &known;
  return nullptr;
}

char32_t ToScreen(char32_t c) {
  const StandIns* const known = StandInsFor(c);
  return known ? known->surrogate + (c - known->first) : c;
}

char32_t FromScreen(char32_t c) {
  for (const StandIns& known : kStandIns)
    if (c >= known.surrogate && c <= known.surrogate + (known.last - known.first))
      return known.first + (c - known.surrogate);
  return c;
}

void AppendBreak(std::string& bytes, char32_t standsFor) {
  if (standsFor == kReturnAndFeed)
    bytes += "\r\n";
  else if (standsFor != kNothing)
    AppendUtf8(bytes, standsFor);
}

void Append(std::u16string& shown, char32_t c) {
  if (c < 0x10000) {
    shown += static_cast<char16_t>(c);
  } else {
    shown += QChar::highSurrogate(c);
    shown += QChar::lowSurrogate(c);
  }
}

/// The end of the text, or behind a blank that is near it.
std::size_t CutPosition(std::u16string_view shown) {
  const std::size_t blank = shown.substr(shown.size() - kLookBack).rfind(u' ');
  return blank == std::u16string_view::npos ? shown.size() : shown.size() - kLookBack + blank + 1;
}

}  // namespace

bool ShownText::IsBreak(char32_t c) {
  return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

bool ShownText::HasStandIn(char32_t c) {
  return StandInsFor(c) != nullptr;
}

ShownText::ShownText(const String& text) {
  text.Visit([this](auto characters) { Build(characters); });
}

template <class Text>
void ShownText::Build(Text text) {
  const bool isLong = text.size() >= kLongText;
  std::u16string shown;
  std::size_t paragraph = 0;  // where it begins
  std::size_t line = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = static_cast<char32_t>(text[i]);
    if (IsBreak(c)) {
      if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
        c = kReturnAndFeed;
        ++i;
      }
      if (c != '\n') seams_.push_back({static_cast<int>(shown.size()), c});
      const bool goesOn = isLong && shown.size() - paragraph < kShortParagraph;
      shown += goesOn ? kLineEnd : kParagraphEnd;
      line = shown.size();
      if (!goesOn) paragraph = line;
      continue;
    }
    if (shown.size() - line >= kLongLine) {
      const std::size_t cut = CutPosition(shown);
      seams_.push_back({static_cast<int>(cut), kNothing});
      shown.insert(cut, 1, kParagraphEnd);
      paragraph = line = cut + 1;
    }
    Append(shown, ToScreen(c));
  }
  characters_ = QString::fromStdU16String(shown);
}

std::string ShownText::Bytes(QStringView characters, int start, const Seams& seams) {
  std::string bytes;
  auto seam = std::ranges::lower_bound(seams, start, {}, &Seam::at);
  for (qsizetype i = 0; i < characters.size(); ++i) {
    const QChar c = characters[i];
    if (c == kLineEnd || c == kParagraphEnd) {
      const bool isSeam = seam != seams.end() && seam->at == start + i;
      AppendBreak(bytes, isSeam ? (seam++)->standsFor : U'\n');
    } else if (c.isHighSurrogate() && i + 1 < characters.size() && characters[i + 1].isLowSurrogate()) {
      AppendUtf8(bytes, QChar::surrogateToUcs4(c, characters[++i]));
    } else {
      AppendUtf8(bytes, FromScreen(c.unicode()));
    }
  }
  return bytes;
}
