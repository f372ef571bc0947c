#include "framework/PictReader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <string>

#include "framework/FolderItem.h"

namespace {

using Bytes = std::vector<std::byte>;

/// Puts a picture file together, with words as the unit.
class File {
 public:
  File(int width, int height) : bytes_(512 + 2) {
    Rect(1, 1)  // in another resolution, of which nothing is drawn
        .Words({0x0011, 0x02FF, 0x0C00, 0xFFFE, 0, 72, 0, 72, 0})
        .Rect(width, height)
        .Words({0, 0});
  }
  File& Words(std::initializer_list<int> words) {
    for (int word : words) Raw({word >> 8 & 0xFF, word & 0xFF});
    return *this;
  }
  File& Raw(std::initializer_list<int> values) {
    for (int value : values) bytes_.push_back(static_cast<std::byte>(value));
    return *this;
  }
  File& Rect(int width, int height) { return Words({0, 0, height, width}); }

  Bytes End() {
    if (bytes_.size() % 2 != 0) Raw({0});
    Words({0x00FF});
    return bytes_;
  }

 private:
  Bytes bytes_;
};

constexpr int bitMap = 1;

/// A pixel image of two pixels beside each other, drawn into `width` by `height`; its row is still to come.
File& TwoPixels(File& file, int opcode, int rowBytes, int pixelSize, int packType, int components,
                int width = 2, int height = 1) {
  const bool direct = opcode == 0x009A;
  file.Words({opcode});
  if (direct) file.Words({0, 0xFF});
  file.Words({rowBytes | (pixelSize == bitMap ? 0 : 0x8000)}).Rect(2, 1);
  if (pixelSize != bitMap)
    file.Words(
        {0, packType, 0, 0, 72, 0, 72, 0, direct ? 16 : 0, pixelSize, components, 8, 0, 0, 0, 0, 0, 0});
  if (pixelSize == 8) file.Words({0, 0, 0, 1, 7, 0xFFFF, 0x8080, 0, 9, 0, 0, 0xFFFF});
  file.Rect(2, 1).Rect(width, height).Words({0});
  return opcode % 2 != 0 ? file.Words({10, -1, -1, -1, -1}) : file;
}

TEST(PictReader, ReadsEveryWayOfStoringPixels) {
  struct Case {
    const char* name;
    int opcode, rowBytes, pixelSize, packType, components;
    std::initializer_list<int> row;
    std::vector<std::uint32_t> pixels;
  };
  const Case cases[] = {
      {"bits, unpacked", 0x90, 2, bitMap, 0, 1, {0x40, 0}, {0xFFFFFFFF, 0xFF000000}},
      {"bits, too short to be packed", 0x98, 2, bitMap, 0, 1, {0x80, 0}, {0xFF000000, 0xFFFFFFFF}},
      {"bits, in a region", 0x99, 8, bitMap, 0, 1, {5, 0x80, 0, 0x80, 0xFA, 0}, {0xFF000000, 0xFFFFFFFF}},
      {"table, unpacked", 0x90, 8, 8, 0, 1, {9, 7, 0, 0, 0, 0, 0, 0}, {0xFF0000FF, 0xFFFF8000}},
      {"table, packed", 0x98, 8, 8, 0, 1, {6, 1, 7, 9, 0x80, 0xFB, 0}, {0xFFFF8000, 0xFF0000FF}},
      {"16 bits", 0x9A, 4, 16, 1, 3, {0x7C, 0, 0, 0x10}, {0xFFFF0000, 0xFF000084}},
      {"16 bits, packed", 0x9A, 8, 16, 3, 3, {6, 0xFF, 0x03, 0xE0, 0xFF, 0, 0}, {0xFF00FF00, 0xFF00FF00}},
      {"32 bits", 0x9A, 8, 32, 1, 3, {0, 1, 2, 3, 9, 4, 5, 6}, {0xFF010203, 0xFF040506}},
      {"without the pad byte", 0x9A, 8, 32, 2, 3, {1, 2, 3, 4, 5, 6}, {0xFF010203, 0xFF040506}},
      {"components", 0x9A, 8, 32, 4, 3, {7, 5, 1, 4, 2, 5, 3, 6}, {0xFF010203, 0xFF040506}},
      {"alpha", 0x9A, 8, 32, 4, 4, {7, 1, 0x80, 0, 0xFF, 1, 0xFD, 2}, {0x80010202, 0x00010202}},
      {"alpha left empty", 0x9A, 8, 32, 0, 4, {6, 0xFF, 0, 0xFD, 1, 0xFF, 2}, {0xFF010102, 0xFF010102}},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    File file(2, 1);
    file.Words({0, 1, 10, -1, 0, 1, 2, 0x1A, 1, 2, 3, 0xA0, 7, 0xA1, 7, 3}).Raw({1, 2, 3, 0});  // no pixels
    TwoPixels(file, test.opcode, test.rowBytes, test.pixelSize, test.packType, test.components).Raw(test.row);
    const auto picture = ReadPict(file.End());
    ASSERT_TRUE(picture);
    EXPECT_TRUE(picture->pixels == test.pixels && picture->width == 2 && picture->height == 1);
  }
}

TEST(PictReader, RefusesWhatIsTooLargeOrNotOfPixelsAlone) {
  const auto drawn = [](int side, int times, int last = 0) {
    File file(side, side);
    for (int i = 0; i < times; ++i) TwoPixels(file, 0x90, 2, bitMap, 0, 1, side, side).Raw({0, 0});
    return ReadPict(file.Words({last}).End()).has_value();
  };
  EXPECT_TRUE(drawn(4096, 1));
  EXPECT_FALSE(drawn(4097, 1));
  EXPECT_FALSE(drawn(4096, 5)) << "a small file kept the reader drawing";
  EXPECT_FALSE(drawn(2, 0)) << "a picture without pixels";
  EXPECT_FALSE(drawn(2, 1, 0x38)) << "a shape that needs no data";
  EXPECT_FALSE(drawn(2, 1, 0x24)) << "the first opcode of no known length";
}

/// What becomes of a picture in which one byte is another: x for none, = for the same, ~ for another picture.
std::string Disturbed(const File& file) {
  const Bytes good = File(file).End();
  std::string outcomes;
  for (std::size_t at = 514; at < good.size(); ++at) {
    EXPECT_FALSE(ReadPict(std::span(good).first(at))) << "cut short";
    Bytes bytes = good;
    bytes[at] ^= std::byte{0x5A};
    const auto picture = ReadPict(bytes);
    outcomes += !picture ? "x" : picture->pixels == ReadPict(good)->pixels ? "=" : "~";
  }
  return outcomes;
}

TEST(PictReader, TakesEachByteForWhatItIs) {
  File file(2, 1);
  const std::string header = "========xxxxxx~~==========xxxxx~x~====";  // frame, version, kind, ..., frame
  EXPECT_EQ(Disturbed(TwoPixels(file = File(2, 1), 0x98, 8, bitMap, 0, 1).Raw({4, 0, 0x80, 0xFA, 0})),
            header + "xxxxxxxxxxxxxxxxxxxxxxxxx=x~==xx~x==xx");
  EXPECT_EQ(Disturbed(TwoPixels(file = File(2, 1), 0x98, 8, 8, 0, 1).Raw({6, 1, 7, 9, 0x80, 0xFB, 0})),
            header +
                "xxxxxxxxxxxx==================xx======================xx=~~=~=~==~~=~=~=xxxxxxxxxxxxx=x~=="
                "xx~~xx==xx");
  EXPECT_EQ(Disturbed(TwoPixels(file = File(2, 1), 0x9A, 8, 32, 1, 3).Raw({0, 1, 2, 3, 9, 4, 5, 6})),
            header + "xx====xxxxxxxxxx==xx==============xxxx==============xxxxxxxxxxxxx=x~===~~~=~~~xx");
}

TEST(PictReader, AFileThatCannotBeReadIsNoPicture) {
  const std::string path = testing::TempDir() + "dravik-unreadable.pct";
  std::filesystem::create_symlink("/proc/self/mem", path);  // opens, and cannot be read at its start
  EXPECT_FALSE(FolderItem(path).OpenAsPicture());
  std::filesystem::remove(path);
}

}  // namespace
