// SPDX-License-Identifier: MIT
#include "apps/discoplan/checks.h"

#include <cmath>
#include <string>

#include "data/plain_text.h"

namespace discoplan::app {
namespace {

CLI::Validator Number(const std::string& takes, bool (*is_right)(float)) {
  return CLI::Validator(
      [=](const std::string& text) -> std::string {
        float number = 0;
        const bool is_number = CLI::detail::lexical_cast(text, number) && std::isfinite(number);
        return is_number && is_right(number) ? "" : "takes " + takes + ", not '" + text + "'";
      },
      "");
}

std::string ComplaintOfName(const std::string& name) {
  return name.empty() ? "takes the name of a file" : "";
}

}  // namespace

CLI::Validator FiniteNumber() {
  return Number("a number that a 32-bit float holds", [](float) { return true; });
}

CLI::Validator PositiveNumber() {
  return Number("a positive number", [](float number) { return number > 0; });
}

CLI::Validator GivenText() {
  return CLI::Validator(
      [](const std::string& text) {
        return std::string(data::Trimmed(text).empty() ? "takes a text that isn't empty" : "");
      },
      "");
}

CLI::Validator FileName() { return CLI::Validator(ComplaintOfName, ""); }

CLI::Validator InputFile() {
  return FileName().operation([](std::string& name) {
    if (name == "-") name = "/dev/stdin";
    return ComplaintOfName(name);
  });
}

}  // namespace discoplan::app
