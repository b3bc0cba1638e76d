// SPDX-License-Identifier: MIT
#include "data/columns.h"

#include <algorithm>
#include <charconv>
#include <span>

#include "data/fields.h"
#include "discoplan/base/algorithms.h"

namespace discoplan::data {
namespace {

constexpr std::string_view kXNames[] = {"x", "x (mm)", "x(mm)", "x [mm]", "x[mm]", "x_mm"};
constexpr std::string_view kYNames[] = {"y", "y (mm)", "y(mm)", "y [mm]", "y[mm]", "y_mm"};
constexpr std::string_view kValueNames[] = {"value", "z", "thickness", "measurement", "result"};
constexpr std::string_view kSiteNames[] = {"site", "site #", "#"};

bool IsAmong(std::string_view name, std::span<const std::string_view> usual) {
  return AnyOf(usual, [&](std::string_view u) { return SameName(name, u); });
}

std::vector<std::size_t> Matches(const FieldNames& names, auto&& matches) {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (matches(names[i])) found.push_back(i);
  }
  return found;
}

// A name as `--columns` takes it without quotes for the shell, or else the column's number.
std::string Entry(const FieldNames& names, std::size_t column) {
  const std::string_view name = names[column];
  const bool plain = AllOf(name, [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
  });
  const auto same = Matches(names, [&](std::string_view other) { return SameName(name, other); });
  if (name.empty() || !plain || IsColumnNumber(name) || same.size() > 1) {
    return std::to_string(column + 1);
  }
  return std::string(name);
}

std::string AllColumns(const FieldNames& names) {
  std::vector<std::string> shown;
  for (const std::string_view name : names) shown.push_back(Shown(name));
  return Listed(shown);
}

std::size_t ByNumber(std::string_view entry, const FieldNames& names, const Place& place) {
  std::size_t number = 0;
  const auto parsed = std::from_chars(entry.data(), entry.data() + entry.size(), number);
  if (parsed.ec == std::errc() && number >= 1 && number <= names.size()) return number - 1;
  throw DataError(place, "there is no column number " + Shown(entry) + "; choose from 1 to " +
                             std::to_string(names.size()));
}

std::size_t ByName(std::string_view entry, const FieldNames& names, const Place& place) {
  const auto found = Matches(names, [&](std::string_view name) { return SameName(name, entry); });
  if (found.empty()) {
    throw DataError(place,
                    "there is no column " + Shown(entry) + "; choose from " + AllColumns(names));
  }
  if (found.size() > 1) {
    throw DataError(place, "columns " + std::to_string(found[0] + 1) + " and " +
                               std::to_string(found[1] + 1) + " are both called " + Shown(entry) +
                               "; choose one by its number");
  }
  return found[0];
}

std::size_t Position(char axis, std::span<const std::string_view> usual, const FieldNames& names,
                     const Place& place) {
  const auto found = Matches(names, [&](std::string_view name) { return IsAmong(name, usual); });
  if (found.size() == 1) return found[0];
  throw DataError(place, std::string(found.empty() ? "no column is" : "several columns are") +
                             " called " + axis + " among " + AllColumns(names) +
                             "; choose three with --columns X,Y,VALUE");
}

}  // namespace

FieldNames RequestedColumns(std::string_view request, const std::string& file) {
  FieldNames entries;
  const bool closed = SplitFields(request, {',', false}, entries) == 0;
  if (!closed || entries.size() != 3 || FindIn(entries, "") != entries.end()) {
    throw DataError({file}, "--columns " + Shown(request) +
                                " doesn't name three columns; write it like --columns X,Y,VALUE");
  }
  return entries;
}

bool IsColumnNumber(std::string_view entry) {
  return entry.find_first_not_of("0123456789") == std::string_view::npos;
}

bool NamesColumns(const FieldNames& names, const FieldNames& requested) {
  const auto has = [&](std::span<const std::string_view> usual) {
    return AnyOf(names, [&](std::string_view name) { return IsAmong(name, usual); });
  };
  if (requested.empty()) return has(kXNames) && has(kYNames);
  return AnyOf(requested, [&](std::string_view entry) {
    return !IsColumnNumber(entry) && has({&entry, 1});
  });
}

Columns FindColumns(const FieldNames& names, bool header, const FieldNames& requested,
                    const Place& place) {
  const auto find = [&](std::string_view entry) {
    if (IsColumnNumber(entry)) return ByNumber(entry, names, place);
    if (header) return ByName(entry, names, place);
    throw DataError(place, "there is no header line with a column " + Shown(entry) +
                               "; choose columns by number, as in --columns 1,2,3");
  };
  return {find(requested[0]), find(requested[1]), find(requested[2])};
}

Columns GuessColumns(const FieldNames& names, ValueChoice choice, const Place& place) {
  Columns columns;
  columns.x = Position('X', kXNames, names, place);
  columns.y = Position('Y', kYNames, names, place);
  auto values = Matches(names, [&](std::string_view name) { return IsAmong(name, kValueNames); });
  if (values.empty()) {
    values = Matches(names, [&](std::string_view name) {
      return !name.empty() && !IsAmong(name, kXNames) && !IsAmong(name, kYNames) &&
             !IsAmong(name, kSiteNames);
    });
  }
  if (values.empty()) {
    throw DataError(place, "no column is left for the value among " + AllColumns(names) +
                               "; add one, or choose three with --columns X,Y,VALUE");
  }
  if (values.size() > 1 && choice == ValueChoice::Only) {
    FieldNames candidates;
    for (const std::size_t column : values) candidates.push_back(names[column]);
    throw DataError(place, "the value may be any of " + AllColumns(candidates) +
                               "; choose one, as in --columns " + Entry(names, columns.x) + ',' +
                               Entry(names, columns.y) + ',' + Entry(names, values[0]));
  }
  columns.value = values[0];
  return columns;
}

}  // namespace discoplan::data
