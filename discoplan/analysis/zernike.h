// SPDX-License-Identifier: MIT
#pragma once

/// Zernike polynomials over the unit circle.
///
///     for (int index = 0; index < ZernikeTerms(4); ++index) {
///       const ZernikeIndex term = ZernikeOf(index);
///       sum += coefficients[index] * Zernike(term, x / radius, y / radius);
///     }
///
/// Index and normalisation are those of ANSI Z80.28, the OSA standard: L. Thibos et al., "Standards
/// for Reporting the Optical Aberrations of Eyes", J. Refract. Surg. 18 (2002). Terms are numbered
/// j = (n (n + 2) + m) / 2 from 0, where m is negative for the sines; angles count
/// counter-clockwise from the positive X axis. Each term but the constant has mean 0 and root mean
/// square 1 over the circle, so that its coefficient is its share of sigma in the values' unit.

#include "discoplan/export.h"

namespace discoplan::analysis {

struct ZernikeIndex {
  int n = 0;  ///< Radial order.
  int m = 0;  ///< Angular frequency: -n, -n + 2, ... n.

  bool operator==(const ZernikeIndex&) const = default;
};

/// How many terms there are up to a radial order: 1, 3, 6, 10, ...
constexpr int ZernikeTerms(int order) { return (order + 1) * (order + 2) / 2; }

/// Of the term with that number, from 0.
DISCOPLAN_EXPORT ZernikeIndex ZernikeOf(int number);

/// The term at (x, y) in parts of the radius; beyond the circle it's the same polynomial.
DISCOPLAN_EXPORT double Zernike(const ZernikeIndex& term, double x, double y);

}  // namespace discoplan::analysis
