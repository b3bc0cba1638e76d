// SPDX-License-Identifier: MIT
#include <algorithm>

#include "discoplan/controls/plot_control.h"

namespace discoplan {

const std::array<PlotControl::ColourSlot, 10> PlotControl::kIntervalSlots = {{
    {"IntervalColor1", false, 1},
    {"IntervalColor2", false, 2},
    {"IntervalColor3", false, 3},
    {"IntervalColor4", false, 4},
    {"IntervalColor5", false, 5},
    {"IntervalColor6", false, 6},
    {"IntervalColor7", false, 7},
    {"IntervalColor8", false, 8},
    {"IntervalColor9", false, 9},
    {"IntervalColor0", false, 0},
}};

const PlotControl::ColourSlot& PlotControl::IntervalSlot(std::size_t interval) {
  const auto found = std::ranges::find(kIntervalSlots, interval, &ColourSlot::index);
  if (found == kIntervalSlots.end()) numbers_detail::Raise(Fault::Subscript);
  return *found;
}

}  // namespace discoplan
