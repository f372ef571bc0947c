// Text that others chose: names from disks, identifiers from command lines.

#include <gtest/gtest.h>

#include <string>

#include "linux_diskutil/Identifier.h"
#include "linux_diskutil/PrintableText.h"

namespace {

TEST(Text, ComesOutPrintable) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"  two   words ", "two words"},
      {"line\nend\ttab\x7f", "line?end?tab?"},
      {std::string_view("zero\0byte", 9), "zero?byte"},
      {"next\xc2\x85line \xe2\x80\xa8.", "next?line ?."},
      {"\xe2\x80\xaegnp\xe2\x81\xa9\xd8\x9c", "?gnp??"},
      {"\xff\xfe\x80", "??"},
      {"half \xc3", "half ?"},
      {"surrogate \xed\xa0\x80!", "surrogate ?!"},
      {"overlong \xc0\xaf/", "overlong ?/"},
      {"e\xcc\x81te\xcc\x81", "\xc3\xa9t\xc3\xa9"},
      {"\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x92\xbb", "\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x92\xbb"},
  };
  for (const auto& [bytes, clean] : cases) EXPECT_EQ(diskutil::PrintableText(bytes), clean) << bytes;
  EXPECT_EQ(diskutil::DecodeUdevEscapes("a\\x20b\\xzz\\x4\\x"), "a b\\xzz\\x4\\x");
}

TEST(Identifier, HasOneSpelling) {
  for (const std::string_view word : {"disk0", "disk7s2", "/dev/disk18446744073709551615s4294967295"}) {
    const auto id = diskutil::ReadIdentifier(word);
    ASSERT_TRUE(id) << word;
    EXPECT_TRUE(word.ends_with(id->Text())) << word;
  }
  for (const std::string_view word :
       {"", "disk", "disks1", "Disk7", "disk07", "disk7s", "disk7s0", "disk7s02", "disk7s2s1", "disk7s2 ",
        "disk-7", "disk+7", "disk18446744073709551616", "disk7s4294967296", "/dev/sdb2", "mydisk7"}) {
    EXPECT_FALSE(diskutil::ReadIdentifier(word)) << word;
  }
}

}  // namespace
