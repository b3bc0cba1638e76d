// SPDX-License-Identifier: MIT
#pragma once

/// A 64-bit sum whose error doesn't grow with the number of terms.
///
///     CompensatedSum sum;
///     for (double term : terms) sum += term;
///     const double mean = sum.Value() / count;
///
/// Neumaier's variant of Kahan's sum: A. Neumaier, "Rundungsfehleranalyse einiger Verfahren zur
/// Summation endlicher Summen", ZAMM 54 (1974). The result is off by two roundings at most, plus
/// a term of the order of n * 2^-106 of the sum of magnitudes.

namespace discoplan::analysis {

class CompensatedSum {
 public:
  CompensatedSum& operator+=(double term) {
    const double sum = sum_ + term;
    // D. Knuth's way to what rounding took (The Art of Computer Programming 2, 4.2.2): the same as
    // by the larger of both terms, without asking which one it is.
    const double taken = sum - sum_;
    lost_ += (sum_ - (sum - taken)) + (term - taken);
    sum_ = sum;
    return *this;
  }
  double Value() const { return sum_ + lost_; }

 private:
  double sum_ = 0;
  double lost_ = 0;
};

/// Sum of `of(item)` over a range.
template <class Range, class Of>
double SumOver(const Range& range, Of of) {
  CompensatedSum sum;
  for (const auto& item : range) sum += of(item);
  return sum.Value();
}

}  // namespace discoplan::analysis
