#pragma once

#include <sys/types.h>

#include <chrono>

#include "linux/Failure.h"

namespace diskutil {

/// Has volumes mounted and unmounted by UDisks2, the service that does it for desktops, over the system bus.
/// The bus is the one at $DBUS_SYSTEM_BUS_ADDRESS when that is set.
///
/// Nothing here waits longer than the time limit, with one exception. Every request is first made with the
/// wish not to ask anybody. Only when UDisks2 answers that a person would have to agree is it made again,
/// with leave to ask, and that second one waits as long as a person may need to find a password. So a service
/// that hangs is never mistaken for a person who thinks. The asking is done by the desktop's own dialogue.
class Udisks {
 public:
  explicit Udisks(std::chrono::microseconds timeLimit = std::chrono::seconds(10),
                  std::chrono::microseconds personLimit = std::chrono::minutes(5))
      : timeLimit_(timeLimit), personLimit_(personLimit) {}

  /// The volume is named by its device number alone: no text from a disk goes over the bus. The caller makes
  /// sure that the number still belongs to the disk that is meant.
  MaybeFailure Mount(dev_t number) const { return Request("Mount", number); }
  MaybeFailure Unmount(dev_t number) const { return Request("Unmount", number); }

 private:
  MaybeFailure Request(const char* method, dev_t number) const;

  std::chrono::microseconds timeLimit_;
  std::chrono::microseconds personLimit_;
};

}  // namespace diskutil
