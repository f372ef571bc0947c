#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "linux_diskutil/Device.h"

namespace diskutil {

/// A place where a volume is mounted.
struct Mount {
  std::string point;       // folder, as raw bytes: what the kernel calls it
  std::string shownPoint;  // the same, printable
  dev_t number = 0;        // the device by which a service knows it: of a btrfs perhaps another member
  bool readOnly = false;
  bool covered = false;  // another volume is mounted over it: the folder shows that one
};

/// Where the device is mounted at this moment, the oldest mount first, by the kernel's own table. What that
/// says is the truth about a volume: not the answer of the service that was asked to mount it. Throws
/// std::system_error when the table cannot be read.
std::vector<Mount> MountsOf(const Device& device);

}  // namespace diskutil
