#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "linux_diskutil/Device.h"

struct udev;

namespace diskutil {

/// The kernel's folder of block devices: a link for each to its own folder.
constexpr const char* kBlockDevices = "/sys/class/block";

/// What the kernel tells of a device in a short file of its folder, with the line's end. Empty when there is
/// no such file. Throws std::system_error when we have no descriptor or no memory left.
std::string KernelText(const std::string& folder, const char* attribute);
/// The same as a number, 0 for none.
std::uint64_t KernelNumber(const std::string& folder, const char* attribute);

/// One disk or partition as the kernel's files and udev's database tell of it. A partition does not know its
/// disk.
struct BlockDevice {
  std::string folder;  // the kernel's, by the way that has no links in it
  Device device;
  bool described = false;  // udev's database tells its content; if not, only the device itself does
};

/// Reads what the kernel and udev tell of block devices, and opens none of them. Every call throws
/// std::system_error when we have no descriptor or no memory left.
class BlockDeviceReader {
 public:
  BlockDeviceReader();

  /// The block device of the kernel's name `name`. Nothing for a drive that holds no medium.
  std::optional<BlockDevice> Read(const std::string& name) const;

  /// The identifier that belongs to a device number at this moment. Nothing for a drive without a medium.
  std::optional<Identifier> IdentifierOf(dev_t number) const;

 private:
  struct Unref {
    void operator()(udev* context) const;
  };
  std::unique_ptr<udev, Unref> context_;
};

}  // namespace diskutil
