// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include "bench/bench_wafers.h"
#include "discoplan/controls/plot2d.h"
#include "hosts/headless/headless_host.h"

namespace discoplan::bench {
namespace {

/// What a host does again and again with a plot that is drawn. None of it looks at the sites.
template <class Act>
void WithDrawnPlot(benchmark::State& state, Act act) {
  HeadlessHost host;
  Plot2D plot(host);
  plot.InitProperties();
  plot.SetSize(9000, 6000);
  std::vector<float> x, y, value;
  for (const Site& site : RandomSites(static_cast<int>(state.range(0)))) {
    x.push_back(site.x);
    y.push_back(site.y);
    value.push_back(site.z);
  }
  if (plot.SetWaferData(x, y, value) != LoadResult::Loaded || plot.Plot() != PlotResult::Done) {
    return state.SkipWithError("the sites don't load");
  }
  bool odd = false;
  for (auto _ : state) {
    odd = !odd;
    act(plot, odd);
  }
}

void PlotAgain(benchmark::State& state) {
  WithDrawnPlot(state, [](Plot2D& plot, bool) { plot.Plot(); });
}

void SetProperty(benchmark::State& state) {
  WithDrawnPlot(state, [](Plot2D& plot, bool odd) { plot.Resolution(odd ? 4.0F : 5.0F); });
}

void ResizeStretched(benchmark::State& state) {
  WithDrawnPlot(state, [](Plot2D& plot, bool odd) { plot.SetSize(9000, odd ? 6150 : 6000); });
}

BENCHMARK(PlotAgain)->Arg(49)->Arg(32767)->Unit(benchmark::kMicrosecond);
BENCHMARK(SetProperty)->Arg(49)->Arg(32767)->Unit(benchmark::kMicrosecond);
BENCHMARK(ResizeStretched)->Arg(49)->Arg(32767)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace discoplan::bench
