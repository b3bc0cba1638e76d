// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include "bench/bench_wafers.h"

namespace discoplan::bench {
namespace {

template <class Source>
void QueryLattice(benchmark::State& state, const Source& source) {
  const std::vector<Site> points = LatticePoints();
  for (auto _ : state) {
    float sum = 0;
    for (const Site& point : points) sum += source.Interpolation(point.x, point.y);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points.size()));
}

void Interpolation(benchmark::State& state) {
  wafer source;
  Load(source, RandomSites(static_cast<int>(state.range(0))));
  QueryLattice(state, source);
}

void InterpolationByNanoflann(benchmark::State& state) {
  const std::vector<Site> sites = RandomSites(static_cast<int>(state.range(0)));
  QueryLattice(state, NanoflannWafer(sites));
}

/// Statistics and site cells together, as at the end of each load.
void MaxMin(benchmark::State& state) {
  wafer source;
  Load(source, RandomSites(static_cast<int>(state.range(0))));
  for (auto _ : state) source.MaxMin();
}

void IndexByNanoflann(benchmark::State& state) {
  const std::vector<Site> sites = RandomSites(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    const NanoflannWafer source(sites);
    benchmark::DoNotOptimize(&source);
  }
}

BENCHMARK(Interpolation)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK(InterpolationByNanoflann)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK(MaxMin)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMicrosecond);
BENCHMARK(IndexByNanoflann)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace discoplan::bench
