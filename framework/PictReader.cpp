// The whole of one file format, so that nobody has to look for a second half of it. What its parts earn:
// `Cursor` checks every bound, so nothing behind it has to. The ways of storing pixels are those that drawing
// programs write. Settings, comments and regions are passed over, as hardly a file is without them. Pixels
// are scaled because a file may draw them at another size than it holds them. The limits are against small
// files that take much memory or time.
#include "framework/PictReader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <utility>
#include <vector>

namespace {

using Bytes = std::span<const std::byte>;

constexpr int kLargestSide = 4096;
/// A small file may draw large images again and again; no honest one draws more pixels than this in all.
constexpr int kMostPixelsDrawn = 4 * kLargestSide * kLargestSide;

constexpr std::size_t kFileHeaderSize = 512;
constexpr std::uint32_t kOpaque = 0xFF000000;

/// Reads big-endian values front to back. A read past the end gives zero, and `Good` says so from then on, so
/// that a record can be read whole and checked once.
class Cursor {
 public:
  explicit Cursor(Bytes data) : data_(data) {}

  bool Good() const { return good_; }
  bool AtEnd() const { return position_ == data_.size(); }

  Bytes Take(std::size_t count) {
    if (count > data_.size() - position_) {
      good_ = false;
      return {};
    }
    return data_.subspan(std::exchange(position_, position_ + count), count);
  }

  std::uint32_t Number(std::size_t size) {
    std::uint32_t value = 0;
    for (std::byte part : Take(size)) value = value << 8 | std::to_integer<std::uint32_t>(part);
    return value;
  }
  unsigned Byte() { return Number(1); }
  unsigned Word() { return Number(2); }
  std::uint32_t Long() { return Number(4); }
  int Signed() { return static_cast<std::int16_t>(Number(2)); }

  /// Opcodes stand at even positions.
  void Align() {
    if (position_ % 2 != 0) Take(1);
  }

 private:
  Bytes data_;
  std::size_t position_ = 0;
  bool good_ = true;
};

struct Rect {
  int top = 0, left = 0, bottom = 0, right = 0;

  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
  int PixelCount() const { return Width() * Height(); }
  bool IsSane() const {
    return Width() > 0 && Height() > 0 && Width() <= kLargestSide && Height() <= kLargestSide;
  }
  bool Holds(const Rect& other) const {
    return other.top >= top && other.left >= left && other.bottom <= bottom && other.right <= right;
  }
};

Rect ReadRect(Cursor& in) {
  return {in.Signed(), in.Signed(), in.Signed(), in.Signed()};  // in this order
}

/// A region or polygon: its size, which counts itself, in front.
void SkipSized(Cursor& in) {
  const unsigned size = in.Word();
  in.Take(std::max(size, 2u) - 2);
}

enum class Packing { kNone, kNoPad, kByteRuns, kWordRuns, kComponentRuns };

/// How the rows of one pixel image are stored.
struct PixelMap {
  Rect bounds;
  unsigned rowBytes = 0;
  unsigned pixelSize = 1;
  unsigned components = 1;
  Packing packing = Packing::kNone;
  /// A plain bit map has no table: 0 is white and 1 is black.
  std::array<std::uint32_t, 256> colors{0xFFFFFFFF, kOpaque};

  /// Bytes of a row once it is unpacked.
  std::size_t RowSize() const {
    if (packing == Packing::kNoPad) return rowBytes / 4 * 3;
    if (packing == Packing::kComponentRuns) return rowBytes / 4 * components;
    return rowBytes;
  }
};

bool ReadColors(Cursor& in, PixelMap& map) {
  in.Long();
  const bool inOrder = (in.Word() & 0x8000) != 0;
  const unsigned last = in.Word();
  for (unsigned i = 0; i <= last; ++i) {
    const unsigned value = in.Word();
    std::uint32_t color = kOpaque;
    for (int shift : {16, 8, 0}) color |= in.Word() >> 8 << shift;
    map.colors[(inOrder ? i : value) & 0xFF] = color;
  }
  return in.Good();
}

/// How the rows of an image without a colour table are stored; nullopt for an image that there is not.
std::optional<Packing> DirectPacking(unsigned packType, unsigned pixelSize, unsigned components) {
  const bool words = pixelSize == 16;
  const bool bytes = pixelSize == 32 && (components == 3 || components == 4);
  if (packType == 1 && (words || bytes)) return Packing::kNone;
  if (packType == 2 && bytes) return Packing::kNoPad;
  if ((packType == 0 || packType == 3) && words) return Packing::kWordRuns;
  if ((packType == 0 || packType == 4) && bytes) return Packing::kComponentRuns;
  return std::nullopt;
}

/// Reads a bit map or pixel map up to its rectangles. `direct` and `packed` are told by the opcode.
std::optional<PixelMap> ReadPixelMap(Cursor& in, bool direct, bool packed) {
  PixelMap map;
  if (direct) in.Long();
  const unsigned rowBytes = in.Word();
  const bool isBitMap = (rowBytes & 0x8000) == 0;
  map.rowBytes = rowBytes & 0x3FFF;
  map.bounds = ReadRect(in);
  if (packed) map.packing = Packing::kByteRuns;
  if (isBitMap && direct) return std::nullopt;
  if (!isBitMap) {
    in.Word();
    const unsigned packType = in.Word();
    in.Take(4 + 4 + 4 + 2);  // packed size, two resolutions, pixel type
    map.pixelSize = in.Word();
    map.components = in.Word();
    in.Take(2 + 4 + 4 + 4);  // component size, plane offset, table handle, reserved
    if (direct) {
      const auto packing = DirectPacking(packType, map.pixelSize, map.components);
      if (!packing) return std::nullopt;
      map.packing = *packing;
    } else if (!std::has_single_bit(map.pixelSize) || map.pixelSize > 8 || !ReadColors(in, map)) {
      return std::nullopt;
    }
  }
  // Packing would gain nothing in such short rows, so they never are.
  if (map.rowBytes < 8) map.packing = Packing::kNone;
  if (!map.bounds.IsSane()) return std::nullopt;
  if (map.rowBytes * 8 < static_cast<unsigned>(map.bounds.Width()) * map.pixelSize) return std::nullopt;
  return map;
}

/// PackBits: a count byte n, then n + 1 units as they stand or, for a negative n, one unit to be repeated 1 -
/// n times; -128 does nothing. True if that fills `row` to the byte.
bool UnpackBits(Bytes packed, std::size_t unit, std::span<std::byte> row) {
  Cursor in(packed);
  std::size_t filled = 0;
  while (!in.AtEnd()) {
    const int count = static_cast<std::int8_t>(in.Byte());
    if (count == -128) continue;
    const bool literal = count >= 0;
    const std::size_t size = unit * static_cast<std::size_t>(literal ? count + 1 : 1 - count);
    const Bytes run = in.Take(literal ? size : unit);
    if (!in.Good() || size > row.size() - filled) return false;
    for (std::size_t i = 0; i < size; ++i) row[filled++] = run[i % run.size()];
  }
  return filled == row.size();
}

bool ReadRow(Cursor& in, const PixelMap& map, std::span<std::byte> row) {
  if (map.packing == Packing::kNone || map.packing == Packing::kNoPad) {
    const Bytes stored = in.Take(row.size());
    std::copy(stored.begin(), stored.end(), row.begin());
    return in.Good();
  }
  const Bytes packed = in.Take(map.rowBytes > 250 ? in.Word() : in.Byte());
  return in.Good() && UnpackBits(packed, map.packing == Packing::kWordRuns ? 2 : 1, row);
}

std::uint32_t PixelAt(const PixelMap& map, Bytes row, std::size_t x) {
  const auto at = [row](std::size_t i) { return std::to_integer<std::uint32_t>(row[i]); };
  if (map.pixelSize == 16) {
    const std::uint32_t value = at(2 * x) << 8 | at(2 * x + 1);
    std::uint32_t color = kOpaque;
    for (int part : {2, 1, 0}) {
      const std::uint32_t five = value >> 5 * part & 0x1F;
      color |= (five << 3 | five >> 2) << 8 * part;
    }
    return color;
  }
  if (map.pixelSize == 32) {
    const bool planes = map.packing == Packing::kComponentRuns;
    const bool fourth = map.components == 4 && map.packing != Packing::kNoPad;
    const std::size_t step = planes ? map.rowBytes / 4 : 1;
    const bool leadingByte = planes ? fourth : map.packing == Packing::kNone;
    const std::size_t first = planes ? x : x * (leadingByte ? 4 : 3);
    const std::size_t red = first + (leadingByte ? step : 0);
    return (fourth ? at(first) << 24 : kOpaque) | at(red) << 16 | at(red + step) << 8 | at(red + 2 * step);
  }
  const std::size_t bit = x * map.pixelSize;
  const unsigned shift = static_cast<unsigned>(8 - map.pixelSize - bit % 8);
  return map.colors[at(bit / 8) >> shift & ((1u << map.pixelSize) - 1)];
}

class PictReader {
 public:
  explicit PictReader(Bytes file) : in_(file) {}

  std::optional<Picture> Read() {
    if (!ReadHeader()) return std::nullopt;
    for (;;) {
      in_.Align();
      const unsigned opcode = in_.Word();
      if (opcode == 0x00FF) break;
      const bool isPixels = (opcode | 1) == 0x0091 || (opcode >= 0x0098 && opcode <= 0x009B);
      if (!(isPixels ? DrawPixels(opcode) : Skip(opcode)) || !in_.Good()) return std::nullopt;
    }
    if (picture_.pixels.empty()) return std::nullopt;
    return std::move(picture_);
  }

 private:
  bool ReadHeader() {
    in_.Take(kFileHeaderSize);
    in_.Word();  // the low half of the size, of no use in large pictures
    frame_ = ReadRect(in_);
    if (in_.Word() != 0x0011 || in_.Word() != 0x02FF || in_.Word() != 0x0C00) return false;
    const int kind = in_.Signed();
    in_.Take(2 + 4 + 4);
    const Rect native = ReadRect(in_);
    in_.Long();
    // The extended header tells the frame in the picture's own resolution, the one its pixels are drawn in.
    if (kind == -2) frame_ = native;
    return in_.Good() && frame_.IsSane();
  }

  bool DrawPixels(unsigned opcode) {
    const bool hasRegion = (opcode & 1) != 0;
    const auto map = ReadPixelMap(in_, opcode >= 0x009A, opcode >= 0x0098);
    if (!map) return false;
    const Rect source = ReadRect(in_);
    const Rect target = ReadRect(in_);
    in_.Word();  // the transfer mode: all are taken as a copy
    if (hasRegion) SkipSized(in_);
    if (!in_.Good() || !map->bounds.Holds(source) || !source.IsSane() || !target.IsSane()) return false;
    budget_ -= map->bounds.PixelCount() + target.PixelCount();
    if (budget_ < 0) return false;

    // Grows with the rows that are really there, so a short file never takes much memory here.
    std::vector<std::uint32_t> pixels;
    std::vector<std::byte> row(map->RowSize());
    std::uint32_t anyAlpha = 0;
    for (int y = 0; y < map->bounds.Height(); ++y) {
      if (!ReadRow(in_, *map, row)) return false;
      for (int x = 0; x < map->bounds.Width(); ++x) {
        pixels.push_back(PixelAt(*map, row, static_cast<std::size_t>(x)));
        anyAlpha |= pixels.back() & kOpaque;
      }
    }
    // Many writers announce a fourth component and leave it empty.
    if (anyAlpha == 0)
      for (std::uint32_t& pixel : pixels) pixel |= kOpaque;
    DrawScaled(pixels, map->bounds, source, target);
    return true;
  }

  void DrawScaled(const std::vector<std::uint32_t>& pixels, const Rect& bounds, const Rect& source,
                  const Rect& target) {
    if (picture_.pixels.empty()) {
      picture_.width = frame_.Width();
      picture_.height = frame_.Height();
      picture_.pixels.resize(static_cast<std::size_t>(frame_.PixelCount()));
    }
    for (int y = std::max(target.top, frame_.top); y < std::min(target.bottom, frame_.bottom); ++y) {
      const int fromY = source.top - bounds.top + (y - target.top) * source.Height() / target.Height();
      for (int x = std::max(target.left, frame_.left); x < std::min(target.right, frame_.right); ++x) {
        const int fromX = source.left - bounds.left + (x - target.left) * source.Width() / target.Width();
        picture_.pixels[static_cast<std::size_t>((y - frame_.top) * frame_.Width() + x - frame_.left)] =
            pixels[static_cast<std::size_t>(fromY * bounds.Width() + fromX)];
      }
    }
  }

  /// Passes over settings and comments. False for what draws something that is no pixel image.
  bool Skip(unsigned opcode) {
    // Of patterns, pen, text and colours; -1 for those of another kind.
    static constexpr std::array<int, 0x24> kSettings{0, -1, 8, 2, 1, 2, 4,  4,  2,  8, 8, 4,  //
                                                     4, 2,  4, 4, 8, 2, -1, -1, -1, 2, 2, 0,
                                                     0, 0,  6, 6, 0, 6, 0,  6,  8,  4, 6, 2};
    if (opcode < kSettings.size() && kSettings[opcode] >= 0)
      in_.Take(static_cast<std::size_t>(kSettings[opcode]));
    else if (opcode == 0x0001)  // the clipping
      SkipSized(in_);
    else if ((opcode | 1) == 0x00A1)  // a comment: its kind, and for the long one its text
      in_.Take(opcode == 0x00A0 ? 2 : in_.Long() & 0xFFFF);
    else
      return false;
    return true;
  }

  Cursor in_;
  Rect frame_;
  Picture picture_;
  int budget_ = kMostPixelsDrawn;
};

}  // namespace

std::optional<Picture> ReadPict(std::span<const std::byte> file) {
  return PictReader(file).Read();
}
