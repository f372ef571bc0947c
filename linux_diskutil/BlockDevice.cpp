#include "linux_diskutil/BlockDevice.h"

#include <libudev.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <new>
#include <string_view>
#include <system_error>

#include "linux_diskutil/OpenForReading.h"
#include "linux_diskutil/PrintableText.h"

namespace diskutil {
namespace {

struct UnrefDevice {
  void operator()(udev_device* device) const { udev_device_unref(device); }
};
using CountedDevice = std::unique_ptr<udev_device, UnrefDevice>;

std::string_view View(const char* text) {
  return text ? std::string_view(text) : std::string_view();
}

std::string_view Property(udev_device* device, const char* name) {
  const char* value = udev_device_get_property_value(device, name);
  if (!value) ThrowIfExhausted(udev_device_get_syspath(device));
  return View(value);
}

/// Text that came from a disk, or through udev from its owner, is printable from here on.
std::string Text(udev_device* device, const char* name) {
  return PrintableText(DecodeUdevEscapes(Property(device, name)));
}

/// Takes over what udev has found out about the device. True when udev knows it: what it does not say then,
/// the device does not have. Where there is no database, each question costs a look for it.
bool ReadDescription(udev_device* source, Device& device) {
  device.tableType = Text(source, "ID_PART_TABLE_TYPE");
  device.entryType = Text(source, "ID_PART_ENTRY_TYPE");
  device.fsType = Text(source, "ID_FS_TYPE");
  if (udev_device_get_is_initialized(source) <= 0 && device.tableType.empty() && device.entryType.empty() &&
      device.fsType.empty()) {
    return false;
  }
  device.entryScheme = Text(source, "ID_PART_ENTRY_SCHEME");
  device.fsUsage = Text(source, "ID_FS_USAGE");
  device.label = Text(source, "ID_FS_LABEL_ENC");
  device.uuid = Text(source, "ID_FS_UUID_ENC");
  return true;
}

std::uint64_t Number(std::string_view text) {
  std::uint64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

bool IsPartition(udev_device* device) {
  return View(udev_device_get_devtype(device)) == "partition";
}

struct Attachment {
  std::string_view sign;  // part of the device's path in sysfs
  std::string_view protocol;
  bool external;
  Device::Origin origin;
};

/// The first sign found in the path counts: a card reader on USB is USB.
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

/// The folder of a block device in sysfs, by the way that has no links in it: libudev looks at every step of
/// the way, and goes back at each link.
std::string FolderOf(const std::string& name) {
  const std::string link = std::string(kBlockDevices) + "/" + name;
  std::error_code failed;
  const std::string target = std::filesystem::read_symlink(link, failed);
  constexpr std::string_view kUp = "../../";
  return target.starts_with(kUp) ? "/sys/" + target.substr(kUp.size()) : link;
}

}  // namespace

std::uint64_t KernelNumber(const std::string& folder, const char* attribute) {
  const Descriptor file = OpenForReading(folder + "/" + attribute);
  std::array<char, 24> text{};
  const ssize_t length = file ? TEMP_FAILURE_RETRY(read(file.Fd(), text.data(), text.size())) : 0;
  if (length < 0) ThrowIfExhausted(folder);
  return length > 0 ? Number({text.data(), static_cast<std::size_t>(length)}) : 0;
}

void BlockDeviceReader::Unref::operator()(udev* context) const {
  udev_unref(context);
}

BlockDeviceReader::BlockDeviceReader() : context_(udev_new()) {
  if (!context_) throw std::bad_alloc();
}

std::optional<BlockDevice> BlockDeviceReader::Read(const std::string& name) const {
  const std::string folder = FolderOf(name);
  constexpr std::uint64_t kSector = 512;  // the unit of "size", whatever the disk's own sectors are
  const std::uint64_t bytes = KernelNumber(folder, "size") * kSector;
  if (bytes == 0) return std::nullopt;
  const CountedDevice source(udev_device_new_from_syspath(context_.get(), folder.c_str()));
  if (!source || !udev_device_get_devnode(source.get())) {
    ThrowIfExhausted(folder);
    return std::nullopt;  // it has just gone, or the kernel's files about it make no sense
  }

  BlockDevice found;
  found.folder = View(udev_device_get_syspath(source.get()));
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

std::optional<Identifier> BlockDeviceReader::IdentifierOf(dev_t number) const {
  const CountedDevice device(udev_device_new_from_devnum(context_.get(), 'b', number));
  if (!device) {
    ThrowIfExhausted("the device");
    return std::nullopt;
  }
  udev_device* disk = device.get();
  std::uint64_t partition = 0;
  if (IsPartition(disk)) {
    partition = Number(Property(disk, "PARTN"));
    disk = udev_device_get_parent(disk);
    if (!disk) ThrowIfExhausted("the device");
    if (!disk || partition == 0) return std::nullopt;
  }
  const std::string folder = udev_device_get_syspath(disk);
  const std::uint64_t sequence = KernelNumber(folder, "diskseq");
  if (sequence == 0 || KernelNumber(folder, "size") == 0) return std::nullopt;
  return Identifier{sequence, static_cast<std::uint32_t>(partition)};
}

}  // namespace diskutil
