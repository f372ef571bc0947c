#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Runs a fuzz target over files and folders of them, where there is no fuzzer to do it.
int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  const auto replay = [](const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  };
  for (int i = 1; i < argc; ++i) {
    if (!fs::is_directory(argv[i]))
      replay(argv[i]);
    else
      for (const auto& file : fs::directory_iterator(argv[i])) replay(file);
  }
}
