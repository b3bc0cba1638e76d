// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <array>

#include "bench/bench_wafers.h"
#include "bench/discarding_surface.h"
#include "discoplan/base/numbers.h"
#include "discoplan/render/plots/bar_plot.h"
#include "discoplan/render/plots/contour_plot.h"
#include "discoplan/render/plots/histogram_plot.h"
#include "discoplan/render/plots/scan_plot.h"
#include "discoplan/render/plots/surface_plot.h"
#include "hosts/headless/headless_host.h"

namespace discoplan::bench {
namespace {

constexpr float kPixels = 900;
constexpr float kTwips = kPixels * 15;

struct PlotKind {
  const char* name;
  void (*draw)(wafer& source, Surface& surface);
};

/// Each as its control draws it with the settings of a new one.
constexpr std::array kPlotKinds = {
    PlotKind{"D2Plot", [](wafer& w, Surface& s) { w.D2Plot(s, 5, 5, 0, false, {}); }},
    PlotKind{"D2PlotSigma", [](wafer& w, Surface& s) { w.D2Plot(s, 5, 4, 0.5F, false, {}); }},
    PlotKind{"D2Number", [](wafer& w, Surface& s) { w.D2Number(s, {}); }},
    PlotKind{"D2Contour",
             [](wafer& w, Surface& s) { w.D2Contour(s, {.resolution = 2}, {}, [](auto&) {}); }},
    PlotKind{"D3Plot", [](wafer& w, Surface& s) { w.D3Plot(s, {}, 1, 0, false, {}); }},
    PlotKind{"D2BeamPlot", [](wafer& w, Surface& s) { w.D2BeamPlot(s, {}, false, {}); }},
    PlotKind{"Statistic",
             [](wafer& w, Surface& s) {
               w.Statistic(1, s, s, {.width = kPixels - 60, .height = kPixels - 60});
             }},
    PlotKind{"D1Plot", [](wafer& w, Surface& s) { w.D1Plot(s, 88, {.angle = 30}, 0x80, {}); }},
};

void Draw(benchmark::State& state, const PlotKind& kind, Surface& surface) {
  wafer source;
  Load(source, RandomSites(static_cast<int>(state.range(0))));
  for (auto _ : state) kind.draw(source, surface);
}

const bool kRegistered = [] {
  for (const PlotKind& kind : kPlotKinds) {
    const std::string name = kind.name;
    const auto on_discarding_surface = [&kind](benchmark::State& state) {
      DiscardingSurface surface(kPixels);
      Draw(state, kind, surface);
    };
    const auto on_raster = [&kind](benchmark::State& state) {
      HeadlessHost host;
      const auto picture = host.NewPicture(kTwips, kTwips);
      Draw(state, kind, *picture);
    };
    benchmark::RegisterBenchmark((name + "/discarding").c_str(), on_discarding_surface)
        ->Arg(49)
        ->Arg(1000)
        ->Arg(32767)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark((name + "/raster").c_str(), on_raster)
        ->Arg(49)
        ->Arg(1000)
        ->Arg(32767)
        ->Unit(benchmark::kMicrosecond);
  }
  return true;
}();

}  // namespace
}  // namespace discoplan::bench
