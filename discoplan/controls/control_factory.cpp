// SPDX-License-Identifier: MIT
#include "discoplan/controls/control_factory.h"

namespace discoplan {

std::unique_ptr<PlotControl> NewControl(std::string_view class_name, Platform& platform,
                                        Container* container) {
  const ControlClass* found = FindControlClass(class_name);
  return found == nullptr ? nullptr : found->make(platform, container);
}

}  // namespace discoplan
