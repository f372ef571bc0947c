#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "bench/Clock.h"
#include "bench/Command.h"
#include "bench/LinuxTool.h"
#include "bench/ListText.h"
#include "bench/Table.h"

// Runs all measurements and prints the performance table. Everything is compared run by run, in turn, so that
// a machine whose speed drifts slows both sides down. A figure above its bar is marked, and no error.
//
//     bench_report SCRATCH [PART...]      SCRATCH is a folder for files; bench/run prepares the rest

namespace {

namespace fs = std::filesystem;

fs::path folder;   // of the benchmarks' programs
fs::path scratch;  // for files

std::string Program(const char* name) {
  return folder / name;
}

void SetRows(int rows) {
  setenv("BENCH_ROWS", std::to_string(rows).c_str(), 1);
}

double ScanTime(int rows) {
  SetRows(rows);
  return NumberFrom({Program("../bin/dravik"), "scan"});
}

void SplitAndFilter(Table& table) {
  constexpr std::size_t kBytes = 10'000'000;
  const std::string list = scratch / "list";
  std::ofstream(list) << ListOfBytes(kBytes);
  const Words print = {"cat", list};
  const std::string split = Program("bench_split_and_filter");
  const Words ours = {split, "count", "cat", list};
  const Words awk = {"awk", "/[Hh][Ff][Ss]/&&!/[Hh][Ff][Ss][Xx]/"};
  if (TextFrom({split, "lines", "cat", list}) != TextFrom({awk[0], awk[1], list}))
    throw std::runtime_error("awk keeps other lines");
  table.Ratio("split and filter of 10 MB / awk", 2,
              InTurn(
                  31, [&] { return TimeOf(ours); }, [&] { return TimeOf(print, awk); }));
}

/// The dearest against the cheapest, round by round. `costs` has the figures of each size, in rounds.
Pairs DearestToCheapest(const std::map<std::size_t, Figures>& costs) {
  Pairs pairs;
  for (std::size_t round = 0; round < costs.begin()->second.size(); ++round) {
    Figures all;
    for (const auto& [size, figures] : costs) all.push_back(figures.at(round));
    const Spread spread = SpreadOf(all);
    pairs.ours.push_back(spread.maximum);
    pairs.theirs.push_back(spread.minimum);
  }
  return pairs;
}

/// Where it is linear a byte costs the same in every size, but for what the caches hold; in a list that is
/// gone through once more for each line the largest would be a thousand times as dear.
void Linearity(Table& table) {
  std::map<std::string, std::map<std::size_t, Figures>> shapes;
  std::istringstream lines(
      TextFrom({"sh", "-c", "exec \"$0\" \"$@\" 2>/dev/null", Program("bench_functions"),
                "--benchmark_format=csv", "--benchmark_repetitions=5", "--benchmark_min_time=0.05",
                "--benchmark_enable_random_interleaving=true"}));
  for (std::string line; std::getline(lines, line);) {
    // "HalfKept/10000",iterations,real_time,cpu_time,unit,bytes_per_second,...
    // and behind the runs their mean: "HalfKept/10000_mean",...
    const std::size_t slash = line.find('/');
    if (line.empty() || line[0] != '"' || slash == std::string::npos) continue;
    const std::string size = line.substr(slash + 1, line.find('"', slash) - slash - 1);
    if (size.find_first_not_of("0123456789") != std::string::npos) continue;
    std::istringstream cells(line.substr(line.find("\",") + 2));
    Figures figures;
    for (std::string cell; std::getline(cells, cell, ',');)
      figures.push_back(std::strtod(cell.c_str(), nullptr));
    shapes[line.substr(1, slash - 1)][std::stoul(size)].push_back(1 / figures.at(4));
  }
  table.Ratio("  dearest byte / cheapest, 10 kB to 10 MB, half kept", 2,
              DearestToCheapest(shapes.at("HalfKept")));
  table.Ratio("  dearest byte / cheapest, 10 kB to 10 MB, one line", 2,
              DearestToCheapest(shapes.at("OneLine")));
}

void Scan(Table& table) {
  constexpr int kRows = 100;
  const Words loop = {Program("bench_spawn_loop"), Program("tool/diskutil"), std::to_string(kRows)};
  table.Ratio("scan of 100 rows / its commands in a tight loop", 1.10,
              InTurn(
                  21, [] { return ScanTime(kRows); }, [&] { return NumberFrom(loop); }));
}

/// What a row adds to a scan that finds none, in rounds that take each size in turn.
void CostOfRows(Table& table) {
  constexpr int kRowsARound = 100;  // that a size is scanned for at least
  const auto median = [](int times, int rows) {
    Figures figures;
    for (int i = 0; i < times; ++i) figures.push_back(ScanTime(rows));
    return SpreadOf(figures).median;
  };
  std::map<std::size_t, Figures> costs;
  for (int round = 0; round < 5; ++round) {
    const double none = median(10, 0);
    for (const int rows : {10, 100, 1000, 5000})
      costs[static_cast<std::size_t>(rows)].push_back((median(std::max(1, kRowsARound / rows), rows) - none) /
                                                      rows);
  }
  table.Ratio("dearest row / cheapest, scans of 10, 100, 1000, 5000 rows", 1.25, DearestToCheapest(costs));
}

void Start(Table& table) {
  SetRows(10);
  const auto start = [](const Words& command) {
    const double started = Now();
    return NumberFrom(command) - started;
  };
  const Words ours = {Program("../bin/dravik"), "first-paint"};
  const Words bare = {Program("bench_bare_window"), "first-paint"};
  table.Ratio("start to first picture / bare window", 1.10,
              InTurn(
                  31, [&] { return start(ours); }, [&] { return start(bare); }));
}

void Memory(Table& table) {
  SetRows(10);
  const Words ours = {Program("../bin/dravik"), "memory"};
  const Words bare = {Program("bench_bare_window"), "memory"};
  table.Ratio("memory after the first scan / bare window", 1.15,
              InTurn(
                  5, [&] { return NumberFrom(ours); }, [&] { return NumberFrom(bare); }));
}

void ClicksInAHang(Table& table) {
  SetRows(5);
  setenv("BENCH_HANGS", "disk0s2", 1);
  Figures worst;
  for (int i = 0; i < 5; ++i) worst.push_back(NumberFrom({Program("../bin/dravik"), "clicks"}) * 1e3);
  unsetenv("BENCH_HANGS");
  table.Worst("click while the tool hangs, slowest of 100", 10, "ms", worst);
}

void LargeReports(Table& table) {
  SetRows(1);
  Figures slowest;
  for (int i = 0; i < 5; ++i) {
    Figures shapes;
    for (const char* shape : {"lines", "line", "zeros", "breaks", "bytes"}) {
      setenv("BENCH_REPORT", shape, 1);
      shapes.push_back(NumberFrom({Program("../bin/dravik"), "report"}));
    }
    slowest.push_back(SpreadOf(shapes).maximum);
  }
  unsetenv("BENCH_REPORT");
  table.Worst("report of 10 MB on the screen, slowest of five shapes", 1, "s", slowest);
}

void LinuxDiskutil(Table& table) {
  LinuxTool(table, folder, scratch);
}

struct Part {
  std::string_view name;
  void (*measure)(Table&);
};

constexpr std::array kParts{
    Part{"text", SplitAndFilter},  Part{"linear", Linearity},    Part{"scan", Scan},
    Part{"rows", CostOfRows},      Part{"start", Start},         Part{"memory", Memory},
    Part{"clicks", ClicksInAHang}, Part{"report", LargeReports}, Part{"tool", LinuxDiskutil}};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  folder = fs::canonical("/proc/self/exe").parent_path();
  scratch = argv[1];
  const std::vector<std::string_view> asked(argv + 2, argv + argc);
  for (const std::string_view name : asked) {
    if (std::ranges::find(kParts, name, &Part::name) != kParts.end()) continue;
    std::fputs("There is no such part. The parts are:", stderr);
    for (const Part& part : kParts) std::fprintf(stderr, " %s", part.name.data());
    std::fputs("\n", stderr);
    return 2;
  }
  try {
    Table table;
    for (const Part& part : kParts)
      if (asked.empty() || std::ranges::count(asked, part.name) > 0) part.measure(table);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
  return 0;
}
