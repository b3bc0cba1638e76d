// SPDX-License-Identifier: MIT
#include "data/columns.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <span>

#include "data/fields.h"
#include "data/units.h"
#include "data/utf16.h"

namespace discoplan::data {
namespace {

using Names = std::span<const std::string_view>;

constexpr std::string_view kXNames[] = {"x",     "xpos",  "x pos",      "x_pos",
                                        "pos x", "pos_x", "x position", "x coordinate",
                                        "die x", "die_x", "diex",       "x index"};
constexpr std::string_view kYNames[] = {"y",     "ypos",  "y pos",      "y_pos",
                                        "pos y", "pos_y", "y position", "y coordinate",
                                        "die y", "die_y", "diey",       "y index"};
constexpr std::string_view kRadiusNames[] = {"r", "radius", "rho"};
constexpr std::string_view kAngleNames[] = {"theta",   "angle",    "phi",
                                            "azimuth", "\xCE\xB8", "\xCF\x86"};
constexpr std::string_view kValueNames[] = {"value", "z", "thickness", "measurement", "result"};
constexpr std::string_view kSiteNames[] = {"site", "site #", "site no", "site number",
                                           "#",    "no",     "point",   "index"};
constexpr std::string_view kWaferNames[] = {
    "slot",    "slot #",       "slot no",  "slot_no",  "slot id",  "slot number",
    "wafer",   "wafer #",      "wafer no", "wafer_no", "wafer id", "wafer_id",
    "waferid", "wafer number", "lot",      "lot id",   "lot_id",   "lotid"};

bool IsAmong(std::string_view heading, Names usual) {
  const std::string_view name = SplitHeading(heading).name;
  return std::any_of(usual.begin(), usual.end(),
                     [&](std::string_view u) { return SameName(name, u) || SameName(heading, u); });
}

std::vector<std::size_t> Matches(const FieldNames& names,
                                 const std::function<bool(std::string_view)>& matches) {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (matches(names[i])) found.push_back(i);
  }
  return found;
}

/// By the whole heading or else without its unit.
std::vector<std::size_t> Named(std::string_view entry, const FieldNames& names) {
  const std::string text = Utf8(entry);
  auto found = Matches(names, [&](std::string_view name) { return SameName(Utf8(name), text); });
  if (!found.empty()) return found;
  return Matches(
      names, [&](std::string_view name) { return SameName(Utf8(SplitHeading(name).name), text); });
}

bool IsColumnNumber(std::string_view entry) {
  return !entry.empty() && entry.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string AllColumns(const FieldNames& names) {
  std::vector<std::string> shown;
  for (const std::string_view name : names) shown.push_back(Shown(Utf8(name)));
  return Listed(shown);
}

std::size_t ByNumber(std::string_view entry, const TableHead& head) {
  std::size_t number = 0;
  const auto parsed = std::from_chars(entry.data(), entry.data() + entry.size(), number);
  if (parsed.ec == std::errc() && number >= 1 && number <= head.names.size()) return number - 1;
  throw DataError(head.place, "there is no column number " + Shown(entry) + "; choose from 1 to " +
                                  std::to_string(head.names.size()));
}

std::size_t ByName(std::string_view entry, const TableHead& head) {
  const auto found = Named(entry, head.names);
  if (found.empty()) {
    throw DataError(head.place, "there is no column " + Shown(entry) + "; choose from " +
                                    AllColumns(head.names));
  }
  if (found.size() > 1) {
    throw DataError(head.place, "columns " + std::to_string(found[0] + 1) + " and " +
                                    std::to_string(found[1] + 1) + " are both called " +
                                    Shown(entry) + "; choose one by its number");
  }
  return found[0];
}

std::size_t Position(std::string_view axis, Names usual, const TableHead& head) {
  const auto found =
      Matches(head.names, [&](std::string_view name) { return IsAmong(name, usual); });
  if (found.size() == 1) return found[0];
  throw DataError(head.place, std::string(found.empty() ? "no column is" : "several columns are") +
                                  " called " + std::string(axis) + " among " +
                                  AllColumns(head.names) +
                                  "; choose three with --columns X,Y,VALUE");
}

bool Has(const FieldNames& names, Names usual) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view name) { return IsAmong(name, usual); });
}

bool IsPolar(const FieldNames& names) {
  return !(Has(names, kXNames) && Has(names, kYNames)) && Has(names, kRadiusNames) &&
         Has(names, kAngleNames);
}

void FindPositions(const TableHead& head, const ColumnWish& wish, Columns& columns) {
  if (!wish.positions.empty()) {
    columns.x = FindColumn(wish.positions[0], head);
    columns.y = FindColumn(wish.positions[1], head);
    if (columns.x == columns.y) {
      throw DataError(head.place, "column " + std::to_string(columns.x + 1) +
                                      " is chosen for both X and Y; choose two");
    }
    columns.polar = head.header && IsAmong(head.names[columns.x], kRadiusNames) &&
                    IsAmong(head.names[columns.y], kAngleNames);
  } else if (head.header) {
    columns.polar = IsPolar(head.names);
    columns.x = columns.polar ? Position("R", kRadiusNames, head) : Position("X", kXNames, head);
    columns.y = columns.polar ? Position("theta", kAngleNames, head) : Position("Y", kYNames, head);
  }
}

bool IsWished(const std::vector<std::string>& entries, std::size_t column,
              const FieldNames& names) {
  return std::any_of(entries.begin(), entries.end(), [&](const std::string& entry) {
    if (IsColumnNumber(entry)) return entry == std::to_string(column + 1);
    const auto named = Named(entry, names);
    return std::find(named.begin(), named.end(), column) != named.end();
  });
}

using ColumnTest = std::function<bool(std::size_t)>;

/// The columns that aren't positions, numbers of sites, texts or what tells wafers apart.
std::vector<std::size_t> Quantities(const TableHead& head, const Columns& columns,
                                    const ColumnWish& wish, const ColumnTest& holds_numbers) {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < head.names.size(); ++i) {
    if (i == columns.x || i == columns.y || head.names[i].empty()) continue;
    if (head.header && (IsAmong(head.names[i], kSiteNames) || IsAmong(head.names[i], kWaferNames)))
      continue;  // isn't measured
    if (IsWished(wish.by, i, head.names)) continue;
    if (holds_numbers(i)) found.push_back(i);
  }
  return found;
}

std::size_t GuessValue(const TableHead& head, const Columns& columns, const ColumnWish& wish,
                       ValueChoice choice, const ColumnTest& holds_numbers) {
  const FieldNames& names = head.names;
  auto values = Matches(names, [&](std::string_view name) { return IsAmong(name, kValueNames); });
  // Z may be a height beside what was measured.
  const bool only_z = values.size() == 1 && SameName(SplitHeading(names[values[0]]).name, "z");
  if (values.empty() || (only_z && choice == ValueChoice::Only)) {
    values = Quantities(head, columns, wish, holds_numbers);
  }
  if (values.empty()) {
    // The only one there is, so that its rows tell what is wrong.
    values = Quantities(head, columns, wish, [](std::size_t) { return true; });
    if (values.size() > 1) values.clear();
  }
  if (values.empty()) {
    throw DataError(head.place, "no column is left for the value among " + AllColumns(names) +
                                    "; add one, or choose three with --columns X,Y,VALUE");
  }
  if (values.size() > 1 && choice == ValueChoice::Only) {
    FieldNames candidates;
    for (const std::size_t column : values) candidates.push_back(names[column]);
    throw DataError(head.place, "the value may be any of " + AllColumns(candidates) +
                                    "; choose one, as in --parameter " + Entry(head, values[0]));
  }
  return values[0];
}

}  // namespace

ColumnWish::ColumnWish(const ReadRequest& request, const std::string& file) : by(request.by) {
  FieldNames entries;
  if (!request.columns.empty()) {
    const bool closed = SplitFields(request.columns, {','}, entries) == 0;
    if (!closed || entries.size() < 2 ||
        std::find(entries.begin(), entries.end(), "") != entries.end()) {
      throw DataError({file}, "--columns " + Shown(request.columns) +
                                  " doesn't name two or more columns; write it like "
                                  "--columns X,Y,VALUE");
    }
    positions.assign(entries.begin(), entries.begin() + 2);
    values.assign(entries.begin() + 2, entries.end());
  }
  if (request.parameters.empty()) return;
  if (!values.empty()) {
    throw DataError({file},
                    "--columns and --parameter both choose the value; leave out one, as in "
                    "--columns X,Y --parameter VALUE");
  }
  const auto is_all = [](const std::string& entry) { return SameName(entry, "all"); };
  all_values = std::any_of(request.parameters.begin(), request.parameters.end(), is_all);
  if (!all_values) values = request.parameters;
}

bool NamesPositions(const FieldNames& names, const ColumnWish& wish) {
  if ((Has(names, kXNames) && Has(names, kYNames)) || IsPolar(names)) return true;
  const auto is_named = [&](std::string_view entry) {
    return !IsColumnNumber(entry) && !Named(entry, names).empty();
  };
  std::vector<std::string> entries = wish.positions;
  entries.insert(entries.end(), wish.values.begin(), wish.values.end());
  return names.size() > 1 && std::any_of(entries.begin(), entries.end(), is_named);
}

std::string Entry(const TableHead& head, std::size_t column) {
  const std::string_view name = head.header ? head.names[column] : std::string_view();
  const bool plain = std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
  });
  if (name.empty() || !plain || IsColumnNumber(name) || Named(name, head.names).size() > 1) {
    return std::to_string(column + 1);
  }
  return std::string(name);
}

std::vector<std::size_t> SiteCounts(const FieldNames& names) {
  return Matches(names, [](std::string_view name) { return IsAmong(name, kSiteNames); });
}

std::vector<std::size_t> WaferTellers(const FieldNames& names) {
  return Matches(names, [](std::string_view name) { return IsAmong(name, kWaferNames); });
}

std::string GivenName(std::size_t column, const TableHead& head) {
  return head.value == column ? "Value" : "Column " + std::to_string(column + 1);
}

std::optional<std::size_t> FindGiven(std::string_view name, const TableHead& head) {
  for (std::size_t i = 0; i < head.names.size(); ++i) {
    if (!head.header && SameName(name, GivenName(i, head))) return i;
  }
  return {};
}

std::size_t FindColumn(std::string_view entry, const TableHead& head) {
  entry = Trimmed(entry);
  if (IsColumnNumber(entry)) return ByNumber(entry, head);
  if (head.header) return ByName(entry, head);
  if (const auto given = FindGiven(entry, head)) return *given;
  throw DataError(head.place, "there is no header line with a column " + Shown(entry) +
                                  "; choose columns by number, as in --columns 1,2,3");
}

Columns FindColumns(const TableHead& head, const ColumnWish& wish, ValueChoice choice,
                    const std::function<bool(std::size_t)>& holds_numbers) {
  Columns columns;
  FindPositions(head, wish, columns);
  if (!wish.values.empty()) {
    columns.values.clear();
    for (const std::string& entry : wish.values) {
      const std::size_t column = FindColumn(entry, head);
      const auto& chosen = columns.values;
      if (std::find(chosen.begin(), chosen.end(), column) != chosen.end()) {
        throw DataError(head.place, "column " + std::to_string(column + 1) +
                                        " is chosen twice for a value; choose it once");
      }
      columns.values.push_back(column);
    }
  } else if (wish.all_values) {
    columns.values = Quantities(head, columns, wish, holds_numbers);
    if (columns.values.empty()) {
      throw DataError(head.place, "no column is left for values among " + AllColumns(head.names) +
                                      "; check that the rows below hold numbers");
    }
  } else if (head.header) {
    columns.values = {GuessValue(head, columns, wish, choice, holds_numbers)};
  } else if (columns.x == 2 || columns.y == 2) {
    throw DataError(head.place,
                    "there is no header line to find the value by; "
                    "choose three columns by number, as in --columns 1,2,3");
  }
  return columns;
}

std::vector<Parameter> ParametersOf(const TableHead& head, const Columns& columns,
                                    const FieldNames& units) {
  std::vector<Parameter> parameters;
  for (const std::size_t column : columns.values) {
    Parameter parameter;
    if (head.header && column < head.names.size()) {
      const Heading heading = SplitHeading(head.names[column]);
      parameter = {Utf8(heading.name), Utf8(heading.unit)};
    } else {
      parameter.name = GivenName(column, head);
    }
    if (parameter.unit.empty() && column < units.size()) {
      parameter.unit = Utf8(WithoutBrackets(units[column]));
    }
    const auto is_same = [&](const Parameter& other) { return other.name == parameter.name; };
    if (std::any_of(parameters.begin(), parameters.end(), is_same)) {
      parameter.name += " in column " + std::to_string(column + 1);
    }
    parameters.push_back(std::move(parameter));
  }
  return parameters;
}

}  // namespace discoplan::data
