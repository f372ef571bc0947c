#pragma once

#include <filesystem>

#include "bench/Table.h"

/// Measures the `diskutil` for Linux on disks of its own. `programs` is the folder of the benchmarks'
/// programs.
void LinuxTool(Table& table, const std::filesystem::path& programs, const std::filesystem::path& scratch);
