// SPDX-License-Identifier: MIT
#include "discoplan/analysis/zernike.h"

#include <cmath>
#include <cstdlib>

namespace discoplan::analysis {
namespace {

/// Jacobi polynomial of the exponents 0 and b, by the recurrence of M. Abramowitz and I. Stegun,
/// "Handbook of Mathematical Functions", 22.7.1, which stays exact where the sum of powers cancels.
double Jacobi(int degree, int b, double t) {
  double before = 1;
  if (degree == 0) return before;
  double value = ((b + 2) * t - b) / 2;
  for (int k = 1; k < degree; ++k) {
    const double c = 2.0 * k + b;
    const double next = ((c + 1) * ((c + 2) * c * t - static_cast<double>(b) * b) * value -
                         2.0 * k * (k + b) * (c + 2) * before) /
                        (2.0 * (k + 1) * (k + 1 + b) * c);
    before = value;
    value = next;
  }
  return value;
}

}  // namespace

ZernikeIndex ZernikeOf(int number) {
  int n = 0;
  while (ZernikeTerms(n) <= number) ++n;
  return {n, 2 * number - n * (n + 2)};
}

double Zernike(const ZernikeIndex& term, double x, double y) {
  const int frequency = std::abs(term.m);
  const double radial = Jacobi((term.n - frequency) / 2, frequency, 2 * (x * x + y * y) - 1);
  if (frequency == 0) return std::sqrt(term.n + 1.0) * radial;
  // The power of x + i y, whose parts are exactly 0 on the axes.
  double along = 1;
  double across = 0;
  for (int power = 0; power < frequency; ++power) {
    const double before = along;
    along = before * x - across * y;
    across = before * y + across * x;
  }
  return std::sqrt(2 * (term.n + 1.0)) * radial * (term.m < 0 ? across : along);
}

}  // namespace discoplan::analysis
