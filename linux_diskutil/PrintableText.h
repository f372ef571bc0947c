#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace diskutil {

/// Makes text that came from a disk safe to print in one column of one line: valid UTF-8 in composed form
/// (NFC), no control character, nothing that turns the direction of the text, no two blanks in a row and none
/// at the ends. What cannot be shown becomes "?". Whoever formatted the disk chose these bytes, so they may
/// be anything.
std::string PrintableText(std::string_view bytes);

/// Undoes the \xNN escapes of udev's *_ENC properties. The result is raw bytes, not yet safe to print.
std::string DecodeUdevEscapes(std::string_view text);

/// The number of characters (code points) in valid UTF-8: columns are counted in these.
std::size_t CharacterCount(std::string_view utf8);

}  // namespace diskutil
