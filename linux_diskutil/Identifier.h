#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace diskutil {

/// Names a disk or one of its partitions, such as disk7 or disk7s2. The disk number is the kernel's disk
/// sequence number, which no other disk gets while the machine runs: an identifier read from an old list can
/// go stale, but it can never come to mean another disk.
struct Identifier {
  std::uint64_t disk = 0;
  std::uint32_t partition = 0;  // 0 means the whole disk

  auto operator<=>(const Identifier&) const = default;
  std::string Text() const;
};

/// Reads "disk7", "disk7s2" or "/dev/disk7s2". Anything else, numbers with leading zeros too, is no
/// identifier.
std::optional<Identifier> ReadIdentifier(std::string_view word);

}  // namespace diskutil
