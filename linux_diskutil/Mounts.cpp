#include "linux_diskutil/Mounts.h"

#include <libmount/libmount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "linux_diskutil/BlockDevice.h"
#include "linux_diskutil/Folder.h"
#include "linux_diskutil/NotNull.h"
#include "linux_diskutil/PrintableText.h"

namespace diskutil {
namespace {

using Members = std::vector<std::string>;

/// A device's number as the kernel writes it into a file.
std::string NumberText(dev_t number) {
  return std::to_string(major(number)) + ":" + std::to_string(minor(number)) + "\n";
}

/// All devices of the mounted btrfs that the device is one of. None when there is no such btrfs. One that was
/// pulled out has no number.
Members BtrfsMembers(dev_t device) {
  const std::string all = "/sys/fs/btrfs/";
  for (const FolderEntry& btrfs : ReadFolderIfThere(all)) {
    const std::string devices = all + btrfs.name + "/devices/";
    Members members;
    for (const FolderEntry& member : ReadFolderIfThere(devices))
      members.push_back(KernelText(devices + member.name, "dev"));
    if (std::ranges::find(members, NumberText(device)) != members.end()) return members;
  }
  return {};
}

/// The device of a btrfs that its mount names: one of them, whichever was meant when it was mounted. 0 for
/// any other mount. A btrfs has a device number of its own. Nobody but the kernel writes the source of one,
/// while a user may put any text there for a file system that runs in a program of his.
dev_t BtrfsSource(libmnt_fs* fs) {
  const char* type = mnt_fs_get_fstype(fs);
  const char* source = mnt_fs_get_srcpath(fs);
  struct stat status {};
  if (!type || std::string_view(type) != "btrfs" || !source) return 0;
  return stat(source, &status) == 0 && S_ISBLK(status.st_mode) ? status.st_rdev : 0;
}

/// A volume that the file system itself will not write to (journaled, damaged) says so in its own options
/// only.
bool IsReadOnly(libmnt_fs* fs) {
  for (const char* options : {mnt_fs_get_vfs_options(fs), mnt_fs_get_fs_options(fs)})
    if (options && mnt_optstr_get_option(options, "ro", nullptr, nullptr) == 0) return true;
  return false;
}

struct Free {
  void operator()(libmnt_table* table) const { mnt_unref_table(table); }
  void operator()(libmnt_iter* iterator) const { mnt_free_iter(iterator); }
};

}  // namespace

std::vector<Mount> MountsOf(const Device& device) {
  const std::unique_ptr<libmnt_table, Free> table(mnt_new_table_from_file("/proc/self/mountinfo"));
  if (!table) throw std::system_error(errno, std::generic_category(), "Could not read the mount table");
  const std::unique_ptr<libmnt_iter, Free> iterator(NotNull(mnt_new_iter(MNT_ITER_FORWARD)));
  std::vector<Mount> mounts;
  std::optional<Members> members;  // read when there is a btrfs
  libmnt_fs* fs = nullptr;
  while (mnt_table_next_fs(table.get(), iterator.get(), &fs) == 0) {
    dev_t number = mnt_fs_get_devno(fs);
    if (const dev_t source = BtrfsSource(fs)) {
      if (!members) members = BtrfsMembers(device.number);
      if (std::ranges::find(*members, NumberText(source)) == members->end()) continue;
      number = source;
    } else if (number != device.number) {
      continue;
    }
    const char* target = mnt_fs_get_target(fs);
    const bool covered = mnt_table_find_target(table.get(), target, MNT_ITER_BACKWARD) != fs;
    mounts.push_back({target, PrintableText(target), number, IsReadOnly(fs), covered});
  }
  return mounts;
}

}  // namespace diskutil
