#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "linux_diskutil/Identifier.h"
#include "linux_diskutil/PrintableText.h"

/// Whatever stands on a disk, its name fits one column of one line, and cleaning it again changes nothing.
/// Whatever is taken for an identifier is written just so.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string label = diskutil::PrintableText(diskutil::DecodeUdevEscapes(bytes));
  for (const char letter : label)
    if (static_cast<unsigned char>(letter) < ' ' || letter == '\x7f') std::abort();
  if (label.find("  ") != std::string::npos || label.starts_with(' ') || label.ends_with(' ')) std::abort();
  if (diskutil::PrintableText(label) != label || diskutil::CharacterCount(label) > label.size()) std::abort();
  if (const auto id = diskutil::ReadIdentifier(bytes); id && !bytes.ends_with(id->Text())) std::abort();
  return 0;
}
