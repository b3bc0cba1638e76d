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

#include <cstddef>

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

/// Sum of `term(i)` for i from 0 to below `count`, in four sums side by side that a processor adds
/// up at once.
template <class Term>
double SumOfTerms(std::size_t count, Term term) {
  constexpr std::size_t kLanes = 4;
  double sums[kLanes] = {};
  double lost[kLanes] = {};
  std::size_t i = 0;
  for (; i + kLanes <= count; i += kLanes) {
    double terms[kLanes];
    double next[kLanes];
    double taken[kLanes];
    for (std::size_t lane = 0; lane < kLanes; ++lane) terms[lane] = term(i + lane);
    for (std::size_t lane = 0; lane < kLanes; ++lane) next[lane] = sums[lane] + terms[lane];
    for (std::size_t lane = 0; lane < kLanes; ++lane) taken[lane] = next[lane] - sums[lane];
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      lost[lane] += (sums[lane] - (next[lane] - taken[lane])) + (terms[lane] - taken[lane]);
    }
    for (std::size_t lane = 0; lane < kLanes; ++lane) sums[lane] = next[lane];
  }
  CompensatedSum all;
  for (; i < count; ++i) all += term(i);
  for (const double sum : sums) all += sum;
  for (const double rest : lost) all += rest;
  return all.Value();
}

/// Sum of `of(item)` over a range.
template <class Range, class Of>
double SumOver(const Range& range, Of of) {
  CompensatedSum sum;
  for (const auto& item : range) sum += of(item);
  return sum.Value();
}

}  // namespace discoplan::analysis
