// SPDX-License-Identifier: MIT
#include "discoplan/base/variant.h"

#include <algorithm>
#include <type_traits>

#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

template <class T>
T Held(const Variant::Value& value) {
  if (const T* held = std::get_if<T>(&value)) return *held;
  numbers_detail::Raise(Fault::TypeMismatch);
}

}  // namespace

bool ArrayView::operator==(const ArrayView& other) const {
  return lower == other.lower &&
         std::equal(values.begin(), values.end(), other.values.begin(), other.values.end());
}

double Variant::AsDouble() const {
  return std::visit(
      [](const auto& held) -> double {
        using T = std::decay_t<decltype(held)>;
        if constexpr (std::is_arithmetic_v<T>) {
          return static_cast<double>(held);
        } else {
          numbers_detail::Raise(Fault::TypeMismatch);
        }
      },
      value_);
}

float Variant::AsFloat() const {
  const double number = AsDouble();
  // What a host stores may be infinite or no number at all; only a finite value can overflow.
  return std::isfinite(number) ? ToFloat(number) : static_cast<float>(number);
}

std::int16_t Variant::AsInt16() const { return ToInt16(AsDouble()); }

std::int32_t Variant::AsInt32() const {
  if (const auto* colour = std::get_if<Colour>(&value_)) return static_cast<std::int32_t>(*colour);
  return ToInt32(AsDouble());
}

bool Variant::AsBoolean() const { return AsDouble() != 0; }

Colour Variant::AsColour() const {
  const double number = AsDouble();
  return number < 0 ? static_cast<Colour>(ToInt32(number)) : RoundTo<Colour>(number);
}

const std::string& Variant::AsString() const {
  if (const auto* text = std::get_if<std::string>(&value_)) return *text;
  numbers_detail::Raise(Fault::TypeMismatch);
}

ObjectRef Variant::AsObject() const { return IsEmpty() ? ObjectRef() : Held<ObjectRef>(value_); }

ArrayView Variant::AsView() const {
  if (const auto* view = std::get_if<ArrayView>(&value_)) return *view;
  return AsArray();
}

const FloatArray& Variant::AsArray() const {
  if (const auto* array = std::get_if<FloatArray>(&value_)) return *array;
  numbers_detail::Raise(Fault::TypeMismatch);
}

FloatArray& Variant::AsArray() {
  return const_cast<FloatArray&>(static_cast<const Variant&>(*this).AsArray());
}

}  // namespace discoplan
