// SPDX-License-Identifier: MIT
#include "discoplan/render/histogram_bins.h"

#include <algorithm>

#include "discoplan/base/numbers.h"

namespace discoplan {

HistogramBins HistogramBins::Of(const wafer& source, float bins) {
  HistogramBins result;
  result.lower = source.PlotMinimum;
  if (source.PlotMaximum == source.PlotMinimum) {
    Attempt([&] {
      result.lower = ToFloat(FloorUnderConstant(source.PlotMinimum, source.PlotMinimum < 0));
    });
  }
  Attempt([&] {
    result.width = ToFloat(Divide(static_cast<double>(source.PlotMaximum) - result.lower, bins));
  });
  if (source.GetNop() < kFewestSites) return result;
  Attempt([&] {
    const std::int16_t last = ToInt16(bins);
    if (last < 0) numbers_detail::Raise(Fault::Subscript);
    result.counts.resize(static_cast<std::size_t>(last) + 1);
  });
  result.Count(source);
  return result;
}

void HistogramBins::Count(const wafer& source) {
  if (counts.size() < 2) return;
  const std::size_t last = counts.size() - 1;
  const auto inner_bin = [&](float z) {
    const std::int16_t bin = ToInt16(Divide(static_cast<double>(z) - lower, width) + 0.5);
    if (bin < 1) numbers_detail::Raise(Fault::Subscript);
    return static_cast<std::size_t>(bin);
  };
  for (const Site& site : source.Sites()) {
    if (site.z < lower || site.z > source.PlotMaximum) continue;
    Attempt([&] {
      const std::size_t bin = site.z == lower                ? 1
                              : site.z == source.PlotMaximum ? last
                                                             : inner_bin(site.z);
      if (bin <= last) ++counts[bin];
    });
  }
}

std::int16_t HistogramBins::Peak() const {
  return counts.empty() ? std::int16_t{0} : *std::ranges::max_element(counts);
}

}  // namespace discoplan
