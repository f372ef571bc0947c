#include "linux_diskutil/Mounter.h"

#include <unistd.h>

#include <chrono>
#include <exception>
#include <fstream>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "linux_diskutil/Devices.h"
#include "linux_diskutil/KernelMount.h"
#include "linux_diskutil/Mounts.h"
#include "linux_diskutil/OpenForReading.h"

namespace diskutil {
namespace {

bool IsRoot() {
  return geteuid() == 0;
}

bool IsStillThere(const Device& device) {
  return IdentifierOf(device.number) == device.id;
}

/// As long as a device is open, its name goes to no other disk, and services go by the name. Opens nothing
/// where we may not; then a disk can be replaced between a look at its number and the use of its name.
Descriptor HoldName(const Device& device) {
  return OpenForReading(device.node);
}

/// "Volume Backup on disk7s2", the beginning of every line that tells of a success.
std::string Subject(const Device& device) {
  return "Volume " + (device.label.empty() ? "" : device.label + " ") + "on " + device.id.Text();
}

std::string WhereMounted(const Mount& mount) {
  return std::string(mount.readOnly ? "mounted read-only" : "mounted") + " at " + mount.shownPoint;
}

/// A kernel that could load the driver has done so by the time a mount has failed.
bool KernelKnows(const std::string& fsType) {
  std::ifstream list("/proc/filesystems");
  for (std::string line; std::getline(list, line);)
    if (std::string_view(line).substr(line.rfind('\t') + 1) == fsType) return true;
  return !list.is_open() || list.bad();
}

std::string Explain(const Failure& failure, const Device& device) {
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
      return "this kernel does not support the file system " + device.fsType;
    case Failure::Reason::kTimedOut:
      return "no answer from UDisks2 in time, it may still be at work";
    case Failure::Reason::kServiceDied:
      return "UDisks2 ended before it answered";
    case Failure::Reason::kNoMemory:
      return "there is no memory left";
    case Failure::Reason::kGone:
    case Failure::Reason::kMountFailed:
    case Failure::Reason::kOther:
      break;
  }
  return failure.detail.empty() ? "the attempt failed" : failure.detail;
}

/// Our request may have been carried out.
bool MayBeDone(const MaybeFailure& failure) {
  return !failure || failure->reason == Failure::Reason::kTimedOut ||
         failure->reason == Failure::Reason::kServiceDied || failure->reason == Failure::Reason::kNoMemory;
}

/// Makes a request. With no memory for the answer, what became of it still has to be looked at.
template <class Request>
auto Ask(Request request) -> decltype(request()) {
  try {
    return request();
  } catch (const std::bad_alloc&) {
    return {Failure{Failure::Reason::kNoMemory, {}}};
  }
}

struct State {
  std::vector<Mount> mounts;
  std::optional<Identifier> owner;  // of the device's number
};

/// What has become of the device once a service may have been at work. Something may have to be taken back
/// then, so a shortage of descriptors or memory gets a moment to pass. Throws when it does not.
State LookAfterwards(const Device& device) {
  constexpr auto kPause = std::chrono::milliseconds(10);
  for (int triesLeft = 100;; --triesLeft) {
    try {
      // In this order: a number that is still the disk's has been so all the time.
      auto mounts = MountsOf(device);
      return {std::move(mounts), IdentifierOf(device.number)};
    } catch (const std::exception&) {
      if (triesLeft == 0) throw;
    }
    std::this_thread::sleep_for(kPause);
  }
}

/// Instead of the disk that was meant, `other` was there when our request was carried out, or may have been.
Outcome TakenOver(const Device& device, const Identifier& other, const std::string& what) {
  return {1, "Could not find disk: " + device.id.Text() + "; " + other.Text() + " came in its place and " +
                 what + "\n"};
}

Outcome Failed(std::string_view verb, const Failure& failure, const Device& device) {
  if (failure.reason == Failure::Reason::kGone) return NotFound(device.id);
  return {1,
          "Could not " + std::string(verb) + " " + device.id.Text() + ": " + Explain(failure, device) + "\n"};
}

}  // namespace

MountAttempt Mounter::TryMount(const Device& device) const {
  const auto isStillMeant = [&] { return IsStillThere(device); };
  MountAttempt attempt = Ask([&] { return udisks_.Mount(device.number, isStillMeant); });
  MaybeFailure& failure = attempt.failure;
  if (failure && failure->reason == Failure::Reason::kNoService && IsRoot())
    attempt = isStillMeant() ? KernelMount(device) : MountAttempt{Failure{Failure::Reason::kGone, {}}};
  if (failure && failure->reason == Failure::Reason::kMountFailed && !device.fsType.empty() &&
      !KernelKnows(device.fsType)) {
    failure->reason = Failure::Reason::kUnsupportedByKernel;
  }
  return attempt;
}

Outcome Mounter::Mount(const Device& device) const {
  const Descriptor held = HoldName(device);
  if (const auto mounts = MountsOf(device); !mounts.empty() && IsStillThere(device))
    return {0, Subject(device) + " is already " + WhereMounted(mounts.front()) + "\n"};
  const MountAttempt attempt = TryMount(device);
  const auto [mounts, owner] = LookAfterwards(device);
  if (!owner) return NotFound(device.id);
  if (*owner != device.id) return TakeBack(attempt, device, *owner);
  if (!mounts.empty()) return {0, Subject(device) + " " + WhereMounted(mounts.front()) + "\n"};
  return Failed(
      "mount", attempt.failure.value_or(Failure{Failure::Reason::kOther, "it did not stay mounted"}), device);
}

Outcome Mounter::TakeBack(const MountAttempt& attempt, const Device& device, const Identifier& owner) const {
  Device other;
  other.id = owner;
  other.number = device.number;
  // Only what we mounted ourselves: the desktop may have mounted the new disk, as it was plugged in.
  const auto ours = [&]() -> std::optional<diskutil::Mount> {
    for (const auto& mount : LookAfterwards(other).mounts)
      if (mount.point == attempt.point) return mount;
    return std::nullopt;
  };
  const auto mount = ours();
  if (!mount)
    return MayBeDone(attempt.failure) ? TakenOver(device, owner, "may have been mounted")
                                      : NotFound(device.id);
  const MaybeFailure failure = TryUnmount(other, *mount);
  if (!ours()) return TakenOver(device, owner, "was mounted, and is unmounted again");
  return TakenOver(device, owner,
                   "was mounted at " + mount->shownPoint +
                       ", where it still is: " + Explain(failure.value_or(Failure{}), other));
}

MaybeFailure Mounter::TryUnmount(const Device& device, const diskutil::Mount& mount) const {
  // Unmounting goes by the folder, and the folder belongs to another volume now.
  if (mount.covered) return Failure{Failure::Reason::kBusy, {}};
  const auto isStillMeant = [&] { return IsStillThere(device); };
  MaybeFailure failure = Ask([&] { return udisks_.Unmount(mount.number, isStillMeant); });
  if (failure && failure->reason == Failure::Reason::kNoService && IsRoot())
    failure = isStillMeant() ? KernelUnmount(mount.point) : Failure{Failure::Reason::kGone, {}};
  RemoveKernelMountPoint(mount.point);
  return failure;
}

Outcome Mounter::Unmount(const Device& device) const {
  const Descriptor held = HoldName(device);
  auto mounts = MountsOf(device);
  if (!IsStillThere(device)) return NotFound(device.id);
  if (mounts.empty()) return {0, Subject(device) + " is not mounted\n"};
  // A volume may be mounted at several places. Each round must take one of them away.
  while (!mounts.empty()) {
    const MaybeFailure failure = TryUnmount(device, mounts.front());
    auto [left, owner] = LookAfterwards(device);
    if (owner && *owner != device.id)
      return MayBeDone(failure) ? TakenOver(device, *owner, "may have been unmounted") : NotFound(device.id);
    // A disk image may be given up with its last mount: gone, and nothing in its place, is as good.
    if (!owner && (failure || !left.empty())) return NotFound(device.id);
    if (left.size() >= mounts.size()) {
      return Failed("unmount", failure.value_or(Failure{Failure::Reason::kOther, "it is still mounted"}),
                    device);
    }
    mounts = std::move(left);
  }
  return {0, Subject(device) + " unmounted\n"};
}

}  // namespace diskutil
