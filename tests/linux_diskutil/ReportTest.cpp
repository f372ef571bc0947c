// What `list` and `info` print of mocked disks.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "linux_diskutil/Command.h"
#include "tests/linux_diskutil/Testbed.h"

namespace {

using diskutil::Outcome;
using Words = std::vector<std::string_view>;

Outcome Diskutil(const Words& words) {
  return diskutil::RunCommand(words, diskutil::Udisks());
}

TEST(Report, ListsEveryDiskThatHoldsAMedium) {
  const Testbed bed;
  const Outcome list = Diskutil({"LIST"});
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(list.text, TestData("list.txt"));
}

TEST(Report, AMistakeInTheSystemsDataCostsItsRowsOnly) {
  struct Mistake {
    std::string file, text, lost;
  };
  const std::string all = " disk1 disk1s1 disk1s2 disk7 disk7s1 disk7s2 disk7s3 disk7s10 disk12 ";
  for (const Mistake& mistake : {Mistake{"sdb2/uevent", "DEVTYPE=partition\nPARTN=2\n", " disk7s2 "},
                                 {"sdb2/uevent", "DEVTYPE=partition\nPARTN=3\nDEVNAME=sdb2\n", " disk7s2 "},
                                 {"sdb2/size", "", " disk7s2 "},
                                 {"sda/uevent", "", " disk1 disk1s1 disk1s2 "},
                                 {"sda/diskseq", "12", " disk1 disk1s1 disk1s2 disk12 "}}) {
    const Testbed bed;
    std::ofstream(getenv("UMOCKDEV_DIR") + ("/sys/class/block/" + mistake.file)) << mistake.text;
    const Outcome list = Diskutil({"list"});
    EXPECT_EQ(list.status, 0) << list.text;
    std::istringstream ids(all);
    for (std::string id; ids >> id;) {
      const bool lost = mistake.lost.find(" " + id + " ") != std::string::npos;
      EXPECT_NE(list.text.find("   " + id + "\n") != std::string::npos, lost) << mistake.file << id;
    }
  }
}

TEST(Report, InfoTellsTheMountedStateInSpiteOfTheName) {
  const Testbed bed;
  const std::string hostile = Diskutil({"info", "disk7s10"}).text;
  EXPECT_EQ(hostile.substr(hostile.find("Mounted:") + 26, 3), "No\n");
  EXPECT_NE(hostile.find("   Read-Only Volume:         Yes\n"), std::string::npos);

  bed.SetMounts("36 20 8:18 / /media/two\\040words\\012 rw shared:7 - hfsplus /dev/sdb2 umask=22,ro\n");
  const Outcome info = Diskutil({"info", "disk", "of 120.5 GB", "/dev/disk7s2"});
  EXPECT_EQ(info.status, 0);
  EXPECT_EQ(info.text, TestData("info.txt"));
}

TEST(Report, RefusesWhatItDoesNotUnderstand) {
  const Testbed bed;
  for (const Words& words : std::vector<Words>{
           {}, {"info"}, {"list", "disk7"}, {"erase", "disk7"}, {"mount", "Backup"}, {"info", "disk07"}}) {
    const Outcome outcome = Diskutil(words);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.text.starts_with("Usage: "));
  }
  // The last word counts, also when it names nothing and one before it does.
  for (const std::string_view id : {"disk7s4", "disk8", "disk2", "disk3", "disk18446744073709551615s1"}) {
    const Outcome outcome = Diskutil({"unMount", "disk7s2", id});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.text, "Could not find disk: " + std::string(id) + "\n");
  }
}

}  // namespace
