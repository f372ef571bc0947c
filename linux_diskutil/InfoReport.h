#pragma once

#include <optional>
#include <string>

#include "linux_diskutil/Device.h"
#include "linux_diskutil/MountTable.h"

namespace diskutil {

/// The text of `info`: one line for each fact, three blanks, the label, and the value 26 characters behind
/// the label's first:
///
///     Mounted:                  Yes
///
/// Facts that the device does not have are left out. "Mounted:" stands before everything that was written on
/// the disk by somebody else, so that the first place where it is found is the real one whatever the volume
/// is called.
std::string InfoReport(const Device& device, const std::optional<Mount>& mount);

}  // namespace diskutil
