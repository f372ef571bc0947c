#pragma once

#include <glib-object.h>
#include <umockdev.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

inline std::string TestData(const std::string& name) {
  std::ifstream file(TEST_DATA "/" + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The disks of devices.umockdev in place of the machine's own, as long as one of these lives. Redirects /sys,
// /dev and /proc for this process. The disks have no content but the signatures of their volume headers.
class Testbed {
 public:
  Testbed() {
    umockdev_testbed_add_from_string(bed_, TestData("devices.umockdev").c_str(), nullptr);
    gchar* root = umockdev_testbed_get_root_dir(bed_);
    root_ = root;
    g_free(root);
    std::filesystem::create_directories(root_ + "/proc/self");
    std::ofstream(root_ + "/proc/filesystems") << "nodev\tproc\n\thfs\n\text4\n";
    std::ofstream(root_ + "/dev/sdb2") << std::string(1024, '\0') << "H+";
    std::ofstream(root_ + "/dev/sdb3") << std::string(1024, '\0') << "HX";
    SetMounts("");
  }
  ~Testbed() { g_object_unref(bed_); }
  Testbed(const Testbed&) = delete;
  Testbed& operator=(const Testbed&) = delete;

  // The kernel's mount table: lines as in /proc/self/mountinfo.
  void SetMounts(const std::string& lines) const {
    std::ofstream(root_ + "/proc/self/mountinfo") << "20 1 9:99 / / rw - ext4 /dev/root rw\n" << lines;
  }

  // The disk has gone, and another came and got its device numbers.
  void ReplaceDisk7() const {
    umockdev_testbed_set_attribute(
        bed_, "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/1-1:1.0/host6/target6:0:0/6:0:0:0/block/sdb",
        "diskseq", "20");
  }

 private:
  UMockdevTestbed* bed_ = umockdev_testbed_new();
  std::string root_;
};
