// SPDX-License-Identifier: MIT
#pragma once

/// The standard algorithms on whole ranges, for standard libraries that have them for iterators
/// alone. A projection is a member or a function that each element is seen by.

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace discoplan {

template <class Range, class Test>
constexpr auto FindIf(Range&& range, Test test) {
  return std::find_if(std::begin(range), std::end(range), test);
}

template <class Range, class Value, class Projection = std::identity>
constexpr auto FindIn(Range&& range, const Value& value, Projection projection = {}) {
  return FindIf(range,
                [&](const auto& element) { return std::invoke(projection, element) == value; });
}

template <class Range, class Test>
constexpr bool AnyOf(Range&& range, Test test) {
  return std::any_of(std::begin(range), std::end(range), test);
}

template <class Range, class Test>
constexpr bool AllOf(Range&& range, Test test) {
  return std::all_of(std::begin(range), std::end(range), test);
}

template <class Range, class Test>
constexpr auto CountIf(Range&& range, Test test) {
  return std::count_if(std::begin(range), std::end(range), test);
}

template <class Range>
constexpr auto MaxElement(Range&& range) {
  return std::max_element(std::begin(range), std::end(range));
}

/// Smallest and largest element of a range that isn't empty.
template <class Range, class Projection = std::identity>
constexpr auto MinMax(Range&& range, Projection projection = {}) {
  const auto [low, high] =
      std::minmax_element(std::begin(range), std::end(range), [&](const auto& a, const auto& b) {
        return std::invoke(projection, a) < std::invoke(projection, b);
      });
  return std::pair(*low, *high);
}

template <class Range, class Output, class Function>
constexpr Output Transform(Range&& range, Output output, Function function) {
  return std::transform(std::begin(range), std::end(range), output, function);
}

template <class Range, class Output>
constexpr Output CopyTo(Range&& range, Output output) {
  return std::copy(std::begin(range), std::end(range), output);
}

template <class RangeA, class RangeB, class Projection = std::identity>
constexpr bool Equal(const RangeA& a, const RangeB& b, Projection projection = {}) {
  return std::equal(std::begin(a), std::end(a), std::begin(b), std::end(b),
                    [&](const auto& x, const auto& y) {
                      return std::invoke(projection, x) == std::invoke(projection, y);
                    });
}

}  // namespace discoplan
