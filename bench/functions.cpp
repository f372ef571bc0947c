#include <benchmark/benchmark.h>

#include "bench/ListText.h"
#include "disktool/scanTheBus.h"

// Cost a byte of splitting and filtering, from lists as tools print them to lists no tool prints.

namespace {

void Run(benchmark::State& state, const std::string& printed) {
  const String text(printed);
  for (auto _ : state) {
    const auto lines = New<Listbox>();
    SplitIntoLines(text, *lines);
    KeepPlainHfs(*lines);
    benchmark::DoNotOptimize(lines->ListCount());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(printed.size()));
}

/// Every second line is kept.
void HalfKept(benchmark::State& state) {
  Run(state, ListOfBytes(static_cast<std::size_t>(state.range(0))));
}
BENCHMARK(HalfKept)->RangeMultiplier(10)->Range(10'000, 10'000'000);

/// All of it is one line.
void OneLine(benchmark::State& state) {
  Run(state, "Apple_HFS" + std::string(static_cast<std::size_t>(state.range(0)) - 10, 'x') + "\n");
}
BENCHMARK(OneLine)->RangeMultiplier(10)->Range(10'000, 10'000'000);

}  // namespace

BENCHMARK_MAIN();
