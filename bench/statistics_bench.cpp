// SPDX-License-Identifier: MIT
// All figures of merit of one wafer.

#include <benchmark/benchmark.h>

#include <vector>

#include "bench/bench_wafers.h"
#include "discoplan/analysis/figures_of_merit.h"

namespace discoplan::bench {
namespace {

void AllFigures(benchmark::State& state) {
  const std::vector<Site> sites = RandomSites(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    const analysis::Sample sample{std::span<const Site>(sites)};
    for (const analysis::FigureOfMerit& figure : analysis::FiguresOfMerit()) {
      benchmark::DoNotOptimize(figure.compute(sample));
    }
  }
}
BENCHMARK(AllFigures)->Arg(49)->Arg(2000)->Arg(5000)->Arg(30000)->Unit(benchmark::kMicrosecond);

void OneFigure(benchmark::State& state, const char* key) {
  const std::vector<Site> sites = RandomSites(2000);
  const analysis::Sample sample{std::span<const Site>(sites)};
  const analysis::FigureOfMerit& figure = *analysis::FindFigure(key);
  for (auto _ : state) benchmark::DoNotOptimize(figure.compute(sample));
}
BENCHMARK_CAPTURE(OneFigure, mad, "mad")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(OneFigure, tilt, "tilt")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(OneFigure, interpolation_error, "interpolation_error")
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace discoplan::bench
