#include "linux_diskutil/Devices.h"

#include <libudev.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <system_error>

#include "linux_diskutil/ContentProbe.h"
#include "linux_diskutil/FileDescriptor.h"
#include "linux_diskutil/Label.h"
#include "linux_diskutil/PartitionTypes.h"

namespace diskutil {
namespace {

struct Unref {
  void operator()(udev* context) const { udev_unref(context); }
  void operator()(udev_device* device) const { udev_device_unref(device); }
};
template <typename T>
using Counted = std::unique_ptr<T, Unref>;

// A device as udev told of it, before its content is known.
struct Found {
  std::string path;  // Its folder in sysfs.
  Device device;
  bool described = false;  // By udev's database.
};

std::string_view View(const char* text) {
  return text ? std::string_view(text) : std::string_view();
}

std::string_view Property(udev_device* device, const char* name) {
  const char* value = udev_device_get_property_value(device, name);
  if (!value) ThrowIfExhausted(udev_device_get_syspath(device));
  return View(value);
}

// Takes over what udev has found out about the device. True when udev knows it: what it does not say then,
// the device does not have. Where there is no database, each question costs a look for it.
bool ReadDescription(udev_device* source, Device& device) {
  device.tableType = Property(source, "ID_PART_TABLE_TYPE");
  device.entryType = DecodeUdevEscapes(Property(source, "ID_PART_ENTRY_TYPE"));
  device.fsType = Property(source, "ID_FS_TYPE");
  if (udev_device_get_is_initialized(source) <= 0 && device.tableType.empty() && device.entryType.empty() &&
      device.fsType.empty()) {
    return false;
  }
  device.entryScheme = Property(source, "ID_PART_ENTRY_SCHEME");
  device.fsUsage = Property(source, "ID_FS_USAGE");
  device.label = DecodeUdevEscapes(Property(source, "ID_FS_LABEL_ENC"));
  device.uuid = DecodeUdevEscapes(Property(source, "ID_FS_UUID_ENC"));
  return true;
}

std::uint64_t Number(std::string_view text) {
  std::uint64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

// A number the kernel keeps for a block device: `attribute` is a file in its folder. 0 when there is none.
std::uint64_t KernelNumber(const std::string& folder, const char* attribute) {
  const FileDescriptor file = OpenForReading(folder + "/" + attribute);
  std::array<char, 24> text{};
  const ssize_t length = file ? read(file.Number(), text.data(), text.size()) : 0;
  if (length < 0) ThrowIfExhausted(folder);
  return length > 0 ? Number({text.data(), static_cast<std::size_t>(length)}) : 0;
}

bool IsPartition(udev_device* device) {
  return View(udev_device_get_devtype(device)) == "partition";
}

struct Attachment {
  std::string_view sign;  // Part of the device's path in sysfs.
  std::string_view protocol;
  bool external;
  Device::Origin origin;
};

// The first sign found in the path counts: a card reader on USB is USB.
constexpr std::array kAttachments = {
    Attachment{"/virtual/block/loop", "Disk Image", false, Device::Origin::kImage},
    // Below /virtual/ when it has several paths.
    Attachment{"/nvme", "NVMe", false, Device::Origin::kPhysical},
    Attachment{"/virtual/", "Virtual", false, Device::Origin::kVirtual},
    Attachment{"/usb", "USB", true, Device::Origin::kPhysical},
    Attachment{"/fw", "FireWire", true, Device::Origin::kPhysical},
    Attachment{"/mmc_host/", "Secure Digital", true, Device::Origin::kPhysical},
    Attachment{"/ata", "SATA", false, Device::Origin::kPhysical},
    Attachment{"/virtio", "Virtio", false, Device::Origin::kPhysical},
    Attachment{"", "SCSI", false, Device::Origin::kPhysical},
};

void DescribeAttachment(udev_device* disk, Device& device) {
  const std::string_view path = View(udev_device_get_syspath(disk));
  const auto& attachment = *std::ranges::find_if(
      kAttachments, [&](const Attachment& each) { return path.find(each.sign) != std::string_view::npos; });
  device.protocol = attachment.protocol;
  device.external = attachment.external;
  device.origin = attachment.origin;
  if (device.protocol == "Secure Digital") {
    // The same bus carries cards and chips soldered to the board ("MMC").
    udev_device* card = udev_device_get_parent_with_subsystem_devtype(disk, "mmc", nullptr);
    device.external = !card || View(udev_device_get_sysattr_value(card, "type")) != "MMC";
  }
}

constexpr const char* kBlockDevices = "/sys/class/block";

// The folder of a block device in sysfs, by the way that has no links in it: libudev looks at every step of
// the way, and goes back at each link.
std::string FolderOf(const std::string& name) {
  const std::string link = std::string(kBlockDevices) + "/" + name;
  std::error_code failed;
  const std::string target = std::filesystem::read_symlink(link, failed);
  constexpr std::string_view kUp = "../../";
  return target.starts_with(kUp) ? "/sys/" + target.substr(kUp.size()) : link;
}

// What udev tells of the block device `name`, without opening it. Nothing for a drive that holds no medium.
std::optional<Found> Read(udev* context, const std::string& name) {
  const std::string folder = FolderOf(name);
  constexpr std::uint64_t kSector = 512;  // The unit of "size", whatever the disk's own sectors are.
  const std::uint64_t bytes = KernelNumber(folder, "size") * kSector;
  if (bytes == 0) return std::nullopt;
  const Counted<udev_device> source(udev_device_new_from_syspath(context, folder.c_str()));
  if (!source || !udev_device_get_devnode(source.get())) {
    ThrowIfExhausted(folder);
    return std::nullopt;  // It has just gone, or the kernel's files about it make no sense.
  }

  Found found;
  found.path = View(udev_device_get_syspath(source.get()));
  Device& device = found.device;
  device.node = View(udev_device_get_devnode(source.get()));
  device.number = udev_device_get_devnum(source.get());
  device.bytes = bytes;
  found.described = ReadDescription(source.get(), device);
  if (IsPartition(source.get())) {
    device.id.partition = static_cast<std::uint32_t>(Number(Property(source.get(), "PARTN")));
    if (device.id.partition == 0) return std::nullopt;
  } else {
    device.id.disk = KernelNumber(folder, "diskseq");
    DescribeAttachment(source.get(), device);
  }
  return found;
}

bool IsMainMemory(std::string_view name) {
  return name.starts_with("ram") || name.starts_with("zram");
}

// A partition stands in the folder of its disk and takes after it.
void Inherit(Device& partition, const Device& disk) {
  partition.id.disk = disk.id.disk;
  partition.protocol = disk.protocol;
  partition.external = disk.external;
  partition.origin = disk.origin;
}

std::string_view ParentFolder(std::string_view path) {
  return path.substr(0, path.rfind('/'));
}

std::string_view NameIn(std::string_view path) {
  return path.substr(path.rfind('/') + 1);
}

// The kernel's name of a partition: sda2, but loop0p2.
std::string PartitionName(std::string_view disk, std::uint32_t partition) {
  const bool endsInDigit = disk.back() >= '0' && disk.back() <= '9';
  return std::string(disk) + (endsInDigit ? "p" : "") + std::to_string(partition);
}

// Everything udev tells, in order of the identifiers. We go through the kernel's folder ourselves: libudev's
// own enumeration makes an object of every empty loop device, and takes as long for that as for all the rest.
std::vector<Found> Enumerate() {
  const Counted<udev> context(udev_new());
  if (!context) throw std::bad_alloc();
  std::vector<Found> all;
  for (const auto& entry : std::filesystem::directory_iterator(kBlockDevices)) {
    const std::string name = entry.path().filename();
    if (IsMainMemory(name)) continue;
    if (auto found = Read(context.get(), name)) all.push_back(std::move(*found));
  }

  std::map<std::string_view, const Device*> disks;
  std::map<std::uint64_t, int> owners;
  for (const Found& found : all) {
    if (found.device.id.partition != 0) continue;
    disks.emplace(found.path, &found.device);
    ++owners[found.device.id.disk];
  }
  // A partition goes by the name of its disk and its number, as `FindDevice` looks for it.
  for (auto& [path, device, described] : all) {
    if (device.id.partition == 0) continue;
    const std::string_view folder = ParentFolder(path);
    const auto disk = disks.find(folder);
    const bool isOwn = NameIn(path) == PartitionName(NameIn(folder), device.id.partition);
    if (disk != disks.end() && isOwn) Inherit(device, *disk->second);
  }
  // No identifier, or one that could mean two disks, is nothing to mount by.
  std::erase_if(all, [&](const Found& found) {
    return found.device.id.disk == 0 || owners[found.device.id.disk] != 1;
  });
  std::ranges::sort(all, {}, [](const Found& found) { return found.device.id; });
  return all;
}

std::uint64_t SequenceOf(const std::string& name) {
  return KernelNumber(std::string(kBlockDevices) + "/" + name, "diskseq");
}

// The kernel's name of the disk with this sequence number, or nothing. udev's link may be old or missing (it
// makes them since version 251): the kernel's number decides, and without a link we look at all disks for it.
std::string DiskName(std::uint64_t sequence) {
  std::error_code failed;
  const std::filesystem::path link = "/dev/disk/by-diskseq/" + std::to_string(sequence);
  std::string name = std::filesystem::read_symlink(link, failed).filename();
  if (!name.empty() && SequenceOf(name) == sequence) return name;
  for (const auto& entry : std::filesystem::directory_iterator(kBlockDevices)) {
    name = entry.path().filename();
    if (SequenceOf(name) == sequence) return name;
  }
  return {};
}

// Adds what only the device itself can tell. Opens it no more often than that takes.
Device Complete(Found found) {
  Device& device = found.device;
  if (!found.described) ProbeContent(device);
  device.type =
      TypeName(device, device.fsType == "hfsplus" ? ReadCaseRule(device.node) : CaseRule::kInsensitive);
  return std::move(device);
}

}  // namespace

std::vector<Device> ListDevices() {
  std::vector<Device> devices;
  for (Found& found : Enumerate()) devices.push_back(Complete(std::move(found)));
  return devices;
}

std::optional<Device> FindDevice(const Identifier& id) {
  const std::string name = id.disk != 0 ? DiskName(id.disk) : "";
  if (name.empty() || IsMainMemory(name)) return std::nullopt;
  const Counted<udev> context(udev_new());
  if (!context) throw std::bad_alloc();
  const auto disk = Read(context.get(), name);
  if (!disk) return std::nullopt;
  auto found = disk;
  if (id.partition != 0) {
    found = Read(context.get(), PartitionName(name, id.partition));
    if (!found || ParentFolder(found->path) != disk->path) return std::nullopt;
    Inherit(found->device, disk->device);
  }
  if (found->device.id != id) return std::nullopt;
  found->device.readOnly = KernelNumber(found->path, "ro") != 0;
  found->device.removable = KernelNumber(disk->path, "removable") != 0;
  Device device = Complete(std::move(*found));
  // Another disk may have taken the name while we were reading.
  if (SequenceOf(name) != id.disk) return std::nullopt;
  return device;
}

std::optional<Identifier> IdentifierOf(dev_t number) {
  const Counted<udev> context(udev_new());
  if (!context) throw std::bad_alloc();
  const Counted<udev_device> device(udev_device_new_from_devnum(context.get(), 'b', number));
  if (!device) {
    ThrowIfExhausted("the device");
    return std::nullopt;
  }
  udev_device* disk = device.get();
  std::uint64_t partition = 0;
  if (IsPartition(disk)) {
    partition = Number(Property(disk, "PARTN"));
    disk = udev_device_get_parent(disk);
    if (!disk || partition == 0) return std::nullopt;
  }
  const std::string folder = udev_device_get_syspath(disk);
  const std::uint64_t sequence = KernelNumber(folder, "diskseq");
  if (sequence == 0 || KernelNumber(folder, "size") == 0) return std::nullopt;
  return Identifier{sequence, static_cast<std::uint32_t>(partition)};
}

}  // namespace diskutil
