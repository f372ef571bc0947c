// Mounting and unmounting through a mocked UDisks2, on mocked disks.

#include <gtest/gtest.h>
#include <sys/sysmacros.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "linux/Command.h"
#include "linux/Devices.h"
#include "linux/Mounter.h"
#include "tests/linux/Testbed.h"
#include "tests/linux/UdisksMock.h"

namespace {

using namespace std::chrono_literals;
using diskutil::Outcome;
using Requests = std::vector<std::string>;

const unsigned long kBackup = makedev(8, 18);
const std::string kError = "org.freedesktop.UDisks2.Error.";
const std::string kMounted = "36 20 8:18 / /media/Backup rw,nosuid - hfsplus /dev/sdb2 rw\n";
const std::string kMountedReadOnly = "36 20 8:18 / /media/Backup rw,nosuid - hfsplus /dev/sdb2 ro\n";
const std::string kMountedTwice = kMounted + "37 20 8:18 / /mnt rw - hfsplus /dev/sdb2 rw\n";
const std::string kCovered = kMounted + "37 36 8:1 / /media/Backup rw - ext4 /dev/sda1 rw\n";

struct Step {
  std::string error;
  std::string mounts;  // The mount table from then on.
};

struct Case {
  std::string verb;
  std::string mounts;
  std::vector<Step> script;
  Requests requests;
  int status;
  std::string text;
};

const Case kCases[] = {
    {"mount", "", {{"", kMounted}}, {"Mount"}, 0, "Volume Backup on disk7s2 mounted at /media/Backup"},
    {"mount",
     "",
     {{"", kMountedReadOnly}},
     {"Mount"},
     0,
     "Volume Backup on disk7s2 mounted read-only at /media/Backup"},
    {"mount", kMounted, {}, {}, 0, "Volume Backup on disk7s2 is already mounted at /media/Backup"},
    {"mount",
     "",
     {{kError + "AlreadyMounted", kMounted}},
     {"Mount"},
     0,
     "Volume Backup on disk7s2 mounted at /media/Backup"},
    {"mount", "", {{"", ""}}, {"Mount"}, 1, "Could not mount disk7s2: it did not stay mounted"},
    {"mount",
     "",
     {{kError + "NotAuthorizedCanObtain", ""}, {"", kMounted}},
     {"Mount", "Mount?"},
     0,
     "Volume Backup on disk7s2 mounted at /media/Backup"},
    {"mount",
     "",
     {{kError + "NotAuthorizedCanObtain", ""}, {kError + "NotAuthorizedDismissed", ""}},
     {"Mount", "Mount?"},
     1,
     "Could not mount disk7s2: not authorised"},
    {"mount",
     "",
     {{"org.freedesktop.DBus.Error.UnknownMethod", ""}},
     {"Mount"},
     1,
     "Could not mount disk7s2: there is no volume on it that can be mounted"},
    {"mount",
     "",
     {{kError + "Failed", ""}},
     {"Mount"},
     1,
     "Could not mount disk7s2: this kernel does not support the file system hfsplus"},
    {"mount",
     "",
     {{UdisksMock::kSilence, ""}},
     {"Mount"},
     1,
     "Could not mount disk7s2: UDisks2 does not answer"},
    {"unMount", kMounted, {{"", ""}}, {"Unmount"}, 0, "Volume Backup on disk7s2 unmounted"},
    {"unMount",
     kMountedTwice,
     {{"", kMounted}, {"", ""}},
     {"Unmount", "Unmount"},
     0,
     "Volume Backup on disk7s2 unmounted"},
    {"unMount", "", {}, {}, 0, "Volume Backup on disk7s2 is not mounted"},
    {"unMount",
     kMounted,
     {{kError + "DeviceBusy", kMounted}},
     {"Unmount"},
     1,
     "Could not unmount disk7s2: the volume is in use"},
    {"unMount",
     kMounted,
     {{kError + "Failed", kMounted}},
     {"Unmount"},
     1,
     "Could not unmount disk7s2: two?lines"},
    {"unMount", kCovered, {}, {}, 1, "Could not unmount disk7s2: the volume is in use"},
};

TEST(Mount, GoesThroughUdisks) {
  const Testbed bed;
  for (const Case& each : kCases) {
    SCOPED_TRACE(each.verb + ": " + each.text);
    bed.SetMounts(each.mounts);
    std::deque<UdisksMock::Answer> script;
    for (const Step& step : each.script) {
      script.push_back({step.error, [&bed, &step] { bed.SetMounts(step.mounts); }});
    }
    const UdisksMock mock(kBackup, script);
    const Outcome outcome = diskutil::RunCommand({each.verb, "disk7s2"}, diskutil::Udisks(300ms));
    EXPECT_EQ(mock.requests, each.requests);
    EXPECT_EQ(outcome.status, each.status);
    EXPECT_EQ(outcome.text, each.text + "\n");
  }
}

TEST(Mount, NeverTouchesADiskThatTookThePlaceOfAnother) {
  const Testbed bed;
  const auto device = diskutil::FindDevice({7, 2});
  ASSERT_TRUE(device);
  bed.ReplaceDisk7();
  const UdisksMock mock(kBackup, {{"", {}}});
  const diskutil::Udisks udisks(300ms);
  EXPECT_EQ(diskutil::Mounter(udisks).Mount(*device).text, "Could not find disk: disk7s2\n");
  bed.SetMounts(kMounted);
  EXPECT_EQ(diskutil::Mounter(udisks).Unmount(*device).text, "Could not find disk: disk7s2\n");
  EXPECT_EQ(mock.requests, Requests{});
}

TEST(Mount, WaitsForAPersonLongerThanForTheService) {
  const UdisksMock mock(
      kBackup, {{kError + "NotAuthorizedCanObtain", {}}, {"", [] { std::this_thread::sleep_for(600ms); }}});
  EXPECT_FALSE(diskutil::Udisks(200ms, 20s).Mount(kBackup));
  EXPECT_EQ(mock.requests, (Requests{"Mount", "Mount?"}));
}

TEST(Mount, TellsAMissingServiceFromAHangingOne) {
  const auto reason = [] { return diskutil::Udisks(200ms).Unmount(kBackup).value().reason; };
  setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:abstract=dravik-test-nobody", 1);
  EXPECT_EQ(reason(), diskutil::Failure::Reason::NoService);
  {
    const UdisksMock noService(UdisksMock::kNoDevice, {});
    EXPECT_EQ(reason(), diskutil::Failure::Reason::NoService);
  }
  const UdisksMock deafBus(UdisksMock::kDeafBus, {});
  EXPECT_EQ(reason(), diskutil::Failure::Reason::TimedOut);
}

}  // namespace
