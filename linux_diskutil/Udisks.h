#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>

#include "linux_diskutil/Failure.h"
#include "linux_diskutil/SystemBus.h"

namespace diskutil {

/// Asks UDisks2, the service that mounts and unmounts volumes for desktops, over the system bus.
/// The bus is the one at $DBUS_SYSTEM_BUS_ADDRESS when that is set.
///
/// A question is answered in seconds. A mount or an unmount may have to wait for a slow stick to write its
/// cache, or for a person to find a password, and has minutes. Every request is first made with the wish not
/// to ask anybody, and made again, with leave to ask, only when UDisks2 answers that a person would have to
/// agree. The asking is done by the desktop's own dialogue.
class Udisks {
 public:
  explicit Udisks(std::chrono::microseconds questionLimit = std::chrono::seconds(10),
                  std::chrono::microseconds workLimit = std::chrono::minutes(5))
      : questionLimit_(questionLimit), workLimit_(workLimit) {}

  /// Says whether the device number still belongs to the disk that is meant. It is asked right before each
  /// request; when it says no, none is made, and the failure is `kGone`.
  using Check = std::function<bool()>;

  /// The volume is named by its device number alone: no text from a disk goes over the bus.
  MountAttempt Mount(dev_t number, const Check& isStillMeant) const;
  MaybeFailure Unmount(dev_t number, const Check& isStillMeant) const;

 private:
  struct Response {
    MaybeFailure failure;
    Message message = nullptr;
  };
  Response Request(const char* method, dev_t number, const Check& isStillMeant) const;

  std::chrono::microseconds questionLimit_;
  std::chrono::microseconds workLimit_;
};

}  // namespace diskutil
