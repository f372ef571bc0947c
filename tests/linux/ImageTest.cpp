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

#include "linux/Command.h"
#include "linux/FileDescriptor.h"

namespace {

using diskutil::FileDescriptor;
using diskutil::Outcome;

bool Shell(const std::string& command) {
  return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

std::string FirstLine(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

// Big-endian bytes.
std::string Big(std::uint64_t value, int size) {
  std::string bytes;
  for (int i = size - 1; i >= 0; --i) bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

// As much of an HFS+ volume as it takes to be known by its name: the volume header, and a catalog of two
// nodes, the second of which holds the record of the root folder.
void WriteHfs(const std::string& path, long start, const std::string& signature, const std::string& name) {
  constexpr int kBlock = 4096;
  constexpr int kCatalog = 4;
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  const auto put = [&](long offset, const std::string& bytes) { file.seekp(start + offset) << bytes; };
  put(1024, signature + Big(signature == "HX" ? 5 : 4, 2));
  put(1024 + 40, Big(kBlock, 4) + Big(4864, 4) + Big(4800, 4));
  put(1024 + 272, Big(2 * kBlock, 8) + Big(2 * kBlock, 4) + Big(2, 4) + Big(kCatalog, 4) + Big(2, 4));
  const std::string depthRootRecordsFirstLast = Big(1, 2) + Big(1, 4) + Big(1, 4) + Big(1, 4) + Big(1, 4);
  put(kCatalog * kBlock, Big(0, 8) + Big(1, 1) + Big(0, 5) + depthRootRecordsFirstLast + Big(kBlock, 2));
  std::string key = Big(6 + 2 * name.size(), 2) + Big(1, 4) + Big(name.size(), 2);
  for (const char letter : name) key += Big(static_cast<unsigned char>(letter), 2);
  put((kCatalog + 1) * kBlock, Big(0, 8) + "\xff\x01" + Big(1, 2) + Big(0, 2) + key);
}

// An image on a loop device. The kernel takes it down when the test's process has ended, however that came
// about.
class LoopDisk {
 public:
  explicit LoopDisk(const std::string& image) : device_(Attach(image)), file_(Open(device_)) {
    // Detached while we hold it open, it goes with our descriptor; its partitions go with it thanks to -P
    // above.
    if (file_) Shell("{ partx -u " + device_ + "; losetup -d " + device_ + "; }");
  }
  explicit operator bool() const { return static_cast<bool>(file_); }
  std::string Partition(int number) const { return device_ + "p" + std::to_string(number); }
  std::string Id() const { return "disk" + FirstLine("/sys/block/" + device_.substr(5) + "/diskseq"); }

 private:
  static std::string Attach(const std::string& image) {
    const std::string answer = image + ".loop";
    return std::system(("losetup -fP --show " + image + " >" + answer + " 2>/dev/null").c_str()) == 0
               ? FirstLine(answer)
               : "";
  }
  static int Open(const std::string& device) { return open(device.c_str(), O_RDONLY | O_CLOEXEC); }

  std::string device_;
  FileDescriptor file_;
};

class Image : public testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "needs root";
    char name[] = "/tmp/dravik-image-XXXXXX";
    ASSERT_TRUE(mkdtemp(name));
    folder_ = name;
    // Mounts of this process alone, which end with it.
    mkdir("/media", 0755);
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("none", "/media", "tmpfs", 0, nullptr) != 0) {
      GTEST_SKIP() << "needs a mount table of its own";
    }
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:abstract=dravik-test-nobody", 1);
  }
  void TearDown() override {
    unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    if (!folder_.empty()) std::filesystem::remove_all(folder_);
  }

  std::string Empty(const std::string& name) const {
    std::ofstream(folder_ + "/" + name);
    std::filesystem::resize_file(folder_ + "/" + name, 48 << 20);
    return folder_ + "/" + name;
  }

  std::string folder_;
};

Outcome Diskutil(const std::vector<std::string_view>& words) {
  return diskutil::RunCommand(words, diskutil::Udisks());
}

// Where there is a udev daemon, it knows a new disk a moment later than the kernel.
bool ListComesToHold(const std::string& text) {
  for (int i = 0; i < 100; ++i) {
    if (Diskutil({"list"}).text.find(text) != std::string::npos) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

TEST_F(Image, IsListedMountedAndUnmounted) {
  const std::string path = Empty("gpt");
  if (!Shell("printf 'label: gpt\nstart=2048,size=38912,type=48465300-0000-11AA-AA11-00306543ECAC\n"
             "start=40960,size=40960,type=L\n' | sfdisk " +
             path) ||
      !Shell("mkfs.ext4 -q -F -L 'e x t' -E offset=20971520 " + path + " 20480k")) {
    GTEST_SKIP() << "needs sfdisk and mkfs.ext4";
  }
  WriteHfs(path, 1 << 20, "H+", "Backup");
  const LoopDisk disk(path);
  if (!disk || !std::filesystem::exists(disk.Partition(2)))
    GTEST_SKIP() << "needs loop devices with partitions";

  const std::string hfs = disk.Id() + "s1";
  const std::string ext = disk.Id() + "s2";
  EXPECT_TRUE(
      ListComesToHold("0:      GUID_partition_scheme                         *50.3 MB   " + disk.Id()));
  EXPECT_TRUE(ListComesToHold("1:                  Apple_HFS Backup                   19.9 MB   " + hfs));
  EXPECT_TRUE(ListComesToHold("2:           Linux Filesystem e x t                    21.0 MB   " + ext));
  EXPECT_EQ(Diskutil({"mount", disk.Id()}).status, 1);
  EXPECT_EQ(Diskutil({"mount", hfs}).status, 1);  // There is nothing but a name in it.

  const std::string folder = "/media/" + ext;
  EXPECT_EQ(Diskutil({"mount", ext}).text, "Volume e x t on " + ext + " mounted at " + folder + "\n");
  EXPECT_NE(Diskutil({"info", ext}).text.find("   Mounted:                  Yes\n"), std::string::npos);
  {
    const FileDescriptor user(open(folder.c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(Diskutil({"unMount", ext}).text, "Could not unmount " + ext + ": the volume is in use\n");
  }
  EXPECT_EQ(Diskutil({"unMount", ext}).text, "Volume e x t on " + ext + " unmounted\n");
  EXPECT_TRUE(std::filesystem::is_empty("/media"));
}

TEST_F(Image, WithoutPartitionTableIsAVolume) {
  std::string old;
  for (const std::string signature : {"H+", "HX"}) {
    const std::string path = Empty(signature);
    WriteHfs(path, 0, signature, "Whole disk");
    const LoopDisk disk(path);
    if (!disk) GTEST_SKIP() << "needs loop devices";
    const std::string type = signature == "HX" ? "Apple_HFSX" : " Apple_HFS";
    EXPECT_TRUE(
        ListComesToHold("0:                 " + type + " Whole disk               50.3 MB   " + disk.Id()));
    // The second image comes on the device that the first has left, or on another: the identifier is a new
    // one.
    if (!old.empty()) {
      EXPECT_EQ(Diskutil({"mount", old}).text, "Could not find disk: " + old + "\n");
    }
    old = disk.Id();
  }
}

}  // namespace
