#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace diskutil {

struct FolderEntry {
  ino_t number;
  std::string name;
};

/// What is in a folder of the kernel's, in no order. Throws std::system_error when it cannot be read. The
/// standard library's iterator would end the process where there is no memory left.
std::vector<FolderEntry> ReadFolder(const std::string& path);
/// The same, and nothing for a folder that is not there.
std::vector<FolderEntry> ReadFolderIfThere(const std::string& path);

}  // namespace diskutil
