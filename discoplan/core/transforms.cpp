// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "discoplan/base/algorithms.h"
#include "discoplan/base/angles.h"
#include "discoplan/base/numbers.h"
#include "discoplan/core/wafer.h"

namespace discoplan {
namespace {

/// The angle between 0 and a full turn that shows in the same direction. Taking off one turn after
/// the other gives the same: a turn has so few digits that none of the differences is rounded.
double WithinOneTurn(double radians) {
  constexpr double kTurn = 2.0 * kPi;
  if (radians > kTurn) {
    const double rest = std::fmod(radians, kTurn);
    return rest == 0 ? kTurn : rest;
  }
  if (radians >= 0) return radians;
  const double rest = std::fmod(radians, kTurn);
  return rest < 0 ? rest + kTurn : 0;
}

/// Middle of the sites' extent along one axis.
float Middle(std::span<const Site> sites, float Site::*axis) {
  const auto [low, high] = MinMax(sites, axis);
  return ToFloat((static_cast<double>(high.*axis) - low.*axis) / 2 + low.*axis);
}

}  // namespace

bool wafer::MoveGrid(float dx, float dy) {
  const auto stays_inside = [&](const Site& site) {
    const double x = static_cast<double>(dx) + site.x;
    const double y = static_cast<double>(dy) + site.y;
    return ToFloat(std::sqrt(y * y + x * x)) <= TestDiameter / 2;
  };
  if (!AllOf(sites_, stays_inside)) return false;
  for (Site& site : ChangeSites()) {
    site.x = ToFloat(static_cast<double>(site.x) + dx);
    site.y = ToFloat(static_cast<double>(site.y) + dy);
  }
  return true;
}

bool wafer::CenterGrid() {
  if (sites_.empty()) throw RunTimeError(Fault::Subscript, "a wafer without sites");
  return MoveGrid(-Middle(sites_, &Site::x), -Middle(sites_, &Site::y));
}

void wafer::rotate(float angle) {
  const float clockwise = ToFloat(static_cast<double>(angle) * kPi / 180);
  for (Site& site : ChangeSites()) {
    const double x = site.x;
    const double y = site.y;
    double direction = 0;
    if (x != 0) {
      direction = ArcTangent(y / x) + (x < 0 ? kPi : 0.0);
    } else if (y != 0) {
      direction = y > 0 ? kPi / 2.0 : kPi * 3.0 / 2;
    }
    const double radius = std::sqrt(x * x + y * y);
    const double turned = WithinOneTurn(direction - clockwise);
    site.x = ToFloat(radius * Cosine(turned));
    site.y = ToFloat(radius * Sine(turned));
  }
}

void wafer::mirror_X() {
  for (Site& site : ChangeSites()) site.y = -site.y;
}

void wafer::mirror_Y() {
  for (Site& site : ChangeSites()) site.x = -site.x;
}

}  // namespace discoplan
