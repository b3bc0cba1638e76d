// SPDX-License-Identifier: MIT
#include "discoplan/raster/ellipse_walk.h"

#include <algorithm>

namespace discoplan {

namespace {

UInt128 Square(std::int64_t value) {
  return static_cast<UInt128>(value) * static_cast<UInt128>(value);
}

}  // namespace

EllipseWalk::EllipseWalk(std::int64_t a, std::int64_t b, std::int64_t first)
    : a_(a), b_(b), run_{} {
  // Entered beside its track, the walk is back on it a row later; the second row is to spare.
  const std::int64_t equator = b % 2;
  const std::int64_t y = std::max(equator, first - 4);
  EnterRow(y, y == equator ? a : std::max({NearestInRow(y), NearestInColumns(y), a % 2}));
  while (run_.y < first) Advance();
}

void EllipseWalk::Advance() {
  run_.previous_inner = run_.inner;
  EnterRow(run_.y + 2, run_.next_outer);
}

void EllipseWalk::EnterRow(std::int64_t y, std::int64_t outer) {
  run_.y = y;
  run_.outer = outer;
  run_.inner = a_ % 2;
  if (y >= b_) return;
  run_.inner = std::min(outer, NearestInColumns(y + 2) + 2);
  const bool diagonal = run_.inner > NearestInRow(y + 2);
  run_.next_outer = std::max(run_.inner - (diagonal ? 2 : 0), a_ % 2);
}

std::int64_t EllipseWalk::NearestInRow(std::int64_t y) const {
  // Largest x with (x - 1)^2 + 1 < a^2 (b^2 - y^2) / b^2.
  const UInt128 b2 = Square(b_);
  const UInt128 numerator = Square(a_) * (b2 - Square(y));
  const auto bound = static_cast<std::uint64_t>(numerator / b2) + (numerator % b2 != 0 ? 1 : 0);
  if (bound < 2) return -1;
  const std::int64_t x = FloorSqrt(bound - 2) + 1;
  return x - ((x ^ a_) & 1);
}

std::int64_t EllipseWalk::NearestInColumns(std::int64_t y) const {
  // Largest x with x^2 <= a^2 (b^2 - (y - 1)^2 - 1) / b^2.
  const UInt128 b2 = Square(b_);
  const std::int64_t x =
      FloorSqrt(static_cast<std::uint64_t>(Square(a_) * (b2 - Square(y - 1) - 1) / b2));
  return x - ((x ^ a_) & 1);
}

}  // namespace discoplan
