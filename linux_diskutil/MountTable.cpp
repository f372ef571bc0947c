#include "linux_diskutil/MountTable.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "linux_diskutil/PrintableText.h"

namespace diskutil {
namespace {

using Numbers = std::vector<dev_t>;

// The entries of a folder of the kernel's, none when there is no such folder.
std::filesystem::directory_iterator Entries(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entries(folder, error);
  if (error && error != std::errc::no_such_file_or_directory) {
    throw std::system_error(error, "Could not read " + folder.string());
  }
  return entries;
}

// All devices of the mounted btrfs that the device is one of. None when there is no such btrfs.
Numbers BtrfsMembers(dev_t device) {
  for (const auto& btrfs : Entries("/sys/fs/btrfs")) {
    Numbers members;
    for (const auto& member : Entries(btrfs.path() / "devices")) {
      unsigned major = 0;
      unsigned minor = 0;
      char colon = 0;
      std::ifstream file(member.path() / "dev");
      if (!(file >> major >> colon >> minor)) {
        throw std::runtime_error("Could not read " + member.path().string());
      }
      members.push_back(makedev(major, minor));
    }
    if (std::ranges::find(members, device) != members.end()) return members;
  }
  return {};
}

// Takes a field off the front of a line. The kernel writes a blank in it, and what else would break the line,
// as a backslash and three octal digits.
std::string TakeField(std::string_view& line) {
  const std::string_view field = line.substr(0, line.find(' '));
  line.remove_prefix(std::min(field.size() + 1, line.size()));
  std::string text;
  for (std::size_t i = 0; i < field.size(); ++i) {
    unsigned value = 0;
    const char* digits = field.data() + i + 1;
    if (field[i] == '\\' && i + 3 < field.size() &&
        std::from_chars(digits, digits + 3, value, 8).ptr == digits + 3) {
      text += static_cast<char>(value);
      i += 3;
    } else {
      text += field[i];
    }
  }
  return text;
}

// "8:18", or 0 for anything else.
dev_t DeviceNumber(std::string_view text) {
  unsigned major = 0;
  unsigned minor = 0;
  const char* end = text.data() + text.size();
  const auto colon = std::from_chars(text.data(), end, major).ptr;
  if (colon == end || *colon != ':' || std::from_chars(colon + 1, end, minor).ptr != end) return 0;
  return makedev(major, minor);
}

// Options stand in a row, parted by commas.
bool HasOption(const std::string& options, const std::string& option) {
  return ("," + options + ",").find("," + option + ",") != std::string::npos;
}

// The device of a btrfs that its mount names: one of them, whichever was meant when it was mounted. 0 for any
// other mount. A btrfs has a device number of its own. Nobody but the kernel writes the source of one, while
// a user may put any text there for a file system that runs in a program of his.
dev_t BtrfsSource(const std::string& fsType, const std::string& source) {
  struct stat status {};
  if (fsType != "btrfs") return 0;
  return stat(source.c_str(), &status) == 0 && S_ISBLK(status.st_mode) ? status.st_rdev : 0;
}

}  // namespace

// A line: "36 20 8:18 / /media/Backup rw,nosuid shared:7 - hfsplus /dev/sdb2 ro,umask=22". Before the dash
// stand none or more fields that say nothing to us.
MountTable::MountTable() {
  const char* path = "/proc/self/mountinfo";
  errno = 0;
  std::ifstream file(path);
  for (std::string text; std::getline(file, text);) {
    std::string_view line = text;
    Entry entry;
    for (int ours = 0; ours < 2; ++ours) TakeField(line);
    entry.number = DeviceNumber(TakeField(line));
    TakeField(line);
    entry.point = TakeField(line);
    entry.options = TakeField(line);
    while (!line.empty() && TakeField(line) != "-") continue;
    entry.fsType = TakeField(line);
    entry.source = TakeField(line);
    entry.fsOptions = TakeField(line);
    entries_.push_back(std::move(entry));
  }
  if (!file.eof()) throw std::system_error(errno, std::generic_category(), "Could not read the mount table");
}

// Calls `use` with each mount of the device, the oldest first, and with the device that the mount goes by,
// until it returns false.
template <typename Use>
void MountTable::ForEachMount(const Device& device, Use use) const {
  std::optional<Numbers> members;  // read when there is a btrfs
  for (const Entry& entry : entries_) {
    dev_t number = entry.number;
    if (const dev_t source = BtrfsSource(entry.fsType, entry.source)) {
      if (!members) members = BtrfsMembers(device.number);
      if (std::ranges::find(*members, source) == members->end()) continue;
      number = source;
    } else if (number != device.number) {
      continue;
    }
    if (!use(entry, number)) break;
  }
}

std::optional<Mount> MountTable::Find(const Device& device) const {
  std::optional<Mount> found;
  ForEachMount(device, [&](const Entry& entry, dev_t number) {
    const auto top = std::ranges::find(entries_.rbegin(), entries_.rend(), entry.point, &Entry::point);
    // A volume that the file system itself will not write to (journaled, damaged) says so in its own options
    // only.
    const bool readOnly = HasOption(entry.options, "ro") || HasOption(entry.fsOptions, "ro");
    found = Mount{entry.point, PrintableText(entry.point), number, readOnly, &*top != &entry};
    return false;
  });
  return found;
}

int MountTable::Count(const Device& device) const {
  int count = 0;
  ForEachMount(device, [&](const Entry&, dev_t) {
    ++count;
    return true;
  });
  return count;
}

}  // namespace diskutil
