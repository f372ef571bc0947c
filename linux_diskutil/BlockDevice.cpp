#include "linux_diskutil/BlockDevice.h"

#include <libudev.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "linux_diskutil/NotNull.h"
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
std::string PrintableProperty(udev_device* device, const char* name) {
  return PrintableText(DecodeUdevEscapes(Property(device, name)));
}

/// Takes over what udev has found out about the device. True when udev knows it: what it does not say then,
/// the device does not have. Where there is no database, each question costs a look for it.
bool ReadDescription(udev_device* source, Device& device) {
  device.tableType = PrintableProperty(source, "ID_PART_TABLE_TYPE");
  device.entryType = PrintableProperty(source, "ID_PART_ENTRY_TYPE");
  device.fsType = PrintableProperty(source, "ID_FS_TYPE");
  if (udev_device_get_is_initialized(source) <= 0 && device.tableType.empty() && device.entryType.empty() &&
      device.fsType.empty()) {
    return false;
  }
  device.entryScheme = PrintableProperty(source, "ID_PART_ENTRY_SCHEME");
  device.fsUsage = PrintableProperty(source, "ID_FS_USAGE");
  device.label = PrintableProperty(source, "ID_FS_LABEL_ENC");
  device.uuid = PrintableProperty(source, "ID_FS_UUID_ENC");
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
  Device::Location location;
};

/// The first sign found in the path counts: a card reader on USB is USB.
constexpr std::array kAttachments = {
    Attachment{"/virtual/block/loop", "Disk Image", Device::Location::kImage},
    // Below /virtual/ when it has several paths.
    Attachment{"/nvme", "NVMe", Device::Location::kInternal},
    Attachment{"/virtual/", "Virtual", Device::Location::kVirtual},
    Attachment{"/usb", "USB", Device::Location::kExternal},
    Attachment{"/fw", "FireWire", Device::Location::kExternal},
    Attachment{"/mmc_host/", "Secure Digital", Device::Location::kExternal},
    Attachment{"/ata", "SATA", Device::Location::kInternal},
    Attachment{"/virtio", "Virtio", Device::Location::kInternal},
    Attachment{"", "SCSI", Device::Location::kInternal},
};

void DescribeAttachment(udev_device* disk, Device& device) {
  const std::string_view path = View(udev_device_get_syspath(disk));
  const auto& attachment = *std::ranges::find_if(
      kAttachments, [&](const Attachment& each) { return path.find(each.sign) != std::string_view::npos; });
  device.protocol = attachment.protocol;
  device.location = attachment.location;
  if (device.protocol != "Secure Digital") return;
  // The same bus carries chips that are soldered to the board.
  udev_device* card = udev_device_get_parent_with_subsystem_devtype(disk, "mmc", nullptr);
  if (card && KernelText(udev_device_get_syspath(card), "type") == "MMC\n")
    device.location = Device::Location::kInternal;
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

std::string KernelText(const std::string& folder, const char* attribute) {
  return ReadPiece(OpenForReading(folder + "/" + attribute), 0, 24);
}

std::uint64_t KernelNumber(const std::string& folder, const char* attribute) {
  return Number(KernelText(folder, attribute));
}

void BlockDeviceReader::Unref::operator()(udev* context) const {
  udev_unref(context);
}

BlockDeviceReader::BlockDeviceReader() : context_(NotNull(udev_new())) {}

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
