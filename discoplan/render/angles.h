// SPDX-License-Identifier: MIT
#pragma once

#include "discoplan/core/wafer.h"

namespace discoplan {

inline double Radians(double degrees) { return degrees * wafer::kPi / 180; }

}  // namespace discoplan
