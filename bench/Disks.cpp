#include "bench/Disks.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "bench/Command.h"

namespace fs = std::filesystem;

namespace {

constexpr long kBytes = 20'480'000;
constexpr const char* kDatabase = "/run/udev/data";

/// What udev knows of a disk by its content, each line behind a prefix of the place where it stands.
std::string Description(std::size_t disk, const std::string& prefix) {
  if (disk >= Disks::kVolumes) return prefix + "ID_FS_TYPE=swap\n" + prefix + "ID_FS_USAGE=other\n";
  return prefix + "ID_FS_TYPE=hfsplus\n" + prefix + "ID_FS_USAGE=filesystem\n" + prefix +
         "ID_FS_LABEL_ENC=Volume\\x20" + std::to_string(disk) + "\n" + prefix +
         "ID_FS_UUID_ENC=6095e009-5132-3fc5-87c2-d5a01745283e\n";
}

/// All there is of the content is what it is known by: of a volume version, block size and number of blocks,
/// of swap space version and last page.
void WriteImage(const fs::path& path, bool volume) {
  std::string content(volume ? 1536 : 4096, '\0');
  const auto put = [&](std::size_t place, std::string_view bytes) {
    content.replace(place, bytes.size(), bytes);
  };
  put(1024, volume ? std::string_view("H+\0\4", 4) : std::string_view("\1\0\0\0\x80\x13", 6));
  if (volume) put(1064, {"\0\0\x10\0\0\0\x13", 7});
  if (!volume) put(4086, "SWAPSPACE2");
  std::ofstream(path, std::ios::binary) << content;
  fs::resize_file(path, kBytes);
}

}  // namespace

bool LoopDisks::Possible() {
  return geteuid() == 0 && access("/dev/loop-control", R_OK | W_OK) == 0 && unshare(CLONE_NEWNS) == 0 &&
         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("none", "/run", "tmpfs", 0, nullptr) == 0;
}

LoopDisks::~LoopDisks() {
  for (const int file : files_) close(file);
}

void LoopDisks::GrowTo(std::size_t count) {
  fs::create_directories(kDatabase);
  while (nodes_.size() < count) {
    const std::size_t disk = nodes_.size();
    const fs::path image = scratch_ / ("image" + std::to_string(disk));
    WriteImage(image, disk < kVolumes);
    const std::string text = TextFrom({"losetup", "--find", "--show", image});
    nodes_.push_back(text.substr(0, text.find('\n')));
    files_.push_back(open(nodes_.back().c_str(), O_RDONLY | O_CLOEXEC));
    TimeOf({"losetup", "--detach", nodes_.back()});
    fs::remove(image);
    struct stat status {};
    stat(nodes_.back().c_str(), &status);
    std::ofstream(std::string(kDatabase) + "/b" + std::to_string(major(status.st_rdev)) + ":" +
                  std::to_string(minor(status.st_rdev)))
        << "I:1\n"
        << Description(disk, "E:") << "G:systemd\nQ:systemd\nV:1\n";
  }
}

void LoopDisks::DropCaches() const {
  for (const int file : files_) ioctl(file, BLKFLSBUF);
}

void LoopDisks::RemoveDatabase() const {
  fs::remove_all(kDatabase);
}

MockedDisks::MockedDisks(const fs::path& scratch) {
  // The order of its entries is that of their making, as in /sys.
  std::string folder = (fs::exists("/dev/shm") ? "/dev/shm" : scratch.string()) + "/dravik-bench-XXXXXX";
  if (!mkdtemp(folder.data())) throw std::runtime_error("no folder for mocked disks");
  root_ = folder;
  for (const char* each :
       {"sys/class/block", "sys/block", "sys/dev/block", "sys/devices/virtual/block", "dev"})
    fs::create_directories(root_ / each);
  setenv("UMOCKDEV_DIR", root_.c_str(), 1);
  setenv("LD_PRELOAD", "libumockdev-preload.so.0", 1);
}

MockedDisks::~MockedDisks() {
  unsetenv("LD_PRELOAD");
  unsetenv("UMOCKDEV_DIR");
  fs::remove_all(root_);
}

void MockedDisks::GrowTo(std::size_t count) {
  constexpr std::size_t kMinors = 256;
  for (; count_ < count; ++count_) {
    const std::string name = "mock" + std::to_string(count_);
    const std::string major = std::to_string(240 + count_ / kMinors);
    const std::string minor = std::to_string(count_ % kMinors);
    const fs::path folder = root_ / "sys/devices/virtual/block" / name;
    fs::create_directory(folder);
    const std::pair<const char*, std::string> attributes[] = {
        {"dev", major + ":" + minor + "\n"},
        {"diskseq", std::to_string(count_ + 1) + "\n"},
        {"removable", "0\n"},
        {"ro", "0\n"},
        {"size", std::to_string(kBytes / 512) + "\n"},
        {"uevent", "DEVNAME=" + name + "\nDEVTYPE=disk\nMAJOR=" + major + "\nMINOR=" + minor + "\n" +
                       Description(count_, "")}};
    for (const auto& [attribute, text] : attributes) std::ofstream(folder / attribute) << text;
    fs::create_symlink("../../../../class/block", folder / "subsystem");
    const fs::path place = "devices/virtual/block/" + name;
    fs::create_symlink(".." / place, root_ / "sys/block" / name);
    fs::create_symlink("../.." / place, root_ / "sys/class/block" / name);
    fs::create_symlink("../.." / place, root_ / "sys/dev/block" / (major + ":" + minor));
  }
}
