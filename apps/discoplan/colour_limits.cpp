// SPDX-License-Identifier: MIT
#include "apps/discoplan/colour_limits.h"

#include "apps/discoplan/checks.h"
#include "apps/discoplan/command.h"
#include "data/exclusions.h"
#include "discoplan/base/numbers.h"
#include "discoplan/render/number_text.h"

namespace discoplan::app {
namespace {

/// "9.5" or, as a part of the values, "1%".
struct Limit {
  double number = 0;
  bool is_percent = false;
};

Limit LimitIn(std::string text) {
  Limit limit;
  limit.is_percent = text.ends_with('%');
  if (limit.is_percent) text.pop_back();
  CLI::detail::lexical_cast(text, limit.number);
  return limit;
}

CLI::Validator LimitText() {
  return CLI::Validator(
      [](std::string& text) -> std::string {
        const Limit limit = LimitIn(text);
        if (!limit.is_percent) return FiniteNumber()(text);
        std::string number = text.substr(0, text.size() - 1);
        const bool fits =
            FiniteNumber()(number).empty() && limit.number >= 0 && limit.number <= 100;
        return fits ? "" : "takes a percentage from 0% to 100%, not '" + text + "'";
      },
      "");
}

ColourLimits LimitsIn(const std::vector<std::string>& texts) {
  const Limit low = LimitIn(texts[0]);
  const Limit high = LimitIn(texts[1]);
  if (low.is_percent != high.is_percent) {
    throw UsageError("--limits takes two numbers or two percentages, as in --limits 1% 99%");
  }
  if (!(low.number < high.number)) throw UsageError("--limits takes LOW HIGH with LOW below HIGH");
  const ColourLimits limits = {low.number, high.number, low.is_percent};
  if (limits.in_percent) return limits;
  const double from = ToFloat(limits.low);
  const double to = ToFloat(limits.high);
  if (!(from < to)) throw UsageError("--limits takes LOW HIGH with LOW below HIGH");
  const bool fits = Attempt([&] {
    ToFloat(to - from);
    ToFloat(to + from);
  });
  if (!fits) throw UsageError("--limits are too large for 32-bit floats; scale the values");
  return limits;
}

}  // namespace

void AddLimitsOption(CLI::App& command, std::optional<ColourLimits>& limits,
                     const std::string& meaning) {
  command
      .add_option_function<std::vector<std::string>>(
          "--limits",
          [&limits](const std::vector<std::string>& texts) { limits = LimitsIn(texts); }, meaning)
      ->expected(2)
      ->check(LimitText())
      ->type_name("LOW HIGH");
}

std::pair<float, float> EndsOf(const ColourLimits& limits, const std::string& source,
                               std::vector<float> values) {
  if (!limits.in_percent) return {ToFloat(limits.low), ToFloat(limits.high)};
  const float low = ToFloat(data::Quantile(values, limits.low / 100));
  const float high = ToFloat(data::Quantile(std::move(values), limits.high / 100));
  if (low < high) return {low, high};
  throw CommandError(source + ": all values between these --limits are " + PlainNumber(low) +
                     "; give percentages farther apart, or numbers");
}

}  // namespace discoplan::app
