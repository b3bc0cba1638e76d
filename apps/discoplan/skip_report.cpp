// SPDX-License-Identifier: MIT
#include "apps/discoplan/skip_report.h"

#include <numeric>

namespace discoplan::app {
namespace {

struct ReasonText {
  std::string_view one;
  std::string_view several;
};
// In the order of `SkipReason`.
constexpr ReasonText kReasonTexts[] = {
    {"row with too few columns", "rows with too few columns"},
    {"empty value", "empty values"},
    {"text in place of a number", "texts in place of numbers"},
    {"value that is not finite", "values that are not finite"},
};

std::string Clause(const SkippedRows& rows, bool binary) {
  const ReasonText& text = kReasonTexts[static_cast<std::size_t>(rows.reason)];
  return std::to_string(rows.count) + ' ' + std::string(rows.count == 1 ? text.one : text.several) +
         " (first " + (binary ? "at site " : "on line ") + std::to_string(rows.first) + ')';
}

}  // namespace

std::string SkipReport(const std::string& file, const DataResult& result) {
  if (result.skipped.empty()) return {};
  const std::int64_t total =
      std::accumulate(result.skipped.begin(), result.skipped.end(), std::int64_t{0},
                      [](std::int64_t sum, const SkippedRows& rows) { return sum + rows.count; });
  std::string report = Printable(file) + ": left out " +
                       Counted(static_cast<std::size_t>(total), result.binary ? "site" : "row");
  const char* before = ": ";
  for (const SkippedRows& rows : result.skipped) {
    report += before + Clause(rows, result.binary);
    before = ", ";
  }
  return report;
}

}  // namespace discoplan::app
