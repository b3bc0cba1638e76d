// SPDX-License-Identifier: MIT
#include "discoplan/core/numbers.h"
#include "discoplan/core/wafer.h"
#include "discoplan/render/label.h"
#include "discoplan/render/number_text.h"
#include "discoplan/render/plot_frame.h"
#include "discoplan/render/value_scale.h"

namespace discoplan {

void wafer::scale_colored(std::span<Label* const> chips, std::span<Label* const> rows) const {
  const ValueScale scale = ValueScale::Of(*this);
  const double step = (scale.high - scale.low) / kLegendRows;
  for (std::size_t i = 0; i < kLegendRows; ++i) {
    const double above = static_cast<double>(i);
    const std::string upper = FormatLbl(ToFloat(scale.high - above * step));
    const std::string lower = FormatLbl(ToFloat(scale.high - (above + 1) * step));
    rows[i]->caption(lower + " - " + upper);
    if (HasPlotLimit() && i == 0) rows[i]->caption(lower + " > ");
    if (HasPlotLimit() && i == kLegendRows - 1) rows[i]->caption(" < " + upper);
    chips[i]->BackColor(ToColour(IntervalColor[i]));
  }
}

void wafer::scale_sigma(std::span<Label* const> chips, std::span<Label* const> rows,
                        float sigma_range) const {
  constexpr std::array<const char*, 3> kPrefixes = {">   ", "+-  ", "< - "};
  const std::string range = FormatToDigits(sigma_range, "0.0");
  for (std::size_t i = 0; i < kLegendRows; ++i) {
    // Every other row of the first five stays empty, so that the three colours stand apart.
    const bool used = i % 2 == 0 && i / 2 < kPrefixes.size();
    if (used) {
      rows[i]->caption(kPrefixes[i / 2] + range);
      chips[i]->BackColor(ToColour(AuxColor[i / 2]));
    }
    rows[i]->Visible(used);
    chips[i]->Visible(used);
  }
}

}  // namespace discoplan
