#include "tests/linux/Testbed.h"

#include <glib-object.h>
#include <umockdev.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

std::string Taken(gchar* text) {
  std::string copy(text);
  g_free(text);
  return copy;
}

}  // namespace

Testbed::Testbed() : bed_(umockdev_testbed_new()), root_(Taken(umockdev_testbed_get_root_dir(bed_))) {
  std::ifstream file(TEST_DATA "/devices.umockdev");
  const std::string devices{std::istreambuf_iterator<char>(file), {}};
  if (!umockdev_testbed_add_from_string(bed_, devices.c_str(), nullptr))
    throw std::runtime_error("bad devices");
  std::filesystem::create_directories(root_ + "/proc/self");
  std::ofstream(root_ + "/proc/filesystems") << "nodev\tproc\n\thfs\n\text4\n";
  SetMounts("");
  std::ofstream(root_ + "/dev/sdb2") << std::string(1024, '\0') << "H+";
  std::ofstream(root_ + "/dev/sdb3") << std::string(1024, '\0') << "HX";
}

Testbed::~Testbed() {
  g_object_unref(bed_);
}

void Testbed::SetMounts(const std::string& lines) const {
  std::ofstream(root_ + "/proc/self/mountinfo") << "20 1 9:99 / / rw - ext4 /dev/root rw\n" << lines;
}

void Testbed::ReplaceDisk7() const {
  const char* path =
      "/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1/1-1:1.0/host6/target6:0:0/6:0:0:0/block/sdb";
  umockdev_testbed_set_attribute(bed_, path, "diskseq", "20");
}
