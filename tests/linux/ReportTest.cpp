// What `list` and `info` print of mocked disks.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "linux/Command.h"
#include "tests/linux/Testbed.h"

namespace {

using diskutil::Outcome;

Outcome Diskutil(const std::vector<std::string_view>& words) {
  return diskutil::RunCommand(words, diskutil::Udisks());
}

std::string Data(const std::string& name) {
  std::ifstream file(TEST_DATA "/" + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Report, ListsEveryDiskThatHoldsAMedium) {
  const Testbed bed;
  const Outcome list = Diskutil({"LIST"});
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(list.text, Data("list.txt"));

  // The distances by which a row is taken apart.
  const std::string row = "   2:                  Apple_HFS Backup                  120.5 GB   disk7s2\n";
  EXPECT_NE(list.text.find(row), std::string::npos);
}

TEST(Report, InfoTellsTheMountedStateInSpiteOfTheName) {
  const Testbed bed;
  const std::string hostile = Diskutil({"info", "disk7s10"}).text;
  EXPECT_EQ(hostile.substr(hostile.find("Mounted:") + 26, 3), "No\n");
  EXPECT_NE(hostile.find("   Read-Only Volume:         Yes\n"), std::string::npos);

  bed.SetMounts("36 20 8:18 / /media/two\\040words\\012 rw,nosuid - hfsplus /dev/sdb2 ro,umask=22\n");
  const Outcome info = Diskutil({"info", "disk", "of 120.5 GB", "/dev/disk7s2"});
  EXPECT_EQ(info.status, 0);
  EXPECT_EQ(info.text, Data("info.txt"));
}

TEST(Report, RefusesWhatItDoesNotUnderstand) {
  const Testbed bed;
  for (const std::vector<std::string_view>& words : std::vector<std::vector<std::string_view>>{
           {}, {"info"}, {"list", "disk7"}, {"erase", "disk7"}, {"mount", "Backup"}, {"info", "disk07"}}) {
    const Outcome outcome = Diskutil(words);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.text.starts_with("Usage: "));
  }
  for (const std::string_view id : {"disk7s4", "disk8", "disk2", "disk3", "disk18446744073709551615s1"}) {
    const Outcome outcome = Diskutil({"unMount", "disk7s2", id});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.text, "Could not find disk: " + std::string(id) + "\n");
  }
}

}  // namespace
