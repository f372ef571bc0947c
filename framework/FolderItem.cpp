#include "framework/FolderItem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <map>
#include <span>

#include "framework/Folders.h"
#include "framework/PictReader.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestPicture = 64u << 20;  // bytes of a picture file

/// Opens a regular file, or nothing: a folder, pipe or device could hold the program up for ever.
Descriptor OpenRegular(const std::string& path, int flags) {
  Descriptor file(open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666));
  struct stat status {};
  if (!file || fstat(file.Fd(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return file;
}

/// All bytes of a file that is not larger than that; none when one of them cannot be read.
std::string ReadFile(const std::string& path, std::size_t largest) {
  constexpr std::size_t kReadSize = 64 * 1024;
  const Descriptor file = OpenRegular(path, O_RDONLY);
  std::string bytes;
  while (file && bytes.size() <= largest) {
    const std::size_t before = bytes.size();
    bytes.resize(before + kReadSize);
    const ssize_t got = read(file.Fd(), bytes.data() + before, kReadSize);
    if (got < 0 && errno != EINTR) return {};
    bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got == 0) return bytes;
  }
  return {};
}

/// Text files by their path, and whether the last who read one was kept from it. Writing over such a file
/// would lose what nobody has seen.
std::map<std::string, bool>& Unread() {
  static auto& files = *new std::map<std::string, bool>;  // threads outlive statics
  return files;
}

FolderItem::PictureReader readOtherPicture = [](const std::string&) { return PictureRef(); };

}  // namespace

void FolderItem::InstallPictureReader(PictureReader reader) {
  readOtherPicture = std::move(reader);
}

Ref<FolderItem> FolderItem::Child(const String& name) const {
  return Ref<FolderItem>(new FolderItem(path_ + "/" + name.Utf8()));
}

bool FolderItem::Exists() const {
  return access(path_.c_str(), F_OK) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

Ref<TextInputStream> FolderItem::OpenAsTextFile() const {
  bool& unread = Unread()[path_] = Exists();
  Descriptor file = OpenRegular(path_, O_RDONLY);
  return file ? Ref<TextInputStream>(new TextInputStream(std::move(file), unread)) : nullptr;
}

Ref<TextOutputStream> FolderItem::CreateTextFile() const {
  if (const auto found = Unread().find(path_); found != Unread().end() && found->second) return nullptr;
  Descriptor file = OpenRegular(path_, O_RDWR | O_CREAT);
  return file ? Ref<TextOutputStream>(new TextOutputStream(std::move(file))) : nullptr;
}

PictureRef FolderItem::OpenAsPicture() const {
  if (fs::path(path_).extension() == ".pct") {
    const std::string bytes = ReadFile(path_, kLargestPicture);
    auto picture = ReadPict(std::as_bytes(std::span(bytes)));
    return picture ? std::make_shared<const Picture>(std::move(*picture)) : nullptr;
  }
  std::error_code failed;
  if (!fs::is_regular_file(path_, failed) || fs::file_size(path_, failed) > kLargestPicture) return nullptr;
  return readOtherPicture(path_);
}

Ref<FolderItem> SpecialFolder::Preferences() {
  std::string folder = PreferencesFolder();
  if (folder.empty()) return nullptr;
  std::error_code failed;  // a folder that cannot be made shows when a file in it cannot be
  fs::create_directories(folder, failed);
  return Ref<FolderItem>(new FolderItem(std::move(folder)));
}

Ref<FolderItem> _GetApplicationBundleResources() {
  std::string folder = ResourcesFolder();
  return folder.empty() ? nullptr : Ref<FolderItem>(new FolderItem(std::move(folder)));
}
