#pragma once

#include <cstdint>

/// A colour, 0xRRGGBB.
struct Color {
  std::uint32_t rgb = 0x000000;
  friend bool operator==(Color, Color) = default;
};

constexpr Color RGB(int red, int green, int blue) {
  return {static_cast<std::uint32_t>(red << 16 | green << 8 | blue)};
}
