#pragma once

#include <string_view>
#include <vector>

#include "linux_diskutil/Outcome.h"
#include "linux_diskutil/Udisks.h"

namespace diskutil {

/// Carries out a command line, without the program's name: "list", "info ID", "mount ID" or "unMount ID", the
/// verb in any case. Of several words behind the verb the last that is an identifier counts: whoever cuts a
/// row out of our list at the first "disk" may send the end of a name along, and the identifier stands last
/// in the row.
Outcome RunCommand(const std::vector<std::string_view>& words, const Udisks& udisks);

}  // namespace diskutil
