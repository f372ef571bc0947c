#pragma once

#include <string>

#include "linux_diskutil/Identifier.h"

namespace diskutil {

/// How a command ended. With status 0 the text is its result and goes to standard output; with status 1 it is
/// the reason, one line for standard error.
struct Outcome {
  int status = 0;
  std::string text;
};

/// There is no such disk, or it is gone.
inline Outcome NotFound(const Identifier& id) {
  return {1, "Could not find disk: " + id.Text() + "\n"};
}

}  // namespace diskutil
