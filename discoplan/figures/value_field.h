// SPDX-License-Identifier: MIT
#pragma once

/// The values between the sites, on any lattice of points.
///
/// `idw4` is the classic rule, the inverse-distance-squared mean of the four nearest sites. It
/// jumps where another site becomes one of the four. `smooth` is a thin-plate spline, with as much
/// smoothing as foretells a site best from the others: the least leave-one-out error of some
/// weights. Above some hundred sites it is found on a lattice of knots about as far apart as the
/// sites are, and a part of the sites is left out at once. It never leaves the measured range by
/// more than a twentieth of it.
///
/// Source: J. Duchon, "Splines minimizing rotation-invariant semi-norms in Sobolev spaces" (1977);
/// S. Rippa, "An algorithm for selecting a good value for the parameter c in radial basis function
/// interpolation" (1999), for the leave-one-out errors in closed form.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "discoplan/export.h"

namespace discoplan::figures {

enum class Interpolation { Idw4, Smooth };

/// Measured points in mm from the wafer's centre, Y up. The three are equally long.
struct SiteView {
  std::span<const float> x;
  std::span<const float> y;
  std::span<const float> value;

  std::size_t Size() const { return value.size(); }
};

/// Points (x0 + i * step, y0 - j * step) in mm; rows from top to bottom.
struct Lattice {
  double x0 = 0;
  double y0 = 0;
  double step = 1;
  int columns = 0;
  int rows = 0;

  std::size_t Size() const {
    return static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
  }
  double X(int column) const { return x0 + column * step; }
  double Y(int row) const { return y0 - row * step; }
};

class DISCOPLAN_EXPORT ValueField {
 public:
  virtual ~ValueField() = default;
  /// A value for each point that is at most `radius` mm from the centre, and for others as it
  /// comes.
  virtual void Evaluate(const Lattice& lattice, double radius, std::span<float> values) const = 0;
  /// "thin-plate spline", for people.
  virtual std::string Method() const = 0;
  /// Root mean square of what each site, left out, differs from what the others foretell.
  double LeaveOneOutError() const { return error_; }

 protected:
  double error_ = 0;
};

/// `radius` is the wafer's in mm. Sites in one place count as one with their mean. Of three sites
/// that aren't about in line `smooth` is the plane through them, within the same bounds; fewer than
/// four give their mean everywhere else.
DISCOPLAN_EXPORT std::shared_ptr<const ValueField> MakeField(const SiteView& sites, double radius,
                                                             Interpolation interpolation);

}  // namespace discoplan::figures
