// SPDX-License-Identifier: MIT
#include "data/left_out.h"

#include <algorithm>
#include <string_view>

#include "data/plain_text.h"

namespace discoplan::data {
namespace {

struct ReasonText {
  std::string_view one;
  std::string_view several;
};
// In the order of `Reason`.
constexpr ReasonText kReasonTexts[] = {
    {"row with too few columns", "rows with too few columns"},
    {"empty value", "empty values"},
    {"text in place of a number", "texts in place of numbers"},
    {"value that is not finite", "values that are not finite"},
    {"not asked for", "not asked for"},
    {"beyond", "beyond"},
    {"outlier", "outliers"},
    {"thinned out", "thinned out"},
    {"row that begins with '#'", "rows that begin with '#'"},
};

template <typename Count>
std::string Clause(const Count& count) {
  const ReasonText& text = kReasonTexts[static_cast<std::size_t>(count.reason)];
  return std::to_string(count.count) + ' ' +
         std::string(count.count == 1 ? text.one : text.several);
}

}  // namespace

std::string SkipReport(const Lot& lot) {
  if (lot.skipped.empty()) return {};
  const bool binary = lot.kind == FileKind::Binary;
  std::int64_t total = 0;
  for (const SkippedRows& rows : lot.skipped) total += rows.count;
  std::string report = Printable(lot.source) + ": left out " +
                       Counted(static_cast<std::size_t>(total), binary ? "site" : "row");
  const char* before = ": ";
  for (const SkippedRows& rows : lot.skipped) {
    report += before + Clause(rows) + " (first " + (binary ? "at site " : "on line ") +
              std::to_string(rows.first) + ')';
    before = ", ";
  }
  return report;
}

std::string SitesSentence(const Wafer& wafer) {
  if (wafer.left_out.empty()) return Counted(wafer.x.size(), "site");
  std::string sentence = std::to_string(wafer.x.size()) + " of " +
                         Counted(static_cast<std::size_t>(wafer.Measured()), "site");
  const char* before = "; ";
  for (const LeftOut& part : wafer.left_out) {
    sentence += before + Clause(part);
    if (part.reason == Reason::Beyond)
      sentence += ' ' + LengthText(static_cast<double>(wafer.test_diameter) / 2) + " mm";
    before = ", ";
  }
  return sentence;
}

void Count(Reason reason, std::vector<LeftOut>& left_out, std::int64_t count) {
  if (count == 0) return;
  auto place = std::find_if(left_out.begin(), left_out.end(),
                            [&](const LeftOut& part) { return part.reason >= reason; });
  if (place == left_out.end() || place->reason != reason) {
    place = left_out.insert(place, {reason, 0});
  }
  place->count += count;
}

}  // namespace discoplan::data
