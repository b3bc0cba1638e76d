// SPDX-License-Identifier: MIT
#pragma once

/// A value of any type that crosses the interface of an object with named members.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "discoplan/base/colour.h"
#include "discoplan/export.h"

namespace discoplan {

class Object;
using ObjectRef = std::shared_ptr<Object>;

/// One-dimensional array of 32-bit floats that a host owns and that a call may give new bounds.
/// An array that was never dimensioned has no bounds.
struct FloatArray {
  std::int32_t lower = 1;
  std::vector<float> values;
  bool dimensioned = false;

  bool operator==(const FloatArray&) const = default;
};

/// The same, read in place. Empty means not dimensioned: such an array has no bounds.
struct ArrayView {
  std::span<const float> values;
  std::int32_t lower = 1;

  ArrayView() = default;
  /// Anything contiguous, such as a `std::vector<float>`.
  template <class Range>
  requires std::is_convertible_v<const Range&, std::span<const float>> ArrayView(
      const Range& values_in, std::int32_t lower_in = 1)
      : values(values_in), lower(lower_in) {}
  ArrayView(const FloatArray& array) : values(array.values), lower(array.lower) {}

  DISCOPLAN_EXPORT bool operator==(const ArrayView& other) const;
};

/// Booleans are the 16-bit integers -1 and 0. `std::monostate` is the empty variant. An `ArrayView`
/// borrows a caller's numbers for the time of a call, without a copy.
class DISCOPLAN_EXPORT Variant {
 public:
  using Value = std::variant<std::monostate, std::int16_t, std::int32_t, Colour, float, double,
                             std::string, FloatArray, ArrayView, ObjectRef>;

  Variant() = default;
  template <class T>
  requires std::is_constructible_v<Value, T>
  explicit Variant(T&& value) : value_(std::forward<T>(value)) {}

  const Value& value() const { return value_; }
  bool IsEmpty() const { return value_.index() == 0; }

  /// The value as a number of that type; `TypeMismatch` for what is no number, `Overflow` for
  /// what doesn't fit. Integers round half to even.
  float AsFloat() const;
  double AsDouble() const;
  std::int16_t AsInt16() const;
  /// A colour as the number with the same 32 bits, so that system colours are negative.
  std::int32_t AsInt32() const;
  /// True for any number but 0.
  bool AsBoolean() const;
  /// Takes negative 32-bit integers for system colours.
  Colour AsColour() const;
  const std::string& AsString() const;
  /// Nothing for an empty variant.
  ObjectRef AsObject() const;
  /// The array to read, owned or borrowed.
  ArrayView AsView() const;
  /// An owned one alone.
  const FloatArray& AsArray() const;
  FloatArray& AsArray();

  bool operator==(const Variant&) const = default;

 private:
  Value value_;
};

inline Variant BooleanVariant(bool value) {
  return Variant(static_cast<std::int16_t>(value ? -1 : 0));
}

}  // namespace discoplan
