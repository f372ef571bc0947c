#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include "bench/ListText.h"

// A diskutil that answers at once. BENCH_ROWS is the number of volumes it lists; it hangs when it is asked
// for the volume that BENCH_HANGS names, and BENCH_REPORT names the shape of a report of 10 MB.

namespace {

constexpr const char* kReport =
    "   Device Identifier:        disk0s2\n"
    "   Device Node:              /dev/disk0s2\n"
    "   Volume Name:              Backup\n"
    "   Mounted:                  Yes\n"
    "   Mount Point:              /Volumes/Backup\n"
    "   Partition Type:           Apple_HFS\n"
    "   Disk Size:                120.5 GB\n";

void Print(const char* text, std::size_t size) {
  while (size > 0) {
    const ssize_t written = write(STDOUT_FILENO, text, size);
    if (written <= 0) std::exit(1);
    text += written;
    size -= static_cast<std::size_t>(written);
  }
}

std::string LargeReport(std::string_view shape) {
  constexpr std::size_t kBytes = 10'000'000;
  if (shape == "line") return std::string(kBytes, 'x');
  if (shape == "zeros") return std::string(kBytes, '\0');
  if (shape == "breaks") return std::string(kBytes, '\n');
  std::string report;
  report.reserve(kBytes + 1000);
  std::minstd_rand random;
  while (report.size() < kBytes)
    if (shape == "bytes")
      report += static_cast<char>(random() >> 8);
    else
      report += kReport;
  return report;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::strcmp(argv[1], "list") == 0) {
    const char* rows = std::getenv("BENCH_ROWS");
    const std::string text = ListOfVolumes(rows ? std::atoi(rows) : 0);
    Print(text.data(), text.size());
    return 0;
  }
  if (argc != 3 || std::strcmp(argv[1], "info") != 0) return 1;
  const char* hangs = std::getenv("BENCH_HANGS");
  if (hangs && std::strcmp(argv[2], hangs) == 0) pause();
  const char* shape = std::getenv("BENCH_REPORT");
  const std::string report = shape ? LargeReport(shape) : kReport;
  Print(report.data(), report.size());
  return 0;
}
