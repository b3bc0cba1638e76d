// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include "bench/bench_wafers.h"
#include "bench/discarding_surface.h"
#include "hosts/headless/headless_host.h"

namespace discoplan::bench {
namespace {

constexpr float kPixels = 900;
constexpr double kResolution = 0.97;  // mm: 200 x 200 cells

void Draw(benchmark::State& state, Surface& surface) {
  wafer source;
  Load(source, RandomSites(static_cast<int>(state.range(0))));
  for (auto _ : state) source.D2Plot(surface, kResolution, 5, 0, false, {});
}

void MapOnDiscardingSurface(benchmark::State& state) {
  DiscardingSurface surface(kPixels);
  Draw(state, surface);
}

void MapOnRaster(benchmark::State& state) {
  HeadlessHost host;
  const auto picture = host.NewPicture(kPixels * 15, kPixels * 15);
  Draw(state, *picture);
}

/// The same lattice by nanoflann's four nearest and the same weighting, without any drawing.
void MapByNanoflann(benchmark::State& state) {
  const std::vector<Site> sites = RandomSites(static_cast<int>(state.range(0)));
  const NanoflannWafer source(sites);
  const std::vector<Site> points = LatticePoints();
  for (auto _ : state) {
    float sum = 0;
    for (const Site& point : points) sum += source.Interpolation(point.x, point.y);
    benchmark::DoNotOptimize(sum);
  }
}

BENCHMARK(MapOnDiscardingSurface)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK(MapOnRaster)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK(MapByNanoflann)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace discoplan::bench
