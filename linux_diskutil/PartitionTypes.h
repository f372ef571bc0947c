#pragma once

#include <string>

#include "linux_diskutil/Device.h"

namespace diskutil {

/// How a volume header of HFS+ says that upper and lower case differ in names.
enum class CaseRule { kInsensitive, kSensitive };

/// The name to show for what a disk or partition is, such as "GUID_partition_scheme", "EFI" or "Apple_HFS".
/// An HFS volume is named after its content, whatever the partition table calls it, because it is the content
/// that gets mounted; everything else goes by its table entry. Unknown types come back as the table has them,
/// made printable.
std::string TypeName(const Device& device, CaseRule caseRule);

}  // namespace diskutil
