// SPDX-License-Identifier: MIT
#include "data/positions.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "data/number_text.h"
#include "data/units.h"
#include "data/utf16.h"

namespace discoplan::data {
namespace {

/// Of degrees; exact for quarter turns.
double SineOf(double degrees) {
  const double turn = std::remainder(degrees, 360);
  return std::fmod(turn, 180) == 0 ? 0 : std::sin(turn * std::numbers::pi / 180);
}

std::string_view NameOf(LengthUnit unit) {
  static constexpr std::string_view kNames[] = {"mm", "cm", "um", "in"};
  return kNames[static_cast<std::size_t>(unit)];
}

/// Millimetres in one of a column of lengths.
double LengthFactor(std::size_t column, const TableHead& head, std::string_view unit,
                    const ReadRequest& request, bool& stated) {
  const std::string name = head.header && column < head.names.size()
                               ? Shown(Utf8(head.names[column]))
                               : "column " + std::to_string(column + 1);
  const auto factor = MillimetresIn(Utf8(unit));
  const bool asked = request.unit.has_value();
  const double wanted = asked ? MillimetresIn(*request.unit) : 1;
  if (!unit.empty() && !factor && !asked) {
    throw DataError(head.place, name + " is in " + Shown(Utf8(unit)) +
                                    ", which is no unit of length that is known; "
                                    "say what it is with --unit mm, cm, um or in");
  }
  if (factor && asked && *factor != wanted) {
    throw DataError(head.place, name + " is in " + Shown(Utf8(unit)) + " and --unit says " +
                                    std::string(NameOf(*request.unit)) +
                                    "; leave out --unit or mend the header");
  }
  stated = factor.has_value() || asked;
  return factor.value_or(wanted);
}

bool NamesDies(std::string_view heading) {
  const std::string_view name = SplitHeading(heading).name;
  for (const std::string_view usual :
       {"die x",   "die_x",   "diex",   "x die",   "x_die",   "xdie",    "die y",
        "die_y",   "diey",    "y die",  "y_die",   "ydie",    "x index", "y index",
        "die col", "die_col", "diecol", "die row", "die_row", "dierow"}) {
    if (SameName(name, usual)) return true;
  }
  return false;
}

PositionScale PitchScale(const TableHead& head, const Columns& columns, const FieldNames& units,
                         const ReadRequest& request) {
  const bool has_unit = !UnitAt(columns.x, head, units).empty() || request.unit.has_value();
  if (columns.polar || has_unit) {
    throw DataError(head.place, std::string("the positions are ") +
                                    (columns.polar ? "polar" : "lengths with a unit") +
                                    " and don't count dies; leave out --pitch");
  }
  return {.x = request.pitch->width, .y = request.pitch->height, .stated = true};
}

}  // namespace

std::string_view UnitAt(std::size_t column, const TableHead& head, const FieldNames& units) {
  if (head.header && column < head.names.size()) {
    const std::string_view unit = SplitHeading(head.names[column]).unit;
    if (!unit.empty()) return unit;
  }
  return column < units.size() ? WithoutBrackets(units[column]) : std::string_view();
}

PositionScale ScaleOf(const TableHead& head, const Columns& columns, const FieldNames& units,
                      const ReadRequest& request) {
  if (request.pitch) return PitchScale(head, columns, units, request);
  if (head.header && NamesDies(head.names[columns.x]) && !request.unit) {
    throw DataError(head.place,
                    Shown(Utf8(head.names[columns.x])) +
                        " counts dies; give their size in mm with --pitch WIDTH HEIGHT");
  }
  PositionScale scale;
  scale.polar = columns.polar;
  scale.x = LengthFactor(columns.x, head, UnitAt(columns.x, head, units), request, scale.stated);
  const std::string_view second = UnitAt(columns.y, head, units);
  if (!columns.polar) {
    bool stated = false;
    scale.y = LengthFactor(columns.y, head, second, request, stated);
    if (stated != scale.stated) {
      throw DataError(head.place,
                      "one of X and Y has a unit and the other one has none; "
                      "mend the header");
    }
    return scale;
  }
  const auto degrees = DegreesIn(Utf8(second));
  if (!second.empty() && !degrees) {
    throw DataError(head.place, Shown(Utf8(head.names[columns.y])) + " is in " +
                                    Shown(Utf8(second)) + "; write deg or rad");
  }
  scale.y = degrees.value_or(1);
  scale.angle_stated = degrees.has_value();
  return scale;
}

bool IsUnitRow(const FieldNames& fields, const Columns& columns) {
  const auto is_no_number = [](std::string_view field) {
    const NumberFault fault = ParseNumber(field).fault;
    return fault == NumberFault::Text || fault == NumberFault::Empty;
  };
  const auto is_unit = [&](std::size_t column) {
    if (column >= fields.size() || fields[column].empty()) return false;
    const std::string_view unit = WithoutBrackets(fields[column]);
    return unit.size() < fields[column].size() || IsKnownUnit(Utf8(unit));
  };
  std::vector<std::size_t> used = columns.values;
  used.insert(used.end(), {columns.x, columns.y});
  return std::all_of(fields.begin(), fields.end(), is_no_number) &&
         std::any_of(used.begin(), used.end(), is_unit);
}

Position FromPolar(double radius, double degrees) {
  return {radius * SineOf(degrees + 90), radius * SineOf(degrees)};
}

namespace {

void Shift(std::vector<float>& positions, double by) {
  for (float& position : positions) {
    position = static_cast<float>(static_cast<double>(position) - by);
  }
}

double Middle(const std::vector<float>& positions) {
  const auto [low, high] = std::minmax_element(positions.begin(), positions.end());
  return (static_cast<double>(*low) + *high) / 2;
}

double RadiusAround(const Wafer& wafer, double x, double y) {
  double radius = 0;
  for (std::size_t i = 0; i < wafer.x.size(); ++i) {
    radius = std::max(radius, std::hypot(wafer.x[i] - x, wafer.y[i] - y));
  }
  return radius;
}

}  // namespace

void MoveToCentre(const ReadRequest& request, Wafer& wafer) {
  if (request.origin == Origin::Centre || wafer.x.empty()) return;
  if (request.pitch) {
    Shift(wafer.x, Middle(wafer.x));
    Shift(wafer.y, Middle(wafer.y));
    return;
  }
  double half = request.diameter.value_or(0) / 2;
  if (!request.diameter) {
    const auto holds_all = [&](float diameter) {
      const double radius = static_cast<double>(diameter) / 2;
      return RadiusAround(wafer, radius, radius) <= radius;
    };
    const auto diameters = StandardDiameters();
    const auto fitting = std::find_if(diameters.begin(), diameters.end(), holds_all);
    if (fitting == diameters.end()) {
      throw DataError({request.path.string()},
                      "no standard wafer holds sites that are counted from its corner like these; "
                      "give its --diameter, or leave out --origin corner");
    }
    half = static_cast<double>(*fitting) / 2;
  }
  Shift(wafer.x, half);
  Shift(wafer.y, half);
}

}  // namespace discoplan::data
