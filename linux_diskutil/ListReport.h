#pragma once

#include <string>
#include <vector>

#include "linux_diskutil/Device.h"

namespace diskutil {

/// The text of `list`: for each disk a head line, the column line, a row for the disk and each of its
/// partitions, and an empty line. The rows are in the form of the Mac's tool, which readers take apart by
/// position:
///
///        2:                  Apple_HFS Backup                  120.5 GB   disk7s2
///
/// Counted in characters from 1, the type ends at 32, the name starts at 34, the size ends at 65 and the
/// identifier starts at 69. Two blanks at least follow a name, and the ten characters up to the end of the
/// size hold nothing but the size; a long name moves size and identifier to the right for that.
std::string ListReport(const std::vector<Device>& devices);

}  // namespace diskutil
