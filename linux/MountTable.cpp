#include "linux/MountTable.h"

#include <libmount/libmount.h>

#include <cerrno>
#include <new>
#include <system_error>

namespace diskutil {
namespace {

// A file system over several disks (btrfs) has a device number of its own; its source still names the node.
bool IsOn(libmnt_fs* fs, const Device& device) {
  const char* source = mnt_fs_get_srcpath(fs);
  return mnt_fs_get_devno(fs) == device.number || (source && device.node == source);
}

// A volume that the file system itself will not write to (journaled, damaged) says so in its own options
// only.
bool IsReadOnly(libmnt_fs* fs) {
  for (const char* options : {mnt_fs_get_vfs_options(fs), mnt_fs_get_fs_options(fs)}) {
    if (options && mnt_optstr_get_option(options, "ro", nullptr, nullptr) == 0) return true;
  }
  return false;
}

// Calls `use` with each mount of the device, the oldest first, until it returns false.
template <typename Use>
void ForEachMount(libmnt_table* table, const Device& device, Use use) {
  libmnt_iter* iterator = mnt_new_iter(MNT_ITER_FORWARD);
  if (!iterator) throw std::bad_alloc();
  libmnt_fs* fs = nullptr;
  while (mnt_table_next_fs(table, iterator, &fs) == 0) {
    if (IsOn(fs, device) && !use(fs)) break;
  }
  mnt_free_iter(iterator);
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
  ForEachMount(table_.get(), device, [&](libmnt_fs* fs) {
    const char* target = mnt_fs_get_target(fs);
    if (!target) return true;
    found =
        Mount{target, IsReadOnly(fs), mnt_table_find_target(table_.get(), target, MNT_ITER_BACKWARD) != fs};
    return false;
  });
  return found;
}

int MountTable::Count(const Device& device) const {
  int count = 0;
  ForEachMount(table_.get(), device, [&](libmnt_fs*) {
    ++count;
    return true;
  });
  return count;
}

}  // namespace diskutil
