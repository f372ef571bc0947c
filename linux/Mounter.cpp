#include "linux/Mounter.h"

#include <unistd.h>

#include <fstream>
#include <string>
#include <string_view>

#include "linux/Devices.h"
#include "linux/KernelMount.h"
#include "linux/Label.h"
#include "linux/MountTable.h"

namespace diskutil {
namespace {

bool IsRoot() {
  return geteuid() == 0;
}

bool HasGone(const Device& device) {
  return IdentifierOf(device.number) != device.id;
}

// "Volume Backup on disk7s2", the beginning of every line that tells of a success.
std::string Subject(const Device& device) {
  const std::string name = CleanLabel(device.label);
  return "Volume " + (name.empty() ? "" : name + " ") + "on " + device.id.Text();
}

std::string Place(const Mount& mount) {
  return std::string(mount.readOnly ? "mounted read-only" : "mounted") + " at " + CleanLabel(mount.point);
}

// A kernel that could load the driver has done so by the time a mount has failed.
bool KernelKnows(const std::string& fsType) {
  std::ifstream list("/proc/filesystems");
  for (std::string line; std::getline(list, line);) {
    if (std::string_view(line).substr(line.rfind('\t') + 1) == fsType) return true;
  }
  return !list.is_open();
}

std::string Reason(const Failure& failure, const Device& device) {
  switch (failure.reason) {
    case Failure::Reason::kNoService:
      return "UDisks2 is not running, and without it only root can do this";
    case Failure::Reason::kBusy:
      return "the volume is in use";
    case Failure::Reason::kNotAuthorised:
      return "not authorised";
    case Failure::Reason::kNotMountable:
      return "there is no volume on it that can be mounted";
    case Failure::Reason::kUnsupportedByKernel:
      return "this kernel does not support the file system " + CleanLabel(device.fsType);
    case Failure::Reason::kTimedOut:
      return "no answer from UDisks2 in time, it may still be at work";
    case Failure::Reason::kGone:
    case Failure::Reason::kOther:
      break;
  }
  const std::string words = CleanLabel(failure.detail);
  return words.empty() ? "the attempt failed" : words;
}

Outcome Failed(std::string_view verb, const Failure& failure, const Device& device) {
  if (failure.reason == Failure::Reason::kGone || HasGone(device)) {
    return {1, "Could not find disk: " + device.id.Text() + "\n"};
  }
  return {1,
          "Could not " + std::string(verb) + " " + device.id.Text() + ": " + Reason(failure, device) + "\n"};
}

}  // namespace

MaybeFailure Mounter::TryMount(const Device& device) const {
  if (HasGone(device)) return Failure{Failure::Reason::kGone, {}};
  MaybeFailure failure = udisks_.Mount(device.number);
  if (failure && failure->reason == Failure::Reason::kNoService && IsRoot()) failure = KernelMount(device);
  if (failure && failure->reason == Failure::Reason::kOther && !device.fsType.empty() &&
      !KernelKnows(device.fsType)) {
    failure->reason = Failure::Reason::kUnsupportedByKernel;
  }
  return failure;
}

Outcome Mounter::Mount(const Device& device) const {
  if (const auto mount = MountTable().Find(device)) {
    return {0, Subject(device) + " is already " + Place(*mount) + "\n"};
  }
  const MaybeFailure failure = TryMount(device);
  if (const auto mount = MountTable().Find(device); mount && !HasGone(device)) {
    return {0, Subject(device) + " " + Place(*mount) + "\n"};
  }
  return Failed("mount", failure.value_or(Failure{Failure::Reason::kOther, "it did not stay mounted"}),
                device);
}

MaybeFailure Mounter::TryUnmount(const Device& device) const {
  if (HasGone(device)) return Failure{Failure::Reason::kGone, {}};
  const auto mount = MountTable().Find(device);
  if (!mount) return std::nullopt;
  // Unmounting goes by the folder, and the folder belongs to another volume now.
  if (mount->covered) return Failure{Failure::Reason::kBusy, {}};
  MaybeFailure failure = udisks_.Unmount(device.number);
  if (failure && failure->reason == Failure::Reason::kNoService && IsRoot())
    failure = KernelUnmount(mount->point);
  return failure;
}

Outcome Mounter::Unmount(const Device& device) const {
  int count = MountTable().Count(device);
  if (count == 0) return {0, Subject(device) + " is not mounted\n"};
  // A volume may be mounted at several places. Each round must take one of them away.
  while (count > 0) {
    const MaybeFailure failure = TryUnmount(device);
    const int left = MountTable().Count(device);
    if (left >= count) {
      return Failed("unmount", failure.value_or(Failure{Failure::Reason::kOther, "it is still mounted"}),
                    device);
    }
    count = left;
  }
  // The folder we made for it, if that is where it was.
  if (IsRoot()) rmdir(KernelMountPoint(device).c_str());
  return {0, Subject(device) + " unmounted\n"};
}

}  // namespace diskutil
