// SPDX-License-Identifier: MIT
#pragma once

/// Positions as files write them, and as millimetres from the centre.

#include "data/columns.h"

namespace discoplan::data {

/// What turns a row's two numbers into millimetres.
struct PositionScale {
  double x = 1;  ///< mm in one, of X or of the radius
  double y = 1;  ///< mm in one, or degrees in one of the angle
  bool polar = false;
  bool stated = false;        ///< the unit is given by the file or the request
  bool angle_stated = false;  ///< the same of the angle's
};

/// By the units of the headings or of the row below them, and the request. Throws `DataError` for a
/// unit that isn't known, or that differs from the one asked for, and for indices of dies without
/// their pitch.
PositionScale ScaleOf(const TableHead& head, const Columns& columns, const FieldNames& units,
                      const ReadRequest& request);

/// The unit in the heading of a column, or else below it; empty if there is none.
std::string_view UnitAt(std::size_t column, const TableHead& head, const FieldNames& units);

/// Whether a row holds units in place of numbers.
bool IsUnitRow(const FieldNames& fields, const Columns& columns);

struct Position {
  double x = 0;
  double y = 0;
};
Position FromPolar(double radius, double degrees);
inline Position InMillimetres(double first, double second, const PositionScale& scale) {
  const Position scaled = {first * scale.x, second * scale.y};
  return scale.polar ? FromPolar(scaled.x, scaled.y) : scaled;
}

/// Moves positions that count from a corner of the wafer to its centre; the wafer is one of the
/// diameter asked for or else the smallest standard one that has them all inside. Dies lie around
/// the middle of their rows and columns.
void MoveToCentre(const ReadRequest& request, Wafer& wafer);

}  // namespace discoplan::data
