#include "linux_diskutil/ContentProbe.h"

#include <blkid/blkid.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <new>
#include <string_view>
#include <type_traits>

#include "linux_diskutil/FileDescriptor.h"
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
  return PrintableText({data, size > 0 ? size - 1 : 0});  // The size counts a closing zero byte.
}

}  // namespace

void ProbeContent(Device& device) {
  const FileDescriptor file = OpenForReading(device.node);
  const Probe probe(blkid_new_probe());
  if (!probe) throw std::bad_alloc();
  if (!file || blkid_probe_set_device(probe.get(), file.Number(), 0, 0) != 0) return;
  blkid_probe_enable_superblocks(probe.get(), 1);
  blkid_probe_set_superblocks_flags(
      probe.get(), BLKID_SUBLKS_TYPE | BLKID_SUBLKS_USAGE | BLKID_SUBLKS_LABEL | BLKID_SUBLKS_UUID);
  blkid_probe_enable_partitions(probe.get(), 1);
  blkid_probe_set_partitions_flags(probe.get(), BLKID_PARTS_ENTRY_DETAILS);
  if (blkid_do_safeprobe(probe.get()) != 0) return;
  device.tableType = Value(probe, "PTTYPE");
  device.entryScheme = Value(probe, "PART_ENTRY_SCHEME");
  device.entryType = Value(probe, "PART_ENTRY_TYPE");
  device.fsType = Value(probe, "TYPE");
  device.fsUsage = Value(probe, "USAGE");
  device.label = Value(probe, "LABEL");
  device.uuid = Value(probe, "UUID");
}

CaseRule ReadCaseRule(const std::string& node) {
  constexpr off_t kVolumeHeader = 1024;
  std::array<char, 2> signature{};
  const FileDescriptor file = OpenForReading(node);
  if (!file || pread(file.Number(), signature.data(), signature.size(), kVolumeHeader) !=
                   static_cast<ssize_t>(signature.size())) {
    return CaseRule::kInsensitive;
  }
  return std::string_view(signature.data(), signature.size()) == "HX" ? CaseRule::kSensitive
                                                                      : CaseRule::kInsensitive;
}

}  // namespace diskutil
