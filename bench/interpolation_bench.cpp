// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include "bench/bench_wafers.h"
#include "discoplan/core/interpolation/neighbours.h"
#include "discoplan/core/interpolation/site_interpolator.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/core/worker_pool.h"
#include "tests/core/interpolation/plain_search.h"

namespace discoplan::bench {
namespace {

template <class Source>
void QueryLattice(benchmark::State& state, Source&& source, float pitch = 0.97F) {
  const std::vector<Site> points = LatticePoints(pitch);
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

/// As the search is told, step by step.
void InterpolationByPlainSearch(benchmark::State& state) {
  PlainSearch source(RandomSites(static_cast<int>(state.range(0))), kDiameter, kTestDiameter);
  QueryLattice(state, source);
}

/// What is left of a map when nothing has to be searched for.
void WeighKnownNeighbours(benchmark::State& state) {
  const std::vector<Site> sites = RandomSites(static_cast<int>(state.range(0)));
  const NanoflannWafer index(sites);
  std::vector<Site> points = LatticePoints();
  std::vector<NanoflannWafer::Four> known;
  for (const Site& point : points) known.push_back(index.Nearest(point.x, point.y).site);
  for (auto _ : state) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      Site& point = points[i];
      Neighbours nearest;
      std::ranges::transform(known[i], nearest.begin(), [&](std::uint32_t site) {
        return Neighbour{std::sqrt(SquaredDistance(sites[site].x, sites[site].y, point.x, point.y)),
                         static_cast<std::int32_t>(site)};
      });
      point.z = WeightedMean(
          nearest, [&](std::int32_t site) { return sites[static_cast<std::size_t>(site)].z; });
    }
    benchmark::ClobberMemory();
  }
}

void BuildSiteCells(benchmark::State& state) {
  const std::vector<Site> sites = RandomSites(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    SiteCells cells;
    cells.Build(sites, kDiameter / 2.0, static_cast<std::int16_t>(sites.size()));
    benchmark::DoNotOptimize(cells.x.data());
    benchmark::ClobberMemory();
  }
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
    const NanoflannWafer index(sites);
    benchmark::DoNotOptimize(&index);
    benchmark::ClobberMemory();
  }
}

struct Scene {
  const char* name;
  std::vector<Site> (*sites)();
  float pitch;  // of the lattice, in mm
};

/// On the last two, most points are equally far from several dies.
constexpr std::array kScenes = {
    Scene{"49", [] { return RandomSites(49); }, 0.97F},
    Scene{"1000", [] { return RandomSites(1000); }, 0.97F},
    Scene{"32767", [] { return RandomSites(32767); }, 0.97F},
    Scene{"dies10mm", [] { return DieSites(10); }, 0.97F},
    Scene{"dies6mm", [] { return DieSites(6); }, 0.97F},
    Scene{"dies3mm", [] { return DieSites(3); }, 0.97F},
    Scene{"dies10mm-aligned", [] { return DieSites(10); }, 1},
    Scene{"dies3mm-aligned", [] { return DieSites(3); }, 1},
};

constexpr std::array kSearches = {"plain", "portable", "sse2", "avx2", "avx512"};

void LatticeByUs(benchmark::State& state, const Scene& scene, SiteSearch search, int threads) {
  wafer source;
  Load(source, scene.sites());
  if (threads > 1) source.UseWorkers(std::make_shared<WorkerPool>(threads));
  std::vector<Site> points = WholeLattice(scene.pitch);
  for (auto _ : state) {
    SiteInterpolator(source.Data(), search).Evaluate(points, kLatticeColumns);
    benchmark::DoNotOptimize(points.data());
    benchmark::ClobberMemory();
  }
}

void LatticeByNanoflann(benchmark::State& state, const Scene& scene) {
  const std::vector<Site> sites = scene.sites();
  QueryLattice(state, NanoflannWafer(sites), scene.pitch);
}

const bool kRegistered = [] {
  for (const Scene& scene : kScenes) {
    const std::string name = std::string("Lattice/") + scene.name + '/';
    benchmark::RegisterBenchmark((name + "nanoflann").c_str(), LatticeByNanoflann, scene)
        ->Unit(benchmark::kMicrosecond);
    for (const SiteSearch search : SiteSearches()) {
      const char* set = kSearches[static_cast<std::size_t>(search)];
      benchmark::RegisterBenchmark((name + set).c_str(), LatticeByUs, scene, search, 1)
          ->Unit(benchmark::kMicrosecond);
      benchmark::RegisterBenchmark((name + set + "/2").c_str(), LatticeByUs, scene, search, 2)
          ->Unit(benchmark::kMicrosecond)
          ->UseRealTime();
    }
  }
  return true;
}();

BENCHMARK(Interpolation)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK(InterpolationByNanoflann)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK(InterpolationByPlainSearch)
    ->Arg(49)
    ->Arg(1000)
    ->Arg(32767)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(WeighKnownNeighbours)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMicrosecond);
BENCHMARK(BuildSiteCells)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMicrosecond);
BENCHMARK(MaxMin)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMicrosecond);
BENCHMARK(IndexByNanoflann)->Arg(49)->Arg(1000)->Arg(32767)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace discoplan::bench
