#pragma once

#include <string>

namespace diskutil {

/// How a command ended. With status 0 the text is its result and goes to standard output; with status 1 it is
/// the reason, one line for standard error.
struct Outcome {
  int status = 0;
  std::string text;
};

}  // namespace diskutil
