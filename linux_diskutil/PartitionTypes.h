#pragma once

#include <string>

#include "linux_diskutil/Device.h"

namespace diskutil {

/// The name to show for what a disk or partition is, such as "GUID_partition_scheme", "EFI" or "Apple_HFS".
/// An HFS volume is named after its content, whatever the partition table calls it, because it is the content
/// that gets mounted; everything else goes by its table entry. Unknown types come back as the table has them.
std::string TypeName(const Device& device, CaseRule caseRule);

}  // namespace diskutil
