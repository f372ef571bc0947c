#pragma once

#include <string>

#include "linux/Device.h"
#include "linux/Failure.h"

namespace diskutil {

/// Mounts and unmounts without UDisks2, through libmount. Needs root. Starts no mount helper and never
/// forces. There is no time limit here: the kernel does not let go of a mount that has begun.

/// The folder that `KernelMount` makes for a device. It is named after the identifier, not after the volume:
/// a name from a disk has no business in a path that root makes.
std::string KernelMountPoint(const Device& device);

MaybeFailure KernelMount(const Device& device);
MaybeFailure KernelUnmount(const std::string& mountPoint);

}  // namespace diskutil
