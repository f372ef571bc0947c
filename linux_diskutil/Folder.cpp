#include "linux_diskutil/Folder.h"

#include <dirent.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <system_error>

namespace diskutil {

std::vector<FolderEntry> ReadFolderIfThere(const std::string& path) {
  return access(path.c_str(), F_OK) != 0 && errno == ENOENT ? std::vector<FolderEntry>() : ReadFolder(path);
}

std::vector<FolderEntry> ReadFolder(const std::string& path) {
  struct Close {
    void operator()(DIR* folder) const { closedir(folder); }
  };
  const std::unique_ptr<DIR, Close> folder(opendir(path.c_str()));
  std::vector<FolderEntry> entries;
  errno = folder ? 0 : errno;
  while (const dirent* entry = folder ? readdir(folder.get()) : nullptr)
    if (entry->d_name[0] != '.') entries.push_back({entry->d_ino, entry->d_name});
  if (errno != 0) throw std::system_error(errno, std::generic_category(), "Could not read " + path);
  return entries;
}

}  // namespace diskutil
