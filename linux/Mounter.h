#pragma once

#include "linux/Device.h"
#include "linux/Failure.h"
#include "linux/Outcome.h"
#include "linux/Udisks.h"

namespace diskutil {

/// Mounts and unmounts one volume and tells in one line how it went. Asks UDisks2, or, as root on a system
/// that has no UDisks2, the kernel. Before anything is changed it makes sure that the device number still
/// belongs to the disk that was meant, and afterwards it believes the mount table alone.
class Mounter {
 public:
  explicit Mounter(const Udisks& udisks) : udisks_(udisks) {}

  Outcome Mount(const Device& device) const;
  Outcome Unmount(const Device& device) const;

 private:
  MaybeFailure TryMount(const Device& device) const;
  MaybeFailure TryUnmount(const Device& device) const;

  const Udisks& udisks_;
};

}  // namespace diskutil
