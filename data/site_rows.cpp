// SPDX-License-Identifier: MIT
#include "data/site_rows.h"

#include <algorithm>
#include <array>
#include <utility>

#include "data/exclusions.h"
#include "data/fields.h"
#include "data/left_out.h"
#include "discoplan/base/numbers.h"

namespace discoplan::data {
namespace {

constexpr std::string_view kMendOrSkip = "mend the value or use --skip-invalid";

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

/// False if the position doesn't fit.
bool PlaceAt(double first, double second, const PositionScale& scale, Site& site) {
  const Position placed = InMillimetres(first, second, scale);
  return Narrow(placed.x, site.x) && Narrow(placed.y, site.y);
}

Place At(const std::string& file, std::int64_t line, std::size_t column) {
  return {file, line, static_cast<std::int64_t>(column) + 1};
}

}  // namespace

RowShape ShapeOf(const FieldNames& head, Columns columns, std::int64_t line) {
  std::size_t last_used = std::max(columns.x, columns.y);
  for (const std::size_t column : columns.values) last_used = std::max(last_used, column);
  const std::size_t fewest = std::max({FilledWidth(head), last_used + 1, std::size_t{3}});
  return {std::move(columns), {}, fewest, head.size(), line, SiteCounts(head)};
}

bool IsSite(const std::vector<std::string_view>& fields, const RowShape& shape) {
  const auto is_number = [&](std::size_t column) {
    return ParseNumber(fields[column]).fault == NumberFault::None;
  };
  const Columns& columns = shape.columns;
  return fields.size() >= shape.fewest && FilledWidth(fields) <= shape.most &&
         is_number(columns.x) && is_number(columns.y) &&
         std::all_of(columns.values.begin(), columns.values.end(), is_number);
}

void CountSkipped(Reason reason, std::int64_t at, std::vector<SkippedRows>& skipped) {
  auto entry = std::find_if(skipped.begin(), skipped.end(),
                            [&](const SkippedRows& rows) { return rows.reason == reason; });
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

std::string TooManySites(std::int64_t most) {
  return "a wafer holds at most " + std::to_string(most) +
         " sites; use --thin for a regular subset of them, or split the file";
}

SiteRows::SiteRows(std::string file, const ReadRequest& request, std::vector<SkippedRows>& skipped)
    : file_(std::move(file)), skip_invalid_(request.skip_invalid), skipped_(skipped) {
  if (!LeavesOut(request)) most_ = request.most_sites;
}

bool SiteRows::HasFilledWidth(const std::vector<std::string_view>& fields, std::int64_t line,
                              const RowShape& shape) {
  if (FilledWidth(fields) > shape.most) {
    throw DataError({file_, line},
                    Counted(FilledWidth(fields), "column") + " where line " +
                        std::to_string(shape.line) + " has " + std::to_string(shape.most) +
                        "; put quotes around a field that holds a separator or a decimal comma");
  }
  if (fields.size() >= shape.fewest) return true;
  if (!skip_invalid_) {
    throw DataError({file_, line}, Counted(fields.size(), "column") + " where " +
                                       std::to_string(shape.fewest) +
                                       " are due; complete the line or use --skip-invalid");
  }
  CountSkipped(Reason::TooFewColumns, line, skipped_);
  return false;
}

bool SiteRows::HasKeys(const std::vector<std::string_view>& fields, std::int64_t line,
                       const std::vector<std::size_t>& keys, const Condition& condition) {
  const auto is_empty = [&](std::size_t key) {
    return key >= fields.size() || fields[key].empty();
  };
  const auto key = std::find_if(keys.begin(), keys.end(), is_empty);
  if (key == keys.end()) return true;
  Condition::Fault fault;
  if (!condition.Holds(fields, fault) && fault.fault == NumberFault::None) return false;
  if (!skip_invalid_) {
    throw DataError(At(file_, line, *key),
                    "the field is empty where the name of a wafer is due; if one cell names the "
                    "rows below it, unmerge it and fill it down, or else use --skip-invalid");
  }
  CountSkipped(Reason::Empty, line, skipped_);
  return false;
}

void SiteRows::Fail(NumberFault fault, std::string_view text, std::int64_t line, std::size_t column,
                    std::span<Wafer> wafers) {
  if (!skip_invalid_) {
    throw DataError(At(file_, line, column), FaultSentence(fault, text, kMendOrSkip));
  }
  CountSkipped(ReasonFor(fault), line, skipped_);
  for (Wafer& wafer : wafers) Count(ReasonFor(fault), wafer.left_out);
}

bool SiteRows::Meets(const Condition& condition, const std::vector<std::string_view>& fields,
                     std::int64_t line, std::span<Wafer> wafers) {
  Condition::Fault fault;
  if (condition.Holds(fields, fault)) return true;
  if (fault.fault == NumberFault::None) {
    for (Wafer& wafer : wafers) Count(Reason::NotAskedFor, wafer.left_out);
  } else {
    const std::string_view text = fault.column < fields.size() ? fields[fault.column] : "";
    Fail(fault.fault, text, line, fault.column, wafers);
  }
  return false;
}

bool SiteRows::SumsUp(const std::vector<std::string_view>& fields, std::int64_t line,
                      const RowShape& shape, std::span<Wafer> wafers) {
  static constexpr std::string_view kWords[] = {"mean",  "av",     "std", "min", "max",  "range",
                                                "sigma", "median", "sum", "tot", "unif", "3 s"};
  for (const std::size_t column : shape.counts) {
    const std::string_view text = column < fields.size() ? fields[column] : "";
    if (text.empty() || (text.front() >= '0' && text.front() <= '9')) continue;
    const bool sums_up = std::any_of(
        std::begin(kWords), std::end(kWords),
        [&](std::string_view word) { return SameName(text.substr(0, word.size()), word); });
    if (!sums_up) continue;
    Fail(NumberFault::Text, text, line, column, wafers);
    return true;
  }
  return false;
}

inline float SiteRows::Narrowed(std::size_t parameter, double value) {
  if (parameter >= narrowings_.size()) narrowings_.resize(parameter + 1);
  const auto narrowed = static_cast<float>(value);
  narrowings_[parameter].Take(value, narrowed);
  return narrowed;
}

inline void SiteRows::Append(const Site& site, std::int64_t line, Wafer& wafer) const {
  if (most_ && std::ssize(wafer.x) >= *most_) {
    throw DataError({file_, line}, TooManySites(*most_));
  }
  wafer.x.push_back(site.x);
  wafer.y.push_back(site.y);
  wafer.value.push_back(site.z);
}

bool SiteRows::Add(const std::vector<std::string_view>& fields, std::int64_t line,
                   const RowShape& shape, const Condition& condition, std::span<Wafer> wafers) {
  if (condition.IsGiven() && !Meets(condition, fields, line, wafers)) return false;
  if (!shape.counts.empty() && SumsUp(fields, line, shape, wafers)) return false;
  const Columns& columns = shape.columns;
  const std::array<std::size_t, 2> places = {columns.x, columns.y};
  const std::array<ParsedNumber, 2> numbers = {ParseNumber(fields[columns.x]),
                                               ParseNumber(fields[columns.y])};
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (numbers[i].fault == NumberFault::None) continue;
    Fail(numbers[i].fault, fields[places[i]], line, places[i], wafers);
    return false;
  }
  Site site;
  if (!PlaceAt(numbers[0].value, numbers[1].value, shape.scale, site)) {
    Fail(NumberFault::OutOfRange, fields[places[0]], line, places[0], wafers);
    return false;
  }
  for (std::size_t i = 0; i < places.size(); ++i) {
    Note(numbers[i], fields[places[i]], line, places[i]);
  }
  bool added = false;
  for (std::size_t i = 0; i < wafers.size(); ++i) {
    const std::size_t column = columns.values[i];
    const ParsedNumber value = ParseNumber(fields[column]);
    if (value.fault != NumberFault::None) {
      Fail(value.fault, fields[column], line, column, wafers.subspan(i, 1));
      continue;
    }
    Note(value, fields[column], line, column);
    site.z = Narrowed(i, value.value);
    Append(site, line, wafers[i]);
    added = true;
  }
  return added;
}

bool SiteRows::AddPlain(std::span<const double> numbers, std::int64_t line, const RowShape& shape,
                        std::span<Wafer> wafers) {
  Site site;
  if (!PlaceAt(numbers[0], numbers[1], shape.scale, site)) return false;
  for (std::size_t i = 0; i < wafers.size(); ++i) {
    site.z = Narrowed(i, numbers[2 + i]);
    Append(site, line, wafers[i]);
  }
  return true;
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

void Narrowing::Tell(std::size_t parameter, Lot& lot) const {
  std::size_t count = 0;
  for (const Wafer& wafer : lot.Of(parameter)) count += wafer.value.size();
  if (10 * same_ <= count) return;
  lot.warnings.push_back(std::to_string(same_) + " of " + Counted(count, "value") + " of " +
                         Shown(lot.parameters[parameter].name) +
                         " are the same as the one before when rounded to a 32-bit float, and "
                         "differ in the file; subtract an offset from all of them");
}

void SiteRows::TellNarrowing(Lot& lot) const {
  for (std::size_t i = 0; i < narrowings_.size(); ++i) narrowings_[i].Tell(i, lot);
}

void SiteRows::RequireSites(std::span<const Wafer> wafers, std::int64_t head_line) const {
  for (const Wafer& wafer : wafers) {
    if (!wafer.x.empty()) return;
  }
  for (const SkippedRows& rows : skipped_) {
    if (rows.reason != Reason::Commented) continue;
    throw DataError({file_, rows.first},
                    Counted(static_cast<std::size_t>(rows.count), "row") +
                        (rows.count == 1 ? " begins" : " begin") +
                        " with '#', as comments do, and no other site is left; take it away");
  }
  throw DataError({file_, head_line},
                  "no valid site is left; check the rows and the columns chosen");
}

}  // namespace discoplan::data
