#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "framework/Picture.h"

/// Reads a QuickDraw picture file ("PICT", version 2), the format that "Inside Macintosh: Imaging With
/// QuickDraw" lists in its appendix on picture opcodes. Pixel images are drawn, packed or not, of 1 to 8 bits
/// with a colour table and of 16 or 32 bits direct, a fourth component as alpha; what no pixel image covers
/// stays transparent. Clipping is skipped.
///
/// Nothing in `file` is trusted: a file that ends early, contradicts itself, is larger than 4096 pixels on a
/// side, draws no pixels at all, or lines, shapes and text too, gives nullopt. Can be called on any thread.
std::optional<Picture> ReadPict(std::span<const std::byte> file);
