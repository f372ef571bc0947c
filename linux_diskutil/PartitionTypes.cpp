#include "linux_diskutil/PartitionTypes.h"

#include <algorithm>
#include <array>

namespace diskutil {
namespace {

struct Entry {
  std::string_view scheme;
  std::string_view type;  // in lower case, as libblkid gives it
  std::string_view name;
};

/// Schemes are libblkid's: "gpt" with type GUIDs, "dos" with the type byte of the boot record. An Apple map
/// ("mac") carries the names themselves.
constexpr std::array kTypes = {
    Entry{"gpt", "48465300-0000-11aa-aa11-00306543ecac", "Apple_HFS"},
    Entry{"gpt", "7c3457ef-0000-11aa-aa11-00306543ecac", "Apple_APFS"},
    Entry{"gpt", "426f6f74-0000-11aa-aa11-00306543ecac", "Apple_Boot"},
    Entry{"gpt", "53746f72-6167-11aa-aa11-00306543ecac", "Apple_CoreStorage"},
    Entry{"gpt", "52414944-0000-11aa-aa11-00306543ecac", "Apple_RAID"},
    Entry{"gpt", "52414944-5f4f-11aa-aa11-00306543ecac", "Apple_RAID_Offline"},
    Entry{"gpt", "55465300-0000-11aa-aa11-00306543ecac", "Apple_UFS"},
    Entry{"gpt", "4c616265-6c00-11aa-aa11-00306543ecac", "Apple_Label"},
    Entry{"gpt", "c12a7328-f81f-11d2-ba4b-00a0c93ec93b", "EFI"},
    Entry{"gpt", "21686148-6449-6e6f-744e-656564454649", "BIOS Boot"},
    Entry{"gpt", "bc13c2ff-59e6-4262-a352-b275fd6f7172", "Linux Boot"},
    Entry{"gpt", "ebd0a0a2-b9e5-4433-87c0-68b6b72699c7", "Microsoft Basic Data"},
    Entry{"gpt", "e3c9e316-0b5c-4db8-817d-f92df00215ae", "Microsoft Reserved"},
    Entry{"gpt", "de94bba4-06d1-4d40-a16a-bfd50179d6ac", "Windows Recovery"},
    Entry{"gpt", "0fc63daf-8483-4772-8e79-3d69d8477de4", "Linux Filesystem"},
    Entry{"gpt", "4f68bce3-e8cd-4db1-96e7-fbcaf984b709", "Linux Filesystem"},
    Entry{"gpt", "b921b045-1df0-41c3-af44-4c6f280d3fae", "Linux Filesystem"},
    Entry{"gpt", "933ac7e1-2eb4-4f13-b844-0e14e2aef915", "Linux Filesystem"},
    Entry{"gpt", "0657fd6d-a4ab-43c4-84e5-0933c84b4f4f", "Linux Swap"},
    Entry{"gpt", "e6d6d379-f507-44c2-a23c-238f2a3df928", "Linux LVM"},
    Entry{"gpt", "a19d880f-05fc-4d3b-a006-743f0f84911e", "Linux RAID"},
    Entry{"gpt", "ca7d7ccb-63ed-4c53-861c-1742536059cc", "Linux LUKS"},
    Entry{"dos", "0x1", "DOS_FAT_12"},
    Entry{"dos", "0x4", "DOS_FAT_16"},
    Entry{"dos", "0x5", "Extended"},
    Entry{"dos", "0x6", "DOS_FAT_16"},
    Entry{"dos", "0x7", "Windows_NTFS"},
    Entry{"dos", "0xb", "DOS_FAT_32"},
    Entry{"dos", "0xc", "DOS_FAT_32"},
    Entry{"dos", "0xe", "DOS_FAT_16"},
    Entry{"dos", "0xf", "Extended"},
    Entry{"dos", "0x27", "Windows Recovery"},
    Entry{"dos", "0x82", "Linux Swap"},
    Entry{"dos", "0x83", "Linux Filesystem"},
    Entry{"dos", "0x8e", "Linux LVM"},
    Entry{"dos", "0xa8", "Apple_UFS"},
    Entry{"dos", "0xab", "Apple_Boot"},
    Entry{"dos", "0xac", "Apple_RAID"},
    Entry{"dos", "0xaf", "Apple_HFS"},
    Entry{"dos", "0xee", "GPT Protective"},
    Entry{"dos", "0xef", "EFI"},
    Entry{"dos", "0xfd", "Linux RAID"},
};

struct Scheme {
  std::string_view tableType;
  std::string_view name;
};

constexpr std::array kSchemes = {
    Scheme{"gpt", "GUID"},
    Scheme{"dos", "FDisk"},
    Scheme{"mac", "Apple"},
};

std::string SchemeName(const std::string& tableType) {
  const auto known = std::ranges::find(kSchemes, tableType, &Scheme::tableType);
  return std::string(known != kSchemes.end() ? known->name : tableType) + "_partition_scheme";
}

}  // namespace

std::string TypeName(const Device& device, CaseRule caseRule) {
  if (!device.tableType.empty() && device.id.partition == 0) return SchemeName(device.tableType);
  if (device.fsType == "hfs" || device.fsType == "hfsplus")
    return caseRule == CaseRule::kSensitive ? "Apple_HFSX" : "Apple_HFS";
  if (device.id.partition == 0) return device.fsType;
  const auto known = std::ranges::find_if(kTypes, [&](const Entry& entry) {
    return entry.scheme == device.entryScheme && entry.type == device.entryType;
  });
  return known != kTypes.end() ? std::string(known->name) : device.entryType;
}

}  // namespace diskutil
