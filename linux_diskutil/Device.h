#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

#include "linux_diskutil/Identifier.h"

namespace diskutil {

/// How a volume header of HFS+ says that upper and lower case differ in names.
enum class CaseRule { kInsensitive, kSensitive };

/// One disk or partition as the system knew it when it was asked. Plain data. All texts are printable: who
/// takes one from a disk cleans it. Those that the kernel gets to read (`node`, `fsType`) are plain words,
/// which that leaves alone.
struct Device {
  enum class Location { kInternal, kExternal, kVirtual, kImage };

  Identifier id;
  std::string node;         // device file, such as /dev/sdb2
  dev_t number = 0;         // major and minor number; the kernel gives them again once a disk has gone
  std::uint64_t bytes = 0;  // size
  bool readOnly = false;    // the device itself is write-protected; not looked up for a list
  bool removable = false;   // the medium can be taken out of its drive; not looked up for a list
  Location location = Location::kInternal;
  std::string protocol;  // how the disk is attached, such as "USB"

  std::string tableType;    // libblkid's name of the partition table it holds, such as "gpt"; empty for none
  std::string entryScheme;  // of a partition: the kind of table it is an entry of
  std::string entryType;    // of a partition: its type in that table, such as "0xaf"
  std::string fsType;       // libblkid's name of the content, such as "hfsplus"; empty for none
  std::string fsUsage;      // "filesystem" for what can be mounted; others are "crypto", "raid" and the like
  std::string label;
  std::string uuid;

  std::string type;  // the type to show, such as "Apple_HFS"
};

}  // namespace diskutil
