#include "linux_diskutil/ContentProbe.h"

#include <blkid/blkid.h>
#include <fcntl.h>

#include <cerrno>
#include <memory>
#include <type_traits>

#include "linux_diskutil/NotNull.h"
#include "linux_diskutil/OpenForReading.h"
#include "linux_diskutil/PrintableText.h"

namespace diskutil {
namespace {

struct FreeProbe {
  void operator()(blkid_probe probe) const { blkid_free_probe(probe); }
};
using Probe = std::unique_ptr<std::remove_pointer_t<blkid_probe>, FreeProbe>;

std::string Value(const Probe& probe, const char* name) {
  const char* data = nullptr;
  std::size_t size = 0;
  if (blkid_probe_lookup_value(probe.get(), name, &data, &size) != 0) return {};
  return PrintableText({data, size > 0 ? size - 1 : 0});  // the size counts a closing zero byte
}

/// libblkid reads thirty places of a device, one after the other: nearly all in the first kilobytes, where
/// file systems have their headers, and the last, where RAID members have theirs. Nothing tells beforehand
/// which of them a device needs, as any of them can make its content ambiguous. Asked for in two pieces, most
/// of them are there when they are read.
void AskForBothEnds(const Descriptor& file, off_t size) {
  constexpr off_t kHead = 264 * 1024;
  constexpr off_t kTail = 144 * 1024;
  posix_fadvise(file.Fd(), 0, kHead, POSIX_FADV_WILLNEED);
  if (size > kHead + kTail) posix_fadvise(file.Fd(), size - kTail, kTail, POSIX_FADV_WILLNEED);
}

}  // namespace

void ProbeContent(const Descriptor& file, Device& device) {
  AskForBothEnds(file, static_cast<off_t>(device.bytes));
  const Probe probe(NotNull(blkid_new_probe()));
  errno = 0;
  if (blkid_probe_set_device(probe.get(), file.Fd(), 0, 0) != 0) return ThrowIfExhausted(device.node);
  blkid_probe_enable_superblocks(probe.get(), 1);
  blkid_probe_set_superblocks_flags(
      probe.get(), BLKID_SUBLKS_TYPE | BLKID_SUBLKS_USAGE | BLKID_SUBLKS_LABEL | BLKID_SUBLKS_UUID);
  blkid_probe_enable_partitions(probe.get(), 1);
  blkid_probe_set_partitions_flags(probe.get(), BLKID_PARTS_ENTRY_DETAILS);
  errno = 0;
  if (blkid_do_safeprobe(probe.get()) != 0) return ThrowIfExhausted(device.node);
  device.tableType = Value(probe, "PTTYPE");
  device.entryScheme = Value(probe, "PART_ENTRY_SCHEME");
  device.entryType = Value(probe, "PART_ENTRY_TYPE");
  device.fsType = Value(probe, "TYPE");
  device.fsUsage = Value(probe, "USAGE");
  device.label = Value(probe, "LABEL");
  device.uuid = Value(probe, "UUID");
}

CaseRule ReadCaseRule(const Descriptor& file) {
  constexpr off_t kVolumeHeader = 1024;
  return ReadPiece(file, kVolumeHeader, 2) == "HX" ? CaseRule::kSensitive : CaseRule::kInsensitive;
}

}  // namespace diskutil
