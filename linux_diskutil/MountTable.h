#pragma once

#include <memory>
#include <optional>
#include <string>

#include "linux_diskutil/Device.h"

struct libmnt_table;

namespace diskutil {

/// A place where a volume is mounted.
struct Mount {
  std::string point;       // folder, as raw bytes: what the kernel calls it
  std::string shownPoint;  // the same, printable
  dev_t number = 0;        // the device by which a service knows it: of a btrfs perhaps another member
  bool readOnly = false;
  bool covered = false;  // another volume is mounted over it: the folder shows that one
};

/// The kernel's table of mounts at the moment of its making. What it says is the truth about a volume: not
/// the answer of the service that was asked to mount it.
class MountTable {
 public:
  /// Throws std::system_error when the kernel's table cannot be read.
  MountTable();

  /// The oldest mount of the device, or nothing when it is not mounted.
  std::optional<Mount> Find(const Device& device) const;

  /// How often the device is mounted.
  int Count(const Device& device) const;

 private:
  struct Unref {
    void operator()(libmnt_table* table) const;
  };
  std::unique_ptr<libmnt_table, Unref> table_;
};

}  // namespace diskutil
