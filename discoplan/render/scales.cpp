// SPDX-License-Identifier: MIT
#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"
#include "discoplan/render/label.h"
#include "discoplan/render/legend_text.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/plot_frame.h"
#include "discoplan/render/value_scale.h"

namespace discoplan {

std::string IntervalLegendText(const wafer& source, std::size_t row) {
  const ValueScale scale = ValueScale::Of(source);
  const double step = (scale.high - scale.low) / wafer::kLegendRows;
  const double above = static_cast<double>(row);
  const std::string upper = wafer::FormatLbl(ToFloat(scale.high - above * step));
  const std::string lower = wafer::FormatLbl(ToFloat(scale.high - (above + 1) * step));
  if (source.HasPlotLimit() && row == 0) return lower + " > ";
  if (source.HasPlotLimit() && row == wafer::kLegendRows - 1) return " < " + upper;
  return lower + " - " + upper;
}

void wafer::scale_colored(LegendLabels chips, LegendLabels rows) const {
  for (std::size_t i = 0; i < kLegendRows; ++i) {
    rows[i]->caption(IntervalLegendText(*this, i));
    chips[i]->BackColor(ToColour(IntervalColor[i]));
  }
}

void wafer::scale_sigma(LegendLabels chips, LegendLabels rows, float sigma_range) const {
  const std::string range = FormatToDigits(sigma_range, "0.0");
  for (std::size_t i = 0; i < kLegendRows; ++i) {
    // Every other row of the first five stays empty, so that the three colours stand apart.
    const bool used = i % 2 == 0 && i / 2 < kRangePrefixes.size();
    if (used) {
      rows[i]->caption(kRangePrefixes[i / 2] + range);
      chips[i]->BackColor(ToColour(AuxColor[i / 2]));
    }
    rows[i]->Visible(used);
    chips[i]->Visible(used);
  }
}

}  // namespace discoplan
