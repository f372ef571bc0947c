#pragma once

#include <cstdint>
#include <string>

namespace diskutil {

/// A size in decimal units with one digit, such as "120.5 GB". Units are B, KB, MB, GB and TB. At most 9
/// characters up to 9999.9 TB.
std::string SizeText(std::uint64_t bytes);

}  // namespace diskutil
