#pragma once

#include <cstdint>
#include <memory>
#include <vector>

/// A picture in memory, as the readers give it and the controls show it.
/// A value: copied with its pixels, with no tie to a screen or a file.
struct Picture {
  int width = 0;
  int height = 0;
  /// 0xAARRGGBB, not premultiplied; width * height of them, in rows from the top.
  std::vector<std::uint32_t> pixels;
};

/// A picture shared by all that show it; nil for none.
using PictureRef = std::shared_ptr<const Picture>;
