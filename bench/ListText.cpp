#include "bench/ListText.h"

#include <array>
#include <cstdio>

namespace {

std::string Line(int number, const char* type) {
  std::array<char, 128> line{};
  const std::string name = "Volume " + std::to_string(number);
  std::snprintf(line.data(), line.size(), "%4d:%27s %-22s  120.5 GB   disk%ds%d\n", number % 100, type,
                name.c_str(), number / 100, number % 100);
  return line.data();
}

}  // namespace

std::string ListOfVolumes(int volumes) {
  std::string text =
      "/dev/disk0 (external, physical):\n"
      "   #:                       TYPE NAME                    SIZE       IDENTIFIER\n";
  for (int volume = 0; volume < volumes; ++volume) text += Line(volume, "Apple_HFS");
  return text;
}

std::string ListOfBytes(std::size_t bytes) {
  constexpr std::array kTypes{"Apple_HFS", "Microsoft Basic Data", "Apple_HFS", "Apple_HFSX",
                              "Apple_HFS", "Linux Filesystem"};
  std::string text;
  text.reserve(bytes + 128);
  for (int number = 0; text.size() < bytes; ++number)
    text += Line(number, kTypes[static_cast<std::size_t>(number) % kTypes.size()]);
  return text;
}
