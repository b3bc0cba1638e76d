// SPDX-License-Identifier: MIT
#include "apps/discoplan/plot_kinds.h"

#include "apps/discoplan/command.h"

namespace discoplan::app {

std::string PlotKindNames() {
  std::string names;
  for (const ControlClass* kind : ControlClasses()) {
    names += (names.empty() ? "" : ", ") + std::string(kind->kind);
  }
  return names;
}

PlotKinds PlotKindsOf(const std::vector<std::string>& names) {
  PlotKinds kinds;
  for (const std::string& name : names) {
    if (name == "all") {
      kinds.insert(kinds.end(), ControlClasses().begin(), ControlClasses().end());
      continue;
    }
    const ControlClass* kind = FindControlKind(name);
    if (kind == nullptr) {
      throw UsageError("--kind: '" + name + "' is none of " + PlotKindNames() + ", all");
    }
    kinds.push_back(kind);
  }
  return kinds;
}

}  // namespace discoplan::app
