#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

/// Text of a file, empty when there is none.
inline std::string TextOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}
