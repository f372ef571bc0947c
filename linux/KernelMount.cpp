#include "linux/KernelMount.h"

#include <fcntl.h>
#include <libmount/libmount.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "linux/FileDescriptor.h"

namespace diskutil {
namespace {

struct FreeContext {
  void operator()(libmnt_context* context) const { mnt_free_context(context); }
};
using Context = std::unique_ptr<libmnt_context, FreeContext>;

Context MakeContext() {
  Context context(mnt_new_context());
  if (!context) throw std::bad_alloc();
  mnt_context_disable_helpers(context.get(), 1);
  mnt_context_disable_mtab(context.get(), 1);
  mnt_context_disable_canonicalize(context.get(), 1);
  return context;
}

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

MaybeFailure FailureOf(const Context& context, int result) {
  if (result == 0) return std::nullopt;
  if (mnt_context_syscall_called(context.get()))
    return FromError(mnt_context_get_syscall_errno(context.get()));
  return FromError(result < 0 ? -result : EINVAL);
}

bool IsStill(int file, const Device& device) {
  struct stat status {};
  std::uint64_t sequence = 0;
  return fstat(file, &status) == 0 && S_ISBLK(status.st_mode) && status.st_rdev == device.number &&
         ioctl(file, BLKGETDISKSEQ, &sequence) == 0 && sequence == device.id.disk;
}

}  // namespace

std::string KernelMountPoint(const Device& device) {
  return "/media/" + device.id.Text();
}

MaybeFailure KernelMount(const Device& device) {
  if (device.fsUsage != "filesystem") return Failure{Failure::Reason::kNotMountable, {}};
  // As long as the device is open, its number goes to no other disk: what is checked here is what gets
  // mounted.
  const FileDescriptor file(open(device.node.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!file || !IsStill(file.Number(), device)) return Failure{Failure::Reason::kGone, {}};

  const std::string point = KernelMountPoint(device);
  mkdir("/media", 0755);
  rmdir(point.c_str());  // Left over from a volume that was pulled out: goes only if it is empty and unused.
  if (mkdir(point.c_str(), 0700) != 0) return FromError(errno);

  const Context context = MakeContext();
  mnt_context_set_source(context.get(), device.node.c_str());
  mnt_context_set_target(context.get(), point.c_str());
  mnt_context_set_fstype(context.get(), device.fsType.c_str());
  mnt_context_set_options(context.get(), "nosuid,nodev");
  MaybeFailure failure = FailureOf(context, mnt_context_mount(context.get()));
  if (failure) rmdir(point.c_str());
  return failure;
}

MaybeFailure KernelUnmount(const std::string& mountPoint) {
  const Context context = MakeContext();
  mnt_context_set_target(context.get(), mountPoint.c_str());
  return FailureOf(context, mnt_context_umount(context.get()));
}

}  // namespace diskutil
