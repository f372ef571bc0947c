#pragma once

#include <optional>
#include <string>

namespace diskutil {

/// Why a volume could not be mounted or unmounted.
struct Failure {
  enum class Reason {
    kNoService,
    kBusy,
    kNotAuthorised,
    kNotMountable,
    kUnsupportedByKernel,
    kGone,
    kTimedOut,
    kServiceDied,
    kNoMemory,     // and perhaps carried out
    kMountFailed,  // the kernel's reason is not told
    kOther
  };

  Reason reason = Reason::kOther;
  std::string detail;  // somebody else's words, for the last two; printable
};

/// Nothing when all went well.
using MaybeFailure = std::optional<Failure>;

/// How the attempt to mount a volume ended.
struct MountAttempt {
  MaybeFailure failure;
  std::string point = {};  // the folder where this attempt mounted something, as raw bytes; empty for none
};

}  // namespace diskutil
