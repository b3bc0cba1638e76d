// SPDX-License-Identifier: MIT
#include "bindings/c/describe.h"

#include "hosts/json/class_json.h"
#include "hosts/json/json_text.h"

namespace discoplan::c {

std::string DescribedClasses() {
  return JsonText(discoplan::DescribedClasses(ControlClasses(), Aliases::Told));
}

}  // namespace discoplan::c
