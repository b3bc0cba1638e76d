// SPDX-License-Identifier: MIT
#include "data/site_rows.h"

#include <algorithm>
#include <array>
#include <utility>

#include "data/fields.h"
#include "discoplan/base/algorithms.h"

namespace discoplan::data {
namespace {

constexpr std::string_view kMendOrSkip = "mend the value or use --skip-invalid";

std::array<std::size_t, 3> Used(const Columns& columns) {
  return {columns.x, columns.y, columns.value};
}

Reason ReasonFor(NumberFault fault) {
  switch (fault) {
    case NumberFault::Empty:
      return Reason::Empty;
    case NumberFault::Text:
      return Reason::Text;
    default:
      return Reason::NotFinite;
  }
}

Place At(const std::string& file, std::int64_t line, std::size_t column) {
  return {file, line, static_cast<std::int64_t>(column) + 1};
}

}  // namespace

RowShape ShapeOf(const FieldNames& head, Columns columns, std::int64_t line) {
  const std::size_t last_used = MinMax(Used(columns)).second;
  return {columns, std::max({FilledWidth(head), last_used + 1, std::size_t{3}}), head.size(), line};
}

bool IsSite(const std::vector<std::string_view>& fields, const RowShape& shape) {
  return fields.size() >= shape.fewest && FilledWidth(fields) <= shape.most &&
         AllOf(Used(shape.columns), [&](std::size_t column) {
           return ParseNumber(fields[column]).fault == NumberFault::None;
         });
}

void CountSkipped(Reason reason, std::int64_t at, std::vector<SkippedRows>& skipped) {
  auto entry = FindIn(skipped, reason, &SkippedRows::reason);
  if (entry == skipped.end()) entry = skipped.insert(entry, {reason, 0, at});
  ++entry->count;
}

std::string FaultSentence(NumberFault fault, std::string_view text, std::string_view remedy) {
  const auto sentence = [&]() -> std::string {
    switch (fault) {
      case NumberFault::Empty:
        return "the field is empty where a number is due";
      case NumberFault::Text:
        return Shown(text) + " is no number";
      case NumberFault::NotFinite:
        return Shown(text) + " is not finite";
      default:
        return Shown(text) + " is out of a 32-bit float's range";
    }
  };
  return sentence() + "; " + std::string(remedy);
}

SiteRows::SiteRows(std::string file, bool skip_invalid, std::vector<SkippedRows>& skipped)
    : file_(std::move(file)), skip_invalid_(skip_invalid), skipped_(skipped) {}

void SiteRows::Add(const std::vector<std::string_view>& fields, std::int64_t line,
                   const RowShape& shape, Wafer& wafer) {
  if (FilledWidth(fields) > shape.most) {
    throw DataError({file_, line},
                    Counted(FilledWidth(fields), "column") + " where line " +
                        std::to_string(shape.line) + " has " + std::to_string(shape.most) +
                        "; put quotes around a field that holds a separator or a decimal comma");
  }
  if (fields.size() < shape.fewest) {
    if (skip_invalid_) return CountSkipped(Reason::TooFewColumns, line, skipped_);
    throw DataError({file_, line}, Counted(fields.size(), "column") + " where " +
                                       std::to_string(shape.fewest) +
                                       " are due; complete the line or use --skip-invalid");
  }
  const auto used = Used(shape.columns);
  const std::array<ParsedNumber, 3> numbers = {
      ParseNumber(fields[used[0]]), ParseNumber(fields[used[1]]), ParseNumber(fields[used[2]])};
  for (std::size_t i = 0; i < used.size(); ++i) {
    const NumberFault fault = numbers[i].fault;
    if (fault == NumberFault::None) continue;
    if (skip_invalid_) return CountSkipped(ReasonFor(fault), line, skipped_);
    throw DataError(At(file_, line, used[i]), FaultSentence(fault, fields[used[i]], kMendOrSkip));
  }
  for (std::size_t i = 0; i < used.size(); ++i) {
    if (marks_.Knows(numbers[i])) continue;
    marks_.Note(numbers[i], fields[used[i]], At(file_, line, used[i]));
  }
  if (std::ssize(wafer.x) == kMostSites) {
    throw DataError({file_, line}, "a wafer holds at most " + std::to_string(kMostSites) +
                                       " sites; leave out some or split the file");
  }
  wafer.x.push_back(numbers[0].narrowed);
  wafer.y.push_back(numbers[1].narrowed);
  wafer.value.push_back(numbers[2].narrowed);
}

std::optional<double> SiteRows::Number(std::string_view text, std::int64_t line,
                                       std::size_t column) {
  const ParsedNumber number = ParseNumber(text);
  if (number.fault == NumberFault::Empty) return {};
  const Place place = At(file_, line, column);
  if (number.fault != NumberFault::None) {
    throw DataError(place, FaultSentence(number.fault, text, "mend the value or empty the field"));
  }
  marks_.Note(number, text, place);
  return number.value;
}

void SiteRows::RequireSites(const Wafer& wafer, std::int64_t head_line) const {
  if (!wafer.x.empty()) return;
  throw DataError({file_, head_line},
                  "no valid site is left; check the rows and the columns chosen");
}

}  // namespace discoplan::data
