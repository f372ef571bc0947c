#pragma once

#include <sys/types.h>

#include <optional>
#include <vector>

#include "linux_diskutil/Device.h"
#include "linux_diskutil/Identifier.h"

namespace diskutil {

/// All disks that hold a medium, each followed by its partitions, in the order of their identifiers. Main
/// memory disks (ram, zram) are left out, and so are disks without a sequence number, which kernels before
/// Linux 5.15 do not give: there would be no name for them that is safe to mount by. Throws std::system_error
/// when the devices cannot be listed at all.
std::vector<Device> ListDevices();

/// The device that carries this identifier, or nothing. Throws like `ListDevices`. Another disk may take its
/// place at any time, also while it is read: whoever acts on it, or tells of it, asks `IdentifierOf` then.
std::optional<Device> FindDevice(const Identifier& id);

/// The identifier that belongs to a device number at this moment. Nothing for a drive without a medium.
std::optional<Identifier> IdentifierOf(dev_t number);

}  // namespace diskutil
