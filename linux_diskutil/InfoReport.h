#pragma once

#include <string>
#include <vector>

#include "linux_diskutil/Device.h"
#include "linux_diskutil/Mounts.h"

namespace diskutil {

/// The text of `info`: one line for each fact, three blanks, the label, and the value 26 characters behind
/// the label's first:
///
///     Mounted:                  Yes
///
/// Of several mounts the first is told. Facts that the device does not have are left out. "Mounted:" stands
/// before everything that was written on the disk by somebody else, so that the first place where it is found
/// is the real one whatever the volume is called.
std::string InfoReport(const Device& device, const std::vector<Mount>& mounts);

}  // namespace diskutil
