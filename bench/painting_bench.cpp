// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <cstring>

#include "bench/painted_scene.h"
#include "hosts/headless/headless_host.h"

namespace discoplan::bench {
namespace {

constexpr float kTwipsPerPixel = 15;
constexpr std::int16_t kNoOutline = 5;

void Paint(benchmark::State& state, const std::vector<PaintedCell>& cells,
           std::int16_t draw_style) {
  HeadlessHost host;
  const auto picture = host.NewPicture(kSide * kTwipsPerPixel, kSide * kTwipsPerPixel);
  Surface& surface = *picture;
  surface.FillStyle(0);
  surface.DrawStyle(draw_style);
  for (auto _ : state) {
    for (const PaintedCell& cell : cells) {
      surface.FillColor(cell.colour);
      surface.Polygon(cell.corners);
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(cells.size()));
}

void MapCellsOnRaster(benchmark::State& state) { Paint(state, MapCells(), kNoOutline); }

void FacesOnRaster(benchmark::State& state) {
  Paint(state, SurfaceFaces(static_cast<float>(state.range(0))), 0);
}

void ClearByMemset(benchmark::State& state) {
  Canvas canvas(kSide, kSide, 0);
  for (auto _ : state) {
    std::memset(canvas.Pixels().data(), 0xFF, canvas.Pixels().size_bytes());
    benchmark::ClobberMemory();
  }
}

BENCHMARK(MapCellsOnRaster)->Unit(benchmark::kMicrosecond);
BENCHMARK(FacesOnRaster)->Arg(5)->Arg(2)->Unit(benchmark::kMicrosecond);
BENCHMARK(ClearByMemset)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace discoplan::bench
