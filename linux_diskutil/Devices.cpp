#include "linux_diskutil/Devices.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "linux_diskutil/BlockDevice.h"
#include "linux_diskutil/ContentProbe.h"
#include "linux_diskutil/Folder.h"
#include "linux_diskutil/OpenForReading.h"
#include "linux_diskutil/PartitionTypes.h"

namespace diskutil {
namespace {

bool IsMainMemory(std::string_view name) {
  return name.starts_with("ram") || name.starts_with("zram");
}

/// A partition stands in the folder of its disk and takes after it.
void Inherit(Device& partition, const Device& disk) {
  partition.id.disk = disk.id.disk;
  partition.protocol = disk.protocol;
  partition.location = disk.location;
}

std::string_view ParentFolder(std::string_view path) {
  return path.substr(0, path.rfind('/'));
}

/// The kernel's name of a partition: sda2, but loop0p2.
std::string PartitionName(std::string_view disk, std::uint32_t partition) {
  const bool endsInDigit = disk.back() >= '0' && disk.back() <= '9';
  return std::string(disk) + (endsInDigit ? "p" : "") + std::to_string(partition);
}

/// Everything udev tells, in order of the identifiers. We go through the kernel's folder ourselves: libudev's
/// own enumeration makes an object of every empty loop device, and takes as long for that as for all the
/// rest.
std::vector<BlockDevice> Enumerate() {
  const BlockDeviceReader reader;
  std::vector<BlockDevice> all;
  for (const FolderEntry& entry : ReadFolder(kBlockDevices)) {
    if (IsMainMemory(entry.name)) continue;
    if (auto found = reader.Read(entry.name)) all.push_back(std::move(*found));
  }

  std::map<std::string_view, const Device*> disks;
  std::map<std::uint64_t, int> owners;
  for (const BlockDevice& found : all) {
    if (found.device.id.partition != 0) continue;
    disks.emplace(found.folder, &found.device);
    ++owners[found.device.id.disk];
  }
  // A partition goes by the name of its disk and its number, as `FindDevice` looks for it.
  for (auto& [path, device, described] : all) {
    if (device.id.partition == 0) continue;
    const auto disk = disks.find(ParentFolder(path));
    if (disk == disks.end()) continue;
    const std::string slashAndName(disk->first.substr(disk->first.rfind('/')));
    if (path == std::string(disk->first) + PartitionName(slashAndName, device.id.partition))
      Inherit(device, *disk->second);
  }
  // No identifier, or one that could mean two disks, is nothing to mount by.
  std::erase_if(all, [&](const BlockDevice& found) {
    return found.device.id.disk == 0 || owners[found.device.id.disk] != 1;
  });
  std::ranges::sort(all, {}, [](const BlockDevice& found) { return found.device.id; });
  return all;
}

std::uint64_t SequenceOf(const std::string& name) {
  return KernelNumber(std::string(kBlockDevices) + "/" + name, "diskseq");
}

/// The kernel's name of the disk with this sequence number, or nothing. udev's link may be old or missing (it
/// makes them since version 251): the kernel's number decides. Without a link we look where the disk should
/// stand among the others. It stands elsewhere when its medium was changed, which gives it a new number; then
/// we look at all.
std::string DiskName(std::uint64_t sequence) {
  std::error_code failed;
  const std::filesystem::path link = "/dev/disk/by-diskseq/" + std::to_string(sequence);
  std::string name = std::filesystem::read_symlink(link, failed).filename();
  if (!name.empty() && SequenceOf(name) == sequence) return name;

  // In the order in which the kernel met them: so it numbered their entries here.
  auto disks = ReadFolder("/sys/block");
  std::ranges::sort(disks, {}, &FolderEntry::number);
  std::size_t first = 0;
  for (std::size_t last = disks.size(); first < last;) {
    const std::size_t middle = first + (last - first) / 2;
    const std::uint64_t found = SequenceOf(disks[middle].name);
    if (found == sequence) return disks[middle].name;
    (found < sequence ? first : last) = found < sequence ? middle + 1 : middle;
  }
  for (const FolderEntry& disk : disks) {
    if (SequenceOf(disk.name) == sequence) return disk.name;
  }
  return {};
}

/// Adds what only the device itself can tell. Opens it once, or not at all. One that may not be read adds
/// nothing.
Device Complete(BlockDevice found) {
  Device& device = found.device;
  CaseRule caseRule = CaseRule::kInsensitive;
  if (!found.described || device.fsType == "hfsplus") {
    const Descriptor file = OpenForReading(device.node);
    if (file && !found.described) ProbeContent(file, device);
    if (file && device.fsType == "hfsplus") caseRule = ReadCaseRule(file);
  }
  device.type = TypeName(device, caseRule);
  return std::move(device);
}

}  // namespace

std::vector<Device> ListDevices() {
  std::vector<Device> devices;
  for (BlockDevice& found : Enumerate()) devices.push_back(Complete(std::move(found)));
  return devices;
}

std::optional<Device> FindDevice(const Identifier& id) {
  const std::string name = id.disk != 0 ? DiskName(id.disk) : "";
  if (name.empty() || IsMainMemory(name)) return std::nullopt;
  const BlockDeviceReader reader;
  const auto disk = reader.Read(name);
  if (!disk) return std::nullopt;
  auto found = disk;
  if (id.partition != 0) {
    found = reader.Read(PartitionName(name, id.partition));
    if (!found || ParentFolder(found->folder) != disk->folder) return std::nullopt;
    Inherit(found->device, disk->device);
  }
  if (found->device.id != id) return std::nullopt;
  found->device.readOnly = KernelNumber(found->folder, "ro") != 0;
  found->device.removable = KernelNumber(disk->folder, "removable") != 0;
  return Complete(std::move(*found));
}

std::optional<Identifier> IdentifierOf(dev_t number) {
  return BlockDeviceReader().IdentifierOf(number);
}

}  // namespace diskutil
