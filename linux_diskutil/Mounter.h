#pragma once

#include "linux_diskutil/Device.h"
#include "linux_diskutil/Failure.h"
#include "linux_diskutil/Mounts.h"
#include "linux_diskutil/Outcome.h"
#include "linux_diskutil/Udisks.h"

namespace diskutil {

/// Mounts and unmounts one volume and tells in one line how it went. Asks UDisks2, or, as root on a system
/// that has no UDisks2, the kernel. Both go by the device's name, so it holds the device open where it may,
/// which keeps the name from going to another disk. It looks whose the device is right before each request
/// and right after it, takes a mount of ours back that went to another disk, and believes the mount table
/// alone.
class Mounter {
 public:
  explicit Mounter(const Udisks& udisks) : udisks_(udisks) {}

  Outcome Mount(const Device& device) const;
  Outcome Unmount(const Device& device) const;

 private:
  MountAttempt TryMount(const Device& device) const;
  Outcome TakeBack(const MountAttempt& attempt, const Device& device, const Identifier& owner) const;
  MaybeFailure TryUnmount(const Device& device, const diskutil::Mount& mount) const;

  const Udisks& udisks_;
};

}  // namespace diskutil
