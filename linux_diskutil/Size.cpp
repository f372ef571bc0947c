#include "linux_diskutil/Size.h"

#include <array>
#include <string_view>

namespace diskutil {
namespace {

struct Unit {
  std::uint64_t tenth;  // bytes in a tenth of the unit
  std::string_view name;
};

constexpr std::array kUnits = {
    Unit{100, " KB"},
    Unit{100'000, " MB"},
    Unit{100'000'000, " GB"},
    Unit{100'000'000'000, " TB"},
};

std::uint64_t Tenths(std::uint64_t bytes, const Unit& unit) {
  return bytes / unit.tenth + (bytes % unit.tenth >= unit.tenth / 2 ? 1 : 0);
}

}  // namespace

std::string SizeText(std::uint64_t bytes) {
  if (bytes < 1000) return std::to_string(bytes) + ".0 B";
  // The rounded number decides on the unit: 999,950 bytes are "1.0 MB" and never "1000.0 KB".
  auto unit = kUnits.begin();
  while (unit + 1 != kUnits.end() && Tenths(bytes, *unit) >= 10'000) ++unit;
  const std::uint64_t tenths = Tenths(bytes, *unit);
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + std::string(unit->name);
}

}  // namespace diskutil
