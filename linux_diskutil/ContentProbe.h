#pragma once

#include "framework/Descriptor.h"
#include "linux_diskutil/Device.h"

namespace diskutil {

/// Fills in table, partition type, file system, label and UUID from the device itself, opened as `file`, for
/// systems without a udev database (a container, a chroot, a rescue shell). Leaves them empty when the
/// content is ambiguous.
void ProbeContent(const Descriptor& file, Device& device);

/// Tells HFSX from HFS+ by the signature of the volume header, "HX" or "H+", which stands 1024 bytes behind
/// the start. Insensitive for an HFS+ volume wrapped in an HFS one.
CaseRule ReadCaseRule(const Descriptor& file);

}  // namespace diskutil
