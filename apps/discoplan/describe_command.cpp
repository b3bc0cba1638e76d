// SPDX-License-Identifier: MIT
#include "apps/discoplan/command.h"
#include "apps/discoplan/output.h"
#include "discoplan/controls/control_class.h"
#include "hosts/json/class_json.h"
#include "hosts/json/json_text.h"

namespace discoplan::app {
namespace {

/// All classes, or the one of that name.
void Describe(const std::string& name) {
  if (!name.empty() && FindControlClass(name) == nullptr) {
    std::string names;
    for (const ControlClass* kind : ControlClasses()) {
      names += (names.empty() ? " " : ", ") + std::string(kind->name);
    }
    throw UsageError("'" + name + "' is no class; there are" + names);
  }
  const ControlClass* const one = FindControlClass(name);
  const auto classes = one != nullptr ? std::span(&one, 1) : ControlClasses();
  WriteStandardOutput(JsonText(DescribedClasses(classes), 2) + '\n');
}

}  // namespace

void SetUpDescribe(CLI::App& command) {
  auto name = std::make_shared<std::string>();
  command.add_option("CLASS", *name, "One class, such as Plot2D; all if not given");
  command.footer("Example:\n  discoplan describe Plot2D");
  command.callback([name] { Describe(*name); });
}

}  // namespace discoplan::app
