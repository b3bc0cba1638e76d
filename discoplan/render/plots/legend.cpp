// SPDX-License-Identifier: MIT
#include "discoplan/render/plots/legend.h"

#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer_data.h"
#include "discoplan/render/label.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/plots/plot_frame.h"
#include "discoplan/render/plots/value_scale.h"

namespace discoplan {

std::string IntervalLegendText(const WaferData& data, std::size_t row) {
  const ValueScale scale = ValueScale::Of(data);
  const double step = (scale.high - scale.low) / kLegendRows;
  const double above = static_cast<double>(row);
  const std::string upper = FormatLegendValue(ToFloat(scale.high - above * step));
  const std::string lower = FormatLegendValue(ToFloat(scale.high - (above + 1) * step));
  if (data.HasPlotLimit() && row == 0) return lower + " > ";
  if (data.HasPlotLimit() && row == kLegendRows - 1) return " < " + upper;
  return lower + " - " + upper;
}

void ShowIntervalLegend(const WaferData& data, LegendLabels chips, LegendLabels rows) {
  for (std::size_t i = 0; i < kLegendRows; ++i) {
    rows[i]->caption(IntervalLegendText(data, i));
    chips[i]->BackColor(ToColour(data.interval_colours[i]));
  }
}

void ShowSigmaLegend(const WaferData& data, LegendLabels chips, LegendLabels rows,
                     float sigma_range) {
  const std::string range = FormatToDigits(sigma_range, "0.0");
  for (std::size_t i = 0; i < kLegendRows; ++i) {
    // Every other row of the first five stays empty, so that the three colours stand apart.
    const bool used = i % 2 == 0 && i / 2 < kRangePrefixes.size();
    if (used) {
      rows[i]->caption(kRangePrefixes[i / 2] + range);
      chips[i]->BackColor(ToColour(data.aux_colours[i / 2]));
    }
    rows[i]->Visible(used);
    chips[i]->Visible(used);
  }
}

}  // namespace discoplan
