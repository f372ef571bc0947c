#include "framework/FolderItem.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>

#include "framework/Application.h"
#include "framework/Folders.h"
#include "framework/PictReader.h"
#include "framework/Toolkit.h"

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLargestPicture = 64u << 20;  // bytes of a picture file

/// Opens a regular file, or nothing: a folder, pipe or device could hold the program up for ever.
Descriptor OpenRegular(const std::string& path, int flags) {
  Descriptor file(open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666));
  struct stat status {};
  if (!file || fstat(file.Fd(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return file;
}

std::string Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

std::string HomeFolder() {
  if (std::string home = Environment("HOME"); !home.empty()) return home;
  const passwd* const user = getpwuid(getuid());
  return user ? user->pw_dir : "";
}

}  // namespace

Ref<FolderItem> FolderItem::Child(const String& name) const {
  return Ref<FolderItem>(new FolderItem(path_ + "/" + name.Utf8()));
}

bool FolderItem::Exists() const {
  return access(path_.c_str(), F_OK) == 0;
}

Ref<TextInputStream> FolderItem::OpenAsTextFile() const {
  Descriptor file = OpenRegular(path_, O_RDONLY);
  return file ? Ref<TextInputStream>(new TextInputStream(std::move(file))) : nullptr;
}

Ref<TextOutputStream> FolderItem::CreateTextFile() const {
  Descriptor file = OpenRegular(path_, O_WRONLY | O_CREAT);
  return file ? Ref<TextOutputStream>(new TextOutputStream(std::move(file))) : nullptr;
}

PictureRef FolderItem::OpenAsPicture() const {
  std::error_code failed;
  if (!fs::is_regular_file(path_, failed) || fs::file_size(path_, failed) > kLargestPicture) return nullptr;
  if (fs::path(path_).extension() != ".pct") return Application::Toolkit()->ReadPicture(path_);
  std::ifstream file(path_, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  auto picture = ReadPict(std::as_bytes(std::span(bytes)));
  return picture ? std::make_shared<const Picture>(std::move(*picture)) : nullptr;
}

Ref<FolderItem> SpecialFolder::Preferences() {
#ifdef __APPLE__
  std::string folder = HomeFolder() + "/Library/Preferences";
#else
  std::string folder = Environment("XDG_CONFIG_HOME");
  if (folder.empty() || folder.front() != '/') folder = HomeFolder() + "/.config";
#endif
  if (folder.front() != '/') return nullptr;
  std::error_code failed;  // a folder that cannot be made shows when a file in it cannot be
  fs::create_directories(folder, failed);
  return Ref<FolderItem>(new FolderItem(std::move(folder)));
}

Ref<FolderItem> _GetApplicationBundleResources() {
  std::string folder = ResourcesFolder();
  return folder.empty() ? nullptr : Ref<FolderItem>(new FolderItem(std::move(folder)));
}
