#pragma once

#include <string>

#include "linux_diskutil/Device.h"

namespace diskutil {

/// Fills in table, partition type, file system, label and UUID from the device itself, for systems without a
/// udev database (a container, a chroot, a rescue shell). Leaves them empty when the device may not be read,
/// or when its content is ambiguous.
void ProbeContent(Device& device);

/// Tells HFSX from HFS+ by the signature of the volume header, "HX" or "H+", which stands 1024 bytes behind
/// the start. Insensitive when the device may not be read, and for an HFS+ volume wrapped in an HFS one.
CaseRule ReadCaseRule(const std::string& node);

}  // namespace diskutil
