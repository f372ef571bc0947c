#include "linux_diskutil/Identifier.h"

#include <charconv>

namespace diskutil {
namespace {

/// Takes a number off the front of `text`. "07" is refused: there is one way to write each identifier.
template <class Number>
std::optional<Number> TakeNumber(std::string_view& text) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{}) return std::nullopt;
  const auto digits = static_cast<std::size_t>(stop - text.data());
  if (digits > 1 && text.front() == '0') return std::nullopt;
  text.remove_prefix(digits);
  return number;
}

bool TakeWord(std::string_view& text, std::string_view word) {
  if (!text.starts_with(word)) return false;
  text.remove_prefix(word.size());
  return true;
}

}  // namespace

std::string Identifier::Text() const {
  std::string text = "disk";
  text += std::to_string(disk);
  if (partition != 0) text.append("s").append(std::to_string(partition));
  return text;
}

std::optional<Identifier> ReadIdentifier(std::string_view word) {
  TakeWord(word, "/dev/");
  if (!TakeWord(word, "disk")) return std::nullopt;
  const auto disk = TakeNumber<std::uint64_t>(word);
  if (!disk) return std::nullopt;
  if (word.empty()) return Identifier{*disk, 0};
  if (!TakeWord(word, "s")) return std::nullopt;
  const auto partition = TakeNumber<std::uint32_t>(word);
  if (!partition || *partition == 0 || !word.empty()) return std::nullopt;
  return Identifier{*disk, *partition};
}

}  // namespace diskutil
