#include "linux_diskutil/KernelMount.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include "linux_diskutil/Identifier.h"

namespace diskutil {
namespace {

Failure FromError(int error) {
  switch (error) {
    case EBUSY:
      return {Failure::Reason::kBusy, {}};
    case EPERM:
    case EACCES:
      return {Failure::Reason::kNotAuthorised, {}};
    case ENODEV:
      return {Failure::Reason::kUnsupportedByKernel, {}};
    case ENXIO:
      return {Failure::Reason::kGone, {}};
    default:
      return {Failure::Reason::kOther, std::strerror(error)};
  }
}

constexpr std::string_view kFolder = "/media/";

}  // namespace

MountAttempt KernelMount(const Device& device) {
  if (device.fsUsage != "filesystem") return {Failure{Failure::Reason::kNotMountable, {}}};
  std::string point = std::string(kFolder) + device.id.Text();
  mkdir("/media", 0755);
  rmdir(point.c_str());  // Left over from a volume that was pulled out: goes only if it is empty and unused.
  if (mkdir(point.c_str(), 0700) != 0) return {FromError(errno)};

  const auto attempt = [&](unsigned long flags) {
    return mount(device.node.c_str(), point.c_str(), device.fsType.c_str(), MS_NOSUID | MS_NODEV | flags,
                 nullptr) == 0;
  };
  // The kernel refuses to mount a write-protected disk for writing, and does not make do with reading by
  // itself.
  if (attempt(0) || ((errno == EROFS || errno == EACCES) && attempt(MS_RDONLY))) {
    return {std::nullopt, std::move(point)};
  }
  MaybeFailure failure = FromError(errno);
  rmdir(point.c_str());
  return {std::move(failure)};
}

MaybeFailure KernelUnmount(const std::string& mountPoint) {
  if (umount2(mountPoint.c_str(), UMOUNT_NOFOLLOW) == 0) return std::nullopt;
  return FromError(errno);
}

void RemoveKernelMountPoint(const std::string& mountPoint) {
  const std::string_view point(mountPoint);
  if (!point.starts_with(kFolder)) return;
  const std::string_view name = point.substr(kFolder.size());
  if (const auto id = ReadIdentifier(name); id && id->Text() == name) rmdir(mountPoint.c_str());
}

}  // namespace diskutil
