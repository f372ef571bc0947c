#pragma once

#include <optional>
#include <string>

namespace diskutil {

/// Why a volume could not be mounted or unmounted.
struct Failure {
  enum class Reason {
    NoService,
    Busy,
    NotAuthorised,
    NotMountable,
    UnsupportedByKernel,
    Gone,
    TimedOut,
    Other
  };

  Reason reason = Reason::Other;
  std::string detail;  ///< Somebody else's words, for `Other` and `NoService`. Not yet safe to print.
};

/// Nothing when all went well.
using MaybeFailure = std::optional<Failure>;

}  // namespace diskutil
