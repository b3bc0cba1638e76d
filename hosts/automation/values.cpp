// SPDX-License-Identifier: MIT
#include "hosts/automation/values.h"

#include <limits>

#include "discoplan/base/numbers.h"
#include "hosts/json/json_number.h"

namespace discoplan {
namespace {

using nlohmann::json;

float Narrowed(double number, const char* what) {
  if (std::isfinite(number) && !std::isfinite(static_cast<float>(number))) {
    throw RequestError(std::string(what) + " is too large for a 32-bit float.");
  }
  return static_cast<float>(number);
}

FloatArray ToArray(const json& list, std::int32_t lower) {
  FloatArray array{.lower = lower, .values = {}, .dimensioned = true};
  array.values.reserve(list.size());
  for (const json& element : list) {
    array.values.push_back(Narrowed(ToNumber(element, "An array element"), "An array element"));
  }
  return array;
}

Variant FromObject(const json& value, const ObjectNames& names) {
  if (const auto ref = value.find("ref"); ref != value.end()) {
    if (!names.object) throw RequestError("An object has no place here.");
    return Variant(names.object(*ref));
  }
  const auto values = value.find("values");
  const auto lower = value.find("lower");
  if (values == value.end() || !values->is_array() || lower == value.end() ||
      !lower->is_number_integer()) {
    throw RequestError(
        "A value in braces is {\"ref\": ID} or {\"lower\": L, \"values\": [...]} with whole L.");
  }
  const auto bound = lower->get<double>();  // whole numbers of 64 bits have a sign or none
  if (bound < std::numeric_limits<std::int32_t>::min() ||
      bound > std::numeric_limits<std::int32_t>::max()) {
    throw RequestError("The lower bound of an array needs more than 32 bits.");
  }
  return Variant(ToArray(*values, static_cast<std::int32_t>(bound)));
}

bool IsText(Type type) { return type == Type::String || type == Type::Variant; }

}  // namespace

double ToNumber(const json& value, const char* what) {
  if (const auto number = ToNumber(value)) return *number;
  throw RequestError(std::string(what) + " must be a number.");
}

Variant ToVariant(const json& value, Type type, const ObjectNames& names) {
  switch (value.type()) {
    case json::value_t::null:
      return {};
    case json::value_t::boolean:
      return BooleanVariant(value.get<bool>());
    case json::value_t::string:
      if (const auto number = ToNumber(value); number && !IsText(type)) return Variant(*number);
      return Variant(value.get<std::string>());
    case json::value_t::array:
      return Variant(ToArray(value, 1));
    case json::value_t::object:
      return FromObject(value, names);
    default:
      return Variant(value.get<double>());
  }
}

json ToJson(const Variant& value, const ObjectNames& names) {
  return std::visit(
      [&](const auto& held) -> json {
        using T = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<T, std::monostate>) {
          return nullptr;
        } else if constexpr (std::is_same_v<T, float> || std::is_same_v<T, double>) {
          return ToJson(held);
        } else if constexpr (std::is_same_v<T, FloatArray>) {
          if (!held.dimensioned) return nullptr;
          json values = json::array();
          for (const float element : held.values) values.push_back(ToJson(element));
          return {{"lower", held.lower}, {"values", std::move(values)}};
        } else if constexpr (std::is_same_v<T, ArrayView>) {
          return {{"lower", held.lower}, {"values", held.values}};
        } else if constexpr (std::is_same_v<T, ObjectRef>) {
          if (!held) return nullptr;
          return {{"ref", names.id(held.get())}};
        } else {
          return held;
        }
      },
      value.value());
}

const json& Field(const json& request, const char* name) {
  const auto field = request.find(name);
  if (field == request.end()) {
    throw RequestError("The request needs a field \"" + std::string(name) + "\".");
  }
  return *field;
}

std::string TextField(const json& request, const char* name) {
  const json& field = Field(request, name);
  if (!field.is_string()) {
    throw RequestError("The field \"" + std::string(name) + "\" must be a text.");
  }
  return field.get<std::string>();
}

float NumberField(const json& request, const char* name, float otherwise) {
  return request.contains(name) ? NumberField(request, name) : otherwise;
}

float NumberField(const json& request, const char* name) {
  const std::string what = "The field \"" + std::string(name) + "\"";
  return Narrowed(ToNumber(Field(request, name), what.c_str()), what.c_str());
}

}  // namespace discoplan
