// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/histogram_bins.h"

#include <algorithm>

#include "discoplan/base/algorithms.h"
#include "discoplan/base/numbers.h"

namespace discoplan {

HistogramBins HistogramBins::Of(const WaferData& data, float bins) {
  HistogramBins result;
  result.lower = data.plot_minimum;
  if (data.plot_maximum == data.plot_minimum) {
    Attempt([&] {
      result.lower = ToFloat(FloorUnderConstant(data.plot_minimum, data.plot_minimum < 0));
    });
  }
  Attempt([&] {
    result.width = ToFloat(Divide(static_cast<double>(data.plot_maximum) - result.lower, bins));
  });
  if (data.count < kFewestSites) return result;
  Attempt([&] {
    const std::int16_t last = ToInt16(bins);
    if (last < 0) numbers_detail::Raise(Fault::Subscript);
    result.counts.resize(static_cast<std::size_t>(last) + 1);
  });
  result.Count(data);
  return result;
}

void HistogramBins::Count(const WaferData& data) {
  if (counts.size() < 2) return;
  const std::size_t last = counts.size() - 1;
  const auto inner_bin = [&](float z) {
    const std::int16_t bin = ToInt16(Divide(static_cast<double>(z) - lower, width) + 0.5);
    if (bin < 1) numbers_detail::Raise(Fault::Subscript);
    return static_cast<std::size_t>(bin);
  };
  for (const Site& site : data.sites) {
    if (site.z < lower || site.z > data.plot_maximum) continue;
    Attempt([&] {
      const std::size_t bin = site.z == lower               ? 1
                              : site.z == data.plot_maximum ? last
                                                            : inner_bin(site.z);
      if (bin <= last) ++counts[bin];
    });
  }
}

std::int16_t HistogramBins::Peak() const {
  return counts.empty() ? std::int16_t{0} : *MaxElement(counts);
}

}  // namespace discoplan
