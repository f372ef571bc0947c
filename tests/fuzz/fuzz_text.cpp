#include <limits>
#include <string_view>

#include "tests/fuzz/Plain.h"

namespace {

/// Small numbers from one byte, and those at the two ends.
Integer Number(std::uint8_t byte) {
  if (byte < 128) return byte - 16;
  return byte < 192 ? std::numeric_limits<Integer>::min() + (byte - 128)
                    : std::numeric_limits<Integer>::max() - (byte - 192);
}

}  // namespace

/// A byte for the start, one for the length, the text to find up to a NUL, and the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const Integer start = Number(data[0]), length = Number(data[1]);
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
  const std::size_t nul = std::min(bytes.find('\0'), bytes.size());
  const String find = bytes.substr(0, nul);
  const String source = bytes.substr(std::min(nul + 1, bytes.size()));
  const plain::Text text = plain::Of(source);

  Require(source.Utf8() == bytes.substr(std::min(nul + 1, bytes.size())));
  Require(plain::Of(Mid(source, start, length)) == plain::Part(text, start, length));
  Require(plain::Of(Trim(source)) == plain::Trimmed(text));
  Require(InStr(start, source, find) == plain::Position(start, text, plain::Of(find)));
  Require((source == find) == plain::Same(text, plain::Of(find)));
  String rebuilt;
  for (Integer position = 1; position <= Len(source); ++position)
    rebuilt += Chr(Asc(Mid(source, position, 1)));
  Require(rebuilt.Identical(source));
  const Integer cut = Len(source) / 2;
  Require((Mid(source, 1, cut) + Mid(source, cut + 1, Len(source))).Identical(source));
  return 0;
}
