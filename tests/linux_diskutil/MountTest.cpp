// Mounting and unmounting through a mocked UDisks2, on mocked disks.

#include <gtest/gtest.h>
#include <sys/sysmacros.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "linux_diskutil/Command.h"
#include "linux_diskutil/Devices.h"
#include "linux_diskutil/Mounter.h"
#include "tests/linux_diskutil/Testbed.h"
#include "tests/linux_diskutil/UdisksMock.h"

namespace {

using namespace std::chrono_literals;
using diskutil::Outcome;
using Requests = std::vector<std::string>;

const unsigned long kBackup = makedev(8, 18);
const std::string kError = "org.freedesktop.UDisks2.Error.";
const std::string kMounted = "36 20 8:18 / /media/Backup rw - hfsplus /dev/sdb2 rw,errors=remount-ro\n";
const std::string kMountedReadOnly = "36 20 8:18 / /media/Backup rw,nosuid - hfsplus /dev/sdb2 ro\n";
const std::string kMountedAgain = "37 20 8:18 / /mnt rw - hfsplus /dev/sdb2 rw\n";
/// A user's own file system may call itself what it likes. A btrfs names one of its disks, the other one
/// here.
const std::string kFuse = "38 20 0:60 / /home/me/x rw,user_id=1000 - fuse.btrfs /dev/sdb2 rw\n";
const std::string kBtrfs = "39 20 0:61 / /media/Backup rw - btrfs /dev/sdb3 rw\n";
const std::string kCover = "37 36 8:1 / /media/Backup rw - ext4 /dev/sda1 rw\n";

struct Step {
  std::string error;
  std::string mounts;     // the mount table from then on
  bool replaced = false;  // another disk has the number of disk7 from then on
};

struct Case {
  std::string verb, mounts;
  std::vector<Step> script;
  Requests requests;
  Outcome outcome;
};

const std::string kBusy = kError + "DeviceBusy";
const std::string kAskFirst = kError + "NotAuthorizedCanObtain";
const std::string kDismissed = kError + "NotAuthorizedDismissed";
const std::string kNoInterface = "org.freedesktop.DBus.Error.UnknownMethod";

const std::string kOn = "Volume Backup on disk7s2 ";
const std::string kCannot = "Could not mount disk7s2: ";
const std::string kGone = "Could not find disk: disk7s2";
const std::string kOther = kGone + "; disk20s2 came in its place and ";
const std::string kCannotUnmount = "Could not unmount disk7s2: ";

// clang-format off
const Case kCases[] = {
    {"mount",   "",        {{"", kMounted}},                      {"Mount"},           {0, kOn + "mounted at /media/Backup\n"}},
    {"mount",   "",        {{"", kMountedReadOnly}},              {"Mount"},           {0, kOn + "mounted read-only at /media/Backup\n"}},
    {"mount",   kMounted,  {},                                    {},                  {0, kOn + "is already mounted at /media/Backup\n"}},
    {"mount",   "",        {{kError + "AlreadyMounted", kMounted}}, {"Mount"},         {0, kOn + "mounted at /media/Backup\n"}},
    {"mount",   "",        {{kAskFirst, ""}, {"", kMounted}},     {"Mount", "Mount?"}, {0, kOn + "mounted at /media/Backup\n"}},
    {"mount",   "",        {{kAskFirst, ""}, {kDismissed, ""}},   {"Mount", "Mount?"}, {1, kCannot + "not authorised\n"}},
    {"mount",   "",        {{"", ""}},                            {"Mount"},           {1, kCannot + "it did not stay mounted\n"}},
    {"mount",   "",        {{kNoInterface, ""}},                  {"Mount"},           {1, kCannot + "there is no volume on it that can be mounted\n"}},
    {"mount",   "",        {{kError + "Failed", ""}},             {"Mount"},           {1, kCannot + "this kernel does not support the file system hfsplus\n"}},
    {"mount",   "",        {{UdisksMock::kSilence, ""}},          {"Mount"},           {1, kCannot + "no answer from UDisks2 in time, it may still be at work\n"}},
    {"mount",   "",        {{"org.freedesktop.DBus.Error.NoReply", ""}}, {"Mount"},    {1, kCannot + "UDisks2 ended before it answered\n"}},
    {"mount",   kFuse,     {{"", kFuse + kBtrfs}},                {"Mount"},           {0, kOn + "mounted at /media/Backup\n"}},
    {"mount",   "",        {{kAskFirst, "", true}},               {"Mount"},           {1, kGone + "\n"}},
    {"mount",   "",        {{"", kMounted, true}, {"", ""}},      {"Mount", "Unmount"}, {1, kOther + "was mounted, and is unmounted again\n"}},
    {"mount",   "",        {{"", kMounted, true}, {kBusy, kMounted}}, {"Mount", "Unmount"}, {1, kOther + "was mounted at /media/Backup, where it still is: the volume is in use\n"}},
    {"mount",   "",        {{kError + "AlreadyMounted", kMounted, true}}, {"Mount"},   {1, kGone + "\n"}},
    {"mount",   "",        {{"org.freedesktop.DBus.Error.NoMemory", "", true}}, {"Mount"}, {1, kOther + "may have been mounted\n"}},
    {"unMount", kMounted,  {{"", "", true}},                      {"Unmount"},         {1, kOther + "may have been unmounted\n"}},
    {"unMount", kMounted,  {{kBusy, kMounted, true}},             {"Unmount"},         {1, kGone + "\n"}},
    {"unMount", kFuse,     {},                                    {},                  {0, kOn + "is not mounted\n"}},
    {"unMount", kBtrfs,    {{"", ""}},                            {"wrong object: Unmount"}, {0, kOn + "unmounted\n"}},
    {"unMount", kMounted,  {{"", ""}},                            {"Unmount"},         {0, kOn + "unmounted\n"}},
    {"unMount", kMounted + kMountedAgain, {{"", kMounted}, {"", ""}}, {"Unmount", "Unmount"}, {0, kOn + "unmounted\n"}},
    {"unMount", kMounted,  {{kBusy, kMounted}},                   {"Unmount"},         {1, kCannotUnmount + "the volume is in use\n"}},
    {"unMount", kMounted,  {{kError + "Failed", kMounted}},       {"Unmount"},         {1, kCannotUnmount + "two?lines\n"}},
    {"unMount", kMounted + kCover, {},                            {},                  {1, kCannotUnmount + "the volume is in use\n"}},
};
// clang-format on

TEST(Mount, GoesThroughUdisks) {
  const Testbed bed;
  for (const Case& each : kCases) {
    SCOPED_TRACE(each.verb + ": " + each.outcome.text);
    bed.SetMounts(each.mounts);
    bed.NumberDisk7("7");
    std::deque<UdisksMock::Answer> script;
    for (const Step& step : each.script) {
      script.push_back({step.error, [&bed, &step] {
                          bed.SetMounts(step.mounts);
                          if (step.replaced) bed.NumberDisk7("20");
                        }});
    }
    const UdisksMock mock(kBackup, script);
    const bool silent = !each.script.empty() && each.script.back().error == UdisksMock::kSilence;
    const Outcome outcome =
        diskutil::RunCommand({each.verb, "disk7s2"}, diskutil::Udisks(10s, silent ? 1s : 10s));
    EXPECT_EQ(mock.Requests(), each.requests);
    EXPECT_EQ(std::pair(outcome.status, outcome.text), std::pair(each.outcome.status, each.outcome.text));
  }
}

TEST(Mount, NeverTouchesADiskThatTookThePlaceOfAnother) {
  const Testbed bed;
  const auto device = diskutil::FindDevice({7, 2});
  ASSERT_TRUE(device);
  bed.NumberDisk7("20");
  const UdisksMock mock(kBackup, {{"", {}}});
  const diskutil::Udisks udisks;
  EXPECT_EQ(diskutil::Mounter(udisks).Mount(*device).text, "Could not find disk: disk7s2\n");
  bed.SetMounts(kMounted);
  EXPECT_EQ(diskutil::Mounter(udisks).Unmount(*device).text, "Could not find disk: disk7s2\n");
  EXPECT_EQ(mock.Requests(), Requests{});
}

TEST(Mount, WaitsForWorkLongerThanForAnAnswer) {
  const auto slow = [] { std::this_thread::sleep_for(1500ms); };
  const UdisksMock mock(kBackup, {{kError + "NotAuthorizedCanObtain", slow}, {"", slow}});
  EXPECT_FALSE(diskutil::Udisks(1s, 20s).Mount(kBackup, [] { return true; }).failure);
  EXPECT_EQ(mock.Requests(), (Requests{"Mount", "Mount?"}));
}

TEST(Mount, TellsAMissingServiceFromAHangingOne) {
  const auto reason = [](auto limit) {
    return diskutil::Udisks(limit).Unmount(kBackup, [] { return true; }).value().reason;
  };
  setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:abstract=dravik-test-nobody", 1);
  EXPECT_EQ(reason(10s), diskutil::Failure::Reason::kNoService);
  {
    const UdisksMock noService(UdisksMock::kNoDevice, {});
    EXPECT_EQ(reason(10s), diskutil::Failure::Reason::kNoService);
  }
  const UdisksMock deafBus(UdisksMock::kDeafBus, {});
  EXPECT_EQ(reason(200ms), diskutil::Failure::Reason::kTimedOut);
}

}  // namespace
