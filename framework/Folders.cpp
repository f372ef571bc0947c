#include "framework/Folders.h"

#include <filesystem>
#ifdef __APPLE__
#include <mach-o/dyld.h>

#include <array>
#include <cstdint>
#endif

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

}  // namespace

std::string ToolFolder() {
  static const auto& folder = *new std::string(Installed("libexec", "Helpers"));  // threads outlive statics
  return folder;
}

std::string ResourcesFolder() {
  return Installed("share", "Resources");
}
