#include "linux_diskutil/Command.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <string>

#include "linux_diskutil/Devices.h"
#include "linux_diskutil/Identifier.h"
#include "linux_diskutil/InfoReport.h"
#include "linux_diskutil/ListReport.h"
#include "linux_diskutil/Mounter.h"
#include "linux_diskutil/Mounts.h"

namespace diskutil {
namespace {

const Outcome kUsage{
    1, "Usage: diskutil list | info <identifier> | mount <identifier> | unMount <identifier>\n"};

std::string LowerCase(std::string_view word) {
  std::string lower(word);
  std::ranges::transform(lower, lower.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
  return lower;
}

std::optional<Identifier> LastIdentifier(const std::vector<std::string_view>& words) {
  for (auto word = words.rbegin(); word + 1 != words.rend(); ++word)
    if (const auto id = ReadIdentifier(*word)) return id;
  return std::nullopt;
}

/// The mount table knows names and numbers, which another disk may have got by now.
Outcome Info(const Device& device) {
  const std::string report = InfoReport(device, MountsOf(device));
  return IdentifierOf(device.number) == device.id ? Outcome{0, report} : NotFound(device.id);
}

Outcome Run(const std::vector<std::string_view>& words, const Udisks& udisks) {
  if (words.empty()) return kUsage;
  const std::string verb = LowerCase(words.front());
  if (verb == "list") return words.size() == 1 ? Outcome{0, ListReport(ListDevices())} : kUsage;

  const auto id = LastIdentifier(words);
  if (!id || (verb != "info" && verb != "mount" && verb != "unmount")) return kUsage;
  const auto device = FindDevice(*id);
  if (!device) return NotFound(*id);
  if (verb == "info") return Info(*device);
  const Mounter mounter(udisks);
  return verb == "mount" ? mounter.Mount(*device) : mounter.Unmount(*device);
}

}  // namespace

Outcome RunCommand(const std::vector<std::string_view>& words, const Udisks& udisks) {
  try {
    return Run(words, udisks);
  } catch (const std::exception& error) {
    return {1, std::string(error.what()) + "\n"};
  }
}

}  // namespace diskutil
