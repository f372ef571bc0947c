#include "framework/Folders.h"

#include <pwd.h>
#include <unistd.h>
#ifdef __APPLE__
#include <mach-o/dyld.h>
#endif

#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

fs::path Executable() {
  std::error_code failed;
#ifdef __APPLE__
  std::array<char, 4096> path{};
  std::uint32_t size = path.size();
  if (_NSGetExecutablePath(path.data(), &size) != 0) return {};
  return fs::canonical(path.data(), failed);
#else
  return fs::read_symlink("/proc/self/exe", failed);
#endif
}

std::string Installed(const char* kind, [[maybe_unused]] const char* inBundle) {
  const fs::path executable = Executable();
  if (executable.empty()) return {};
  const fs::path folder = executable.parent_path();
  std::error_code failed;
#ifdef __APPLE__
  if (const fs::path bundled = folder.parent_path() / inBundle; fs::is_directory(bundled, failed))
    return bundled.string();
#endif
  // Only from "bin" one level up: above a build folder may lie a folder that anybody can write to.
  const fs::path base = folder.filename() == "bin" ? folder.parent_path() : folder;
  const fs::path ours = base / kind / executable.filename();
  return fs::is_directory(ours, failed) ? ours.string() : std::string();
}

/// The folder of that name in the user's home folder; empty where no home can be told.
std::string InHome(const char* name) {
  std::string home = Environment("HOME");
  if (const passwd* const user = home.empty() ? getpwuid(getuid()) : nullptr; user && user->pw_dir)
    home = user->pw_dir;
  return home.starts_with('/') ? home + name : "";
}

}  // namespace

std::string Environment(const char* name, const char* otherwise) {
  const char* const value = std::getenv(name);
  return value ? value : otherwise;
}

std::string PreferencesFolder() {
#ifdef __APPLE__
  return InHome("/Library/Preferences");
#else
  std::string folder = Environment("XDG_CONFIG_HOME");
  return folder.starts_with('/') ? folder : InHome("/.config");
#endif
}

std::string ToolFolder() {
  static const auto& folder = *new std::string(Installed("libexec", "Helpers"));  // threads outlive statics
  return folder;
}

std::string ResourcesFolder() {
  return Installed("share", "Resources");
}
