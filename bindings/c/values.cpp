// SPDX-License-Identifier: MIT
#include "bindings/c/values.h"

#include <cmath>

#include "discoplan/base/numbers.h"

namespace discoplan::c {
namespace {

discoplan_value Number(std::int32_t type, double number) {
  return {
      .type = type, .lower = 0, .number = number, .text = nullptr, .numbers = nullptr, .count = 0};
}

discoplan_value Array(const ArrayView& array) {
  return {.type = DISCOPLAN_NUMBERS,
          .lower = array.lower,
          .number = 0,
          .text = nullptr,
          .numbers = array.values.data(),
          .count = static_cast<std::int64_t>(array.values.size())};
}

struct Written {
  discoplan_value operator()(std::monostate) const { return Number(DISCOPLAN_EMPTY, 0); }
  discoplan_value operator()(std::int16_t n) const { return Number(DISCOPLAN_INT16, n); }
  discoplan_value operator()(std::int32_t n) const { return Number(DISCOPLAN_INT32, n); }
  discoplan_value operator()(Colour n) const { return Number(DISCOPLAN_COLOUR, n); }
  discoplan_value operator()(float n) const { return Number(DISCOPLAN_FLOAT, n); }
  discoplan_value operator()(double n) const { return Number(DISCOPLAN_DOUBLE, n); }
  discoplan_value operator()(const std::string& text) const {
    discoplan_value value = Number(DISCOPLAN_TEXT, 0);
    value.text = text.c_str();
    return value;
  }
  discoplan_value operator()(const FloatArray& array) const { return Array(array); }
  discoplan_value operator()(const ArrayView& array) const { return Array(array); }
  discoplan_value operator()(const ObjectRef&) const { return Number(DISCOPLAN_EMPTY, 0); }
};

Variant Array(const discoplan_value& value) {
  if (value.count < 0) Refuse("an array can't have fewer than no numbers");
  if (value.count == 0) return Variant(ArrayView());
  const float& first = Needed(value.numbers, "numbers");
  return Variant(ArrayView(std::span(&first, static_cast<std::size_t>(value.count)), value.lower));
}

}  // namespace

discoplan_value Kept::Keep(const Variant& value) {
  values_.push_back(value);
  return std::visit(Written(), values_.back().value());
}

Variant VariantOf(const discoplan_value& value) {
  switch (value.type) {
    case DISCOPLAN_EMPTY:
      return {};
    case DISCOPLAN_INT16:
    case DISCOPLAN_INT32:
    case DISCOPLAN_DOUBLE:
      return Variant(value.number);
    case DISCOPLAN_FLOAT:
      return Variant(ToFloat(value.number));
    case DISCOPLAN_BOOLEAN:
      return BooleanVariant(value.number != 0);
    case DISCOPLAN_COLOUR:
      if (!(value.number >= 0 && value.number <= UINT32_MAX)) Refuse("a colour has 32 bits");
      return Variant(static_cast<Colour>(value.number));
    case DISCOPLAN_TEXT:
      return Variant(std::string(&Needed(value.text, "text")));
    case DISCOPLAN_NUMBERS:
      return Array(value);
    default:
      Refuse("a value's type is " + std::to_string(value.type) + ", which is none");
  }
}

}  // namespace discoplan::c
