// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/export.h"

namespace discoplan {

/// Limits of the process, in the unit of the values. Upright histograms mark them while `shown`.
struct ControlLimits {
  bool shown = false;
  float lower = 0;
  float upper = 0;
};

/// The one set that all histograms of the calling thread show.
DISCOPLAN_EXPORT ControlLimits& ThreadControlLimits();

}  // namespace discoplan
