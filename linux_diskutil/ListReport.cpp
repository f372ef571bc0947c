#include "linux_diskutil/ListReport.h"

#include <algorithm>

#include "linux_diskutil/PrintableText.h"
#include "linux_diskutil/Size.h"

namespace diskutil {
namespace {

std::string AlignRight(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, CharacterCount(text)), ' ') + text;
}

std::string AlignLeft(const std::string& text, std::size_t width) {
  return text + std::string(width - std::min(width, CharacterCount(text)), ' ');
}

std::string Row(const std::string& number, const std::string& type, const std::string& name,
                const std::string& size, const std::string& identifier) {
  constexpr std::size_t kNameAndSize = 32;
  const std::string sizeField = AlignRight("  " + size, 10);
  return AlignRight(number, 5) + AlignRight(type, 27) + " " +
         AlignLeft(name, kNameAndSize - sizeField.size()) + sizeField + "   " + identifier + "\n";
}

std::string Kind(Device::Location location) {
  switch (location) {
    case Device::Location::kInternal:
      return "internal, physical";
    case Device::Location::kExternal:
      return "external, physical";
    case Device::Location::kVirtual:
      return "internal, virtual";
    case Device::Location::kImage:
      break;
  }
  return "disk image";
}

}  // namespace

std::string ListReport(const std::vector<Device>& devices) {
  std::string text;
  for (const Device& device : devices) {
    const bool wholeDisk = device.id.partition == 0;
    if (wholeDisk) {
      if (!text.empty()) text += '\n';
      text += "/dev/" + device.id.Text() + " (" + Kind(device.location) + "):\n" +
              Row("#:", "TYPE", "NAME", "SIZE", "IDENTIFIER");
    }
    // A star marks the size of what is cut into partitions. A disk that is one volume is a row like any
    // other.
    const std::string star = wholeDisk && !device.tableType.empty() ? "*" : "";
    text += Row(std::to_string(device.id.partition) + ":", device.type, device.label,
                star + SizeText(device.bytes), device.id.Text());
  }
  if (!text.empty()) text += '\n';
  return text;
}

}  // namespace diskutil
