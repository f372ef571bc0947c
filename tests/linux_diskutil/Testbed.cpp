#include "tests/linux_diskutil/Testbed.h"

#include <fcntl.h>
#include <glib-object.h>
#include <gtest/gtest.h>
#include <umockdev.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/TextOf.h"

/// Ubuntu's standard C++ library opens folders with this one, which umockdev lets through to the real /sys.
extern "C" int __openat_2(int folder, const char* path, int flags) {
  return openat(folder, path, flags);
}

std::string TestData(const std::string& name) {
  return TextOf(TEST_DATA "/" + name);
}

Testbed::Testbed() : bed_(umockdev_testbed_new(), g_object_unref), root_(getenv("UMOCKDEV_DIR")) {
  umockdev_testbed_add_from_string(UMOCKDEV_TESTBED(bed_.get()), TestData("devices.umockdev").c_str(),
                                   nullptr);
  std::filesystem::create_directories(root_ + "/proc/self");
  std::ofstream(root_ + "/proc/filesystems") << "nodev\tproc\n\thfs\n\text4\n";
  std::ofstream(root_ + "/dev/sdb2") << std::string(1024, '\0') << "H+";
  std::ofstream(root_ + "/dev/sdb3") << std::string(1024, '\0') << "HX";
  for (const std::string member : {"sdb2 8:18", "sdb3 8:19"}) {
    const std::string folder = root_ + "/sys/fs/btrfs/uuid/devices/" + member.substr(0, 4);
    std::filesystem::create_directories(folder);
    std::ofstream(folder + "/dev") << member.substr(5) << '\n';
  }
  for (const char* folder :
       {"/sys/fs/btrfs/features", "/sys/fs/btrfs/uuid/devices/pulled_out", "/dev/disk/by-diskseq"})
    std::filesystem::create_directories(root_ + folder);
  std::filesystem::create_symlink("../../sda", root_ + "/dev/disk/by-diskseq/7");  // an old one
  SetMounts("");
  using Folder = std::filesystem::directory_iterator;
  EXPECT_EQ(std::distance(Folder("/sys/class/block"), Folder()), 12) << "not the disks of devices.umockdev";
}

void Testbed::SetMounts(const std::string& lines) const {
  std::ofstream(root_ + "/proc/self/mountinfo") << "20 1 9:99 / / rw - ext4 /dev/root rw\n" << lines;
}

void Testbed::NumberDisk7(const std::string& sequence) const {
  std::ofstream(root_ + "/sys/class/block/sdb/diskseq") << sequence;
}
