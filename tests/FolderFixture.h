#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/TextOf.h"

/// A temporary home folder, whose "bin" stands first on PATH.
class FolderFixture : public testing::Test {
 protected:
  FolderFixture() {
    std::string folder = testing::TempDir() + "dravik-XXXXXX";
    if (!mkdtemp(folder.data())) std::abort();
    home_ = folder;
    std::filesystem::create_directory(home_ / "bin");
    setenv("HOME", home_.c_str(), 1);
    setenv("PATH", (folder + "/bin:/usr/bin:/bin").c_str(), 1);
  }
  ~FolderFixture() override {
    std::error_code failed;
    std::filesystem::remove_all(home_, failed);
  }

  /// A command in a folder of the home folder.
  void Script(const std::string& path, const std::string& text, bool executable = true) const {
    std::filesystem::create_directories((home_ / path).parent_path());
    std::ofstream(home_ / path) << text;
    if (executable) std::filesystem::permissions(home_ / path, std::filesystem::perms::owner_all);
  }

  std::filesystem::path home_;
};
