#pragma once

#include <string>

#include "linux_diskutil/Device.h"
#include "linux_diskutil/Failure.h"

namespace diskutil {

/// Mounts and unmounts without UDisks2, through libmount. Needs root. Starts no mount helper and never
/// forces. There is no time limit here: the kernel does not let go of a mount that has begun. The caller
/// makes sure that the device's name still belongs to the disk that is meant.

/// Mounts at a folder of our own below /media. It is named after the identifier, not after the volume: a name
/// from a disk has no business in a path that root makes.
MountAttempt KernelMount(const Device& device);
MaybeFailure KernelUnmount(const std::string& mountPoint);

/// Removes the folder where a volume was mounted, if it is one that `KernelMount` made, is empty and is no
/// longer in use.
void RemoveKernelMountPoint(const std::string& mountPoint);

}  // namespace diskutil
