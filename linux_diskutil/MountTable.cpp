#include "linux_diskutil/MountTable.h"

#include <libmount/libmount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "linux_diskutil/Folder.h"
#include "linux_diskutil/OpenForReading.h"
#include "linux_diskutil/PrintableText.h"

namespace diskutil {
namespace {

using Numbers = std::vector<dev_t>;

/// All devices of the mounted btrfs that the device is one of. None when there is no such btrfs.
Numbers BtrfsMembers(dev_t device) {
  const std::string all = "/sys/fs/btrfs/";
  for (const FolderEntry& btrfs : ReadFolderIfThere(all)) {
    Numbers members;
    const std::string devices = all + btrfs.name + "/devices/";
    for (const FolderEntry& member : ReadFolderIfThere(devices)) {
      unsigned major = 0;
      unsigned minor = 0;
      char colon = 0;
      errno = 0;
      std::ifstream file(devices + member.name + "/dev");
      if (file >> major >> colon >> minor)
        members.push_back(makedev(major, minor));
      else
        ThrowIfExhausted(devices +
                         member.name);  // else it was pulled out, or the btrfs has just been unmounted
    }
    if (std::ranges::find(members, device) != members.end()) return members;
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

struct FreeIterator {
  void operator()(libmnt_iter* iterator) const { mnt_free_iter(iterator); }
};

/// Calls `use` with each mount of the device, the oldest first, and with the device that the mount goes by,
/// until it returns false.
template <class Use>
void ForEachMount(libmnt_table* table, const Device& device, Use use) {
  const std::unique_ptr<libmnt_iter, FreeIterator> iterator(mnt_new_iter(MNT_ITER_FORWARD));
  if (!iterator) throw std::bad_alloc();
  std::optional<Numbers> members;  // read when there is a btrfs
  libmnt_fs* fs = nullptr;
  while (mnt_table_next_fs(table, iterator.get(), &fs) == 0) {
    dev_t number = mnt_fs_get_devno(fs);
    if (const dev_t source = BtrfsSource(fs)) {
      if (!members) members = BtrfsMembers(device.number);
      if (std::ranges::find(*members, source) == members->end()) continue;
      number = source;
    } else if (number != device.number) {
      continue;
    }
    if (!use(fs, number)) break;
  }
}

}  // namespace

void MountTable::Unref::operator()(libmnt_table* table) const {
  mnt_unref_table(table);
}

MountTable::MountTable() : table_(mnt_new_table_from_file("/proc/self/mountinfo")) {
  if (!table_) throw std::system_error(errno, std::generic_category(), "Could not read the mount table");
}

std::optional<Mount> MountTable::Find(const Device& device) const {
  std::optional<Mount> found;
  ForEachMount(table_.get(), device, [&](libmnt_fs* fs, dev_t number) {
    const char* target = mnt_fs_get_target(fs);
    if (!target) return true;
    const bool covered = mnt_table_find_target(table_.get(), target, MNT_ITER_BACKWARD) != fs;
    found = Mount{target, PrintableText(target), number, IsReadOnly(fs), covered};
    return false;
  });
  return found;
}

int MountTable::Count(const Device& device) const {
  int count = 0;
  ForEachMount(table_.get(), device, [&](libmnt_fs*, dev_t) {
    ++count;
    return true;
  });
  return count;
}

}  // namespace diskutil
