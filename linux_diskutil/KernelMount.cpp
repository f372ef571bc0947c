#include "linux_diskutil/KernelMount.h"

#include <libmount/libmount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "linux_diskutil/Identifier.h"
#include "linux_diskutil/NotNull.h"

namespace diskutil {
namespace {

struct FreeContext {
  void operator()(libmnt_context* context) const { mnt_free_context(context); }
};
using Context = std::unique_ptr<libmnt_context, FreeContext>;

Context MakeContext() {
  Context context(NotNull(mnt_new_context()));
  mnt_context_disable_helpers(context.get(), 1);
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

constexpr std::string_view kFolder = "/media/";

}  // namespace

MountAttempt KernelMount(const Device& device) {
  if (device.fsUsage != "filesystem") return {Failure{Failure::Reason::kNotMountable, {}}};
  const Context context = MakeContext();
  std::string point = std::string(kFolder) + device.id.Text();
  mkdir("/media", 0755);
  rmdir(point.c_str());  // left over from a volume that was pulled out: goes only if it is empty and unused
  if (mkdir(point.c_str(), 0700) != 0) return {FromError(errno)};

  int result = mnt_context_set_source(context.get(), device.node.c_str());
  if (result == 0) result = mnt_context_set_target(context.get(), point.c_str());
  if (result == 0) result = mnt_context_set_fstype(context.get(), device.fsType.c_str());
  if (result == 0) result = mnt_context_set_options(context.get(), "nosuid,nodev");
  if (result == 0) result = mnt_context_mount(context.get());
  MaybeFailure failure = FailureOf(context, result);
  if (!failure) return {std::nullopt, std::move(point)};
  rmdir(point.c_str());
  return {std::move(failure)};
}

MaybeFailure KernelUnmount(const std::string& mountPoint) {
  const Context context = MakeContext();
  int result = mnt_context_set_target(context.get(), mountPoint.c_str());
  if (result == 0) result = mnt_context_umount(context.get());
  return FailureOf(context, result);
}

void RemoveKernelMountPoint(const std::string& mountPoint) {
  const std::string_view point(mountPoint);
  if (!point.starts_with(kFolder)) return;
  const std::string_view name = point.substr(kFolder.size());
  if (const auto id = ReadIdentifier(name); id && id->Text() == name) rmdir(mountPoint.c_str());
}

}  // namespace diskutil
