// SPDX-License-Identifier: MIT
#include "apps/discoplan/checks.h"

#include <cmath>
#include <string>

namespace discoplan::app {
namespace {

bool IsFinite(const std::string& text, float& number) {
  return CLI::detail::lexical_cast(text, number) && std::isfinite(number);
}

}  // namespace

CLI::Validator FiniteNumber() {
  return CLI::Validator(
      [](const std::string& text) -> std::string {
        float number = 0;
        return IsFinite(text, number)
                   ? ""
                   : "takes a number that a 32-bit float holds, not '" + text + "'";
      },
      "");
}

CLI::Validator PositiveNumber() {
  return CLI::Validator(
      [](const std::string& text) -> std::string {
        float number = 0;
        return IsFinite(text, number) && number > 0 ? ""
                                                    : "takes a positive number, not '" + text + "'";
      },
      "");
}

CLI::Validator FileName() {
  return CLI::Validator(
      [](const std::string& name) -> std::string {
        return name.empty() ? "takes the name of a file" : "";
      },
      "");
}

CLI::Validator InputFile() {
  return FileName().operation([](std::string& name) -> std::string {
    if (name == "-") name = "/dev/stdin";
    return name.empty() ? "takes the name of a file" : "";
  });
}

}  // namespace discoplan::app
