#include "linux_diskutil/InfoReport.h"

#include "linux_diskutil/Size.h"

namespace diskutil {
namespace {

std::string Line(std::string label, const std::string& value) {
  constexpr std::size_t kValueColumn = 26;
  if (value.empty()) return {};
  label.resize(kValueColumn, ' ');
  return "   " + label + value + "\n";
}

std::string YesNo(bool yes) {
  return yes ? "Yes" : "No";
}

std::string FileSystemName(const Device& device) {
  if (device.fsType == "hfs") return "HFS";
  if (device.fsType == "hfsplus") return device.type == "Apple_HFSX" ? "HFS+ (case-sensitive)" : "HFS+";
  return device.fsType;
}

}  // namespace

std::string InfoReport(const Device& device, const std::vector<Mount>& mounts) {
  const Mount* const mount = mounts.empty() ? nullptr : &mounts.front();
  return Line("Device Identifier:", device.id.Text()) +                                                  //
         Line("Device Node:", device.node) +                                                             //
         Line("Mounted:", YesNo(mount)) +                                                                //
         Line("Volume Name:", device.label) +                                                            //
         Line("Mount Point:", mount ? mount->shownPoint : "") +                                          //
         Line("Partition Type:", device.type) +                                                          //
         Line("File System:", FileSystemName(device)) +                                                  //
         Line("Volume UUID:", device.uuid) +                                                             //
         Line("Disk Size:", SizeText(device.bytes) + " (" + std::to_string(device.bytes) + " Bytes)") +  //
         Line("Read-Only Volume:", YesNo(mount ? mount->readOnly : device.readOnly)) +                   //
         Line("Device Location:",
              device.location == Device::Location::kExternal ? "External" : "Internal") +  //
         Line("Removable Media:", device.removable ? "Removable" : "Fixed") +              //
         Line("Protocol:", device.protocol);
}

}  // namespace diskutil
