// Real partitions with real file systems, on loop devices. For root only.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "framework/Descriptor.h"
#include "linux_diskutil/Command.h"
#include "tests/linux_diskutil/UdisksMock.h"

namespace {

using diskutil::Outcome;

bool Shell(const std::string& commands) {
  return std::system(("exec >/dev/null 2>&1; " + commands).c_str()) == 0;
}

std::string FirstLine(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

/// All there is of the volume is the beginning of its header: version, block size and number of blocks.
void WriteHfs(const std::string& path, long start, const std::string& signature) {
  std::string header(512, '\0');
  header.replace(0, 4, signature + '\0' + (signature == "HX" ? '\5' : '\4'));
  header.replace(40, 8, {'\0', '\0', '\x10', '\0', '\0', '\0', '\x13', '\0'});
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(start + 1024) << header;
}

/// An image on a loop device. Detached while we hold it open, the device goes with this process, however that
/// ends, and so do its partitions, thanks to -P.
class LoopDisk {
 public:
  explicit LoopDisk(const std::string& image)
      : device_(Attach(image)), file_(open(device_.c_str(), O_RDONLY)) {
    if (file_) Shell("partx -u " + device_ + "; losetup -d " + device_);
  }
  explicit operator bool() const { return static_cast<bool>(file_); }
  std::string Partition(int number) const { return device_ + "p" + std::to_string(number); }
  std::string Id() const { return "disk" + FirstLine("/sys/block/" + device_.substr(5) + "/diskseq"); }

 private:
  static std::string Attach(const std::string& image) {
    Shell("losetup -fP --show " + image + " >" + image + ".loop");
    return FirstLine(image + ".loop");
  }

  std::string device_;
  Descriptor file_;
};

class Image : public testing::Test {
 protected:
  // Mounts and images of this process alone, which end with it.
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "needs root";
    mkdir("/media", 0755);
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("none", "/media", "tmpfs", 0, nullptr) != 0) {
      GTEST_SKIP() << "needs a mount table of its own";
    }
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:abstract=dravik-test-nobody", 1);
  }
};

std::string EmptyImage(const std::string& name) {
  std::string path = "/media/" + name;
  std::ofstream(path).close();
  std::filesystem::resize_file(path, 48 << 20);
  return path;
}

Outcome Diskutil(const std::vector<std::string_view>& words) {
  return diskutil::RunCommand(words, diskutil::Udisks());
}

/// Where there is a udev daemon, it knows a new disk a moment later than the kernel.
bool ListComesToHold(const std::string& text) {
  for (int i = 0; i < 100; ++i) {
    if (Diskutil({"list"}).text.find(text) != std::string::npos) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

TEST_F(Image, IsListedMountedAndUnmounted) {
  const std::string path = EmptyImage("gpt");
  if (!Shell("printf 'label: gpt\nstart=2048,size=38912,type=48465300-0000-11AA-AA11-00306543ECAC\n"
             "start=40960,size=40960,type=L\n' | sfdisk " +
             path) ||
      !Shell("mkfs.ext4 -q -F -L 'e x t' -E offset=20971520 " + path + " 20480k")) {
    GTEST_SKIP() << "needs sfdisk and mkfs.ext4";
  }
  WriteHfs(path, 1 << 20, "H+");
  const LoopDisk disk(path);
  if (!disk || !std::filesystem::exists(disk.Partition(2)))
    GTEST_SKIP() << "needs loop devices with partitions";

  const std::string hfs = disk.Id() + "s1";
  const std::string ext = disk.Id() + "s2";
  EXPECT_TRUE(
      ListComesToHold("0:      GUID_partition_scheme                         *50.3 MB   " + disk.Id()));
  EXPECT_TRUE(ListComesToHold("1:                  Apple_HFS                          19.9 MB   " + hfs));
  EXPECT_TRUE(ListComesToHold("2:           Linux Filesystem e x t                    21.0 MB   " + ext));
  EXPECT_EQ(Diskutil({"mount", disk.Id()}).status, 1);
  EXPECT_EQ(Diskutil({"mount", hfs}).status, 1);  // there is nothing behind its header

  const std::string folder = "/media/" + ext;
  EXPECT_EQ(Diskutil({"mount", ext}).text, "Volume e x t on " + ext + " mounted at " + folder + "\n");
  {
    const Descriptor user(open(folder.c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(Diskutil({"unMount", ext}).text, "Could not unmount " + ext + ": the volume is in use\n");
  }
  EXPECT_EQ(Diskutil({"unMount", ext}).text, "Volume e x t on " + ext + " unmounted\n");
  Shell("blockdev --setro " + disk.Partition(2));
  EXPECT_NE(Diskutil({"mount", ext}).text.find(" mounted read-only at "), std::string::npos);
  Diskutil({"unMount", ext});
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(Image, KeepsItsPlaceWhileTheServiceIsAtWork) {
  const std::string mine = EmptyImage("mine");
  const std::string other = EmptyImage("other");
  if (!Shell("mkfs.ext4 -q -F " + mine + "; mkfs.ext4 -q -F " + other + "; losetup -f --show " + mine +
             " >/media/loop; mkdir /media/Backup"))
    GTEST_SKIP() << "needs mkfs.ext4 and loop devices";
  const std::string disk = FirstLine("/media/loop");
  const std::string id = "disk" + FirstLine("/sys/block/" + disk.substr(5) + "/diskseq");
  struct stat status {};
  stat(disk.c_str(), &status);
  const UdisksMock service(status.st_rdev, {{"", [&] {
                                               Shell("losetup -d " + disk + "; losetup " + disk + " " +
                                                     other + "; mount " + disk + " /media/Backup");
                                             }}});
  EXPECT_EQ(Diskutil({"mount", id}).text, "Volume on " + id + " mounted at /media/Backup\n");
  EXPECT_EQ(id, "disk" + FirstLine("/sys/block/" + disk.substr(5) + "/diskseq"));
  Shell("umount /media/Backup; losetup -d " + disk);
}

}  // namespace
