#pragma once

#include <cstdint>
#include <memory>
#include <vector>

/// A picture in memory, as the readers give it and the controls show it.
/// A value: copied with its pixels, with no tie to a screen or a file.
struct Picture {
  int Width = 0;
  int Height = 0;
  /// 0xAARRGGBB, not premultiplied; Width * Height of them, in rows from the top.
  std::vector<std::uint32_t> Pixels;
};

/// A picture shared by all that show it; nil for none.
using PictureRef = std::shared_ptr<const Picture>;
