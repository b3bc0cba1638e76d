// SPDX-License-Identifier: MIT
#include "discoplan/render/control_limits.h"

namespace discoplan {

ControlLimits& ThreadControlLimits() {
  thread_local ControlLimits limits;
  return limits;
}

}  // namespace discoplan
