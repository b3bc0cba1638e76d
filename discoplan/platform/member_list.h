// SPDX-License-Identifier: MIT
#pragma once

/// How a class writes down its members: typed C++ functions become rows of a `MemberTable`.
///
///     const std::vector<Member> kSize = {
///         Property<Plot2D, float>("TestDiameter", &Plot2D::TestDiameter, &Plot2D::TestDiameter),
///         Method("Plot", &Plot2D::Plot),
///     };

#include <array>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "discoplan/base/numbers.h"
#include "discoplan/platform/object.h"

namespace discoplan {

/// The interface's name for a type, and the way between the type and a variant. An enumeration of
/// the interface names itself by specialising `EnumName`, and its values by `kEnumerators`.
template <class T>
inline constexpr std::string_view EnumName{};
template <class T>
inline constexpr std::array<Enumerator, 0> kEnumerators{};

template <class T>
constexpr std::string_view TypeName() {
  if constexpr (std::is_void_v<T>) return "none";
  if constexpr (std::is_enum_v<T>) return EnumName<T>;
  if constexpr (std::is_same_v<T, float>) return "float";
  if constexpr (std::is_same_v<T, double>) return "double";
  if constexpr (std::is_same_v<T, std::int16_t>) return "int16";
  if constexpr (std::is_same_v<T, std::int32_t>) return "int32";
  if constexpr (std::is_same_v<T, Colour>) return "colour";
  if constexpr (std::is_same_v<T, bool>) return "boolean";
  if constexpr (std::is_same_v<T, std::string>) return "string";
  if constexpr (std::is_same_v<T, ObjectRef>) return "object";
  if constexpr (std::is_same_v<T, FloatArray> || std::is_same_v<T, ArrayView>) return "array";
  if constexpr (std::is_same_v<T, Variant>) return "variant";
}

template <class T>
Variant ToVariant(const T& value) {
  if constexpr (std::is_enum_v<T>) {
    return Variant(static_cast<std::int16_t>(value));
  } else if constexpr (std::is_same_v<T, bool>) {
    return BooleanVariant(value);
  } else {
    return Variant(value);
  }
}

/// A number that a method may change for its caller.
class FloatReference {
 public:
  explicit FloatReference(Variant& value) : value_(value), number_(value.AsFloat()) {}
  ~FloatReference() {
    if (number_ != value_.AsFloat()) value_ = Variant(number_);
  }
  FloatReference(const FloatReference&) = delete;
  FloatReference& operator=(const FloatReference&) = delete;

  operator float&() { return number_; }

 private:
  Variant& value_;
  float number_;
};

/// Gives a `FloatArray&` or a `Variant&` itself, so that a method can change it for its caller.
template <class T>
decltype(auto) FromVariant(Variant& value) {
  using Bare = std::remove_cvref_t<T>;
  if constexpr (std::is_same_v<Bare, Variant>) {
    return (value);
  } else if constexpr (std::is_same_v<T, float&>) {
    return FloatReference(value);
  } else if constexpr (std::is_same_v<Bare, FloatArray>) {
    if (value.IsEmpty()) value = Variant(FloatArray());
    return (value.AsArray());
  } else if constexpr (std::is_same_v<Bare, ArrayView>) {
    return value.IsEmpty() ? ArrayView() : ArrayView(value.AsArray());
  } else if constexpr (std::is_enum_v<Bare>) {
    // A let that mends any number takes any; one that stores 16 bits overflows beyond them.
    return static_cast<Bare>(sizeof(Bare) == 2 ? value.AsInt16() : value.AsInt32());
  } else if constexpr (std::is_same_v<Bare, float>) {
    return value.AsFloat();
  } else if constexpr (std::is_same_v<Bare, double>) {
    return value.AsDouble();
  } else if constexpr (std::is_same_v<Bare, std::int16_t>) {
    return value.AsInt16();
  } else if constexpr (std::is_same_v<Bare, std::int32_t>) {
    return value.AsInt32();
  } else if constexpr (std::is_same_v<Bare, Colour>) {
    return value.AsColour();
  } else if constexpr (std::is_same_v<Bare, bool>) {
    return value.AsBoolean();
  } else if constexpr (std::is_same_v<Bare, std::string>) {
    return std::string(value.AsString());
  } else {
    return value.AsObject();
  }
}

inline std::vector<Member> Joined(std::vector<Member> members, const std::vector<Member>& more) {
  members.insert(members.end(), more.begin(), more.end());
  return members;
}

/// Property of type T through an overloaded pair `T Name() const; void Name(T)`.
template <class C, class T, class Given = T>
Member Property(std::string_view name, T (C::*get)() const, void (C::*set)(Given) = nullptr) {
  using Value = std::remove_cvref_t<T>;
  Member member{.name = name,
                .kind = Member::Kind::Property,
                .type = TypeName<Value>(),
                .choices = kEnumerators<Value>,
                .get = {},
                .set = {},
                .parameters = {},
                .call = {}};
  member.get = [get](Object& object) { return ToVariant<Value>((static_cast<C&>(object).*get)()); };
  if (set != nullptr) {
    member.set = [set](Object& object, const Variant& value) {
      Variant copy = value;
      (static_cast<C&>(object).*set)(FromVariant<Value>(copy));
    };
  }
  return member;
}

template <class C, class R, class... Args>
Member Method(std::string_view name, R (C::*method)(Args...)) {
  Member member{.name = name,
                .kind = Member::Kind::Method,
                .type = TypeName<R>(),
                .get = {},
                .set = {},
                .parameters = {},
                .call = {}};
  member.parameters = {TypeName<std::remove_cvref_t<Args>>()...};
  member.call = [method](Object& object, std::span<Variant> args) {
    if (args.size() != sizeof...(Args)) {
      throw RunTimeError(Fault::InvalidCall, "wrong number of arguments");
    }
    return [&]<std::size_t... I>(std::index_sequence<I...>) {
      C& target = static_cast<C&>(object);
      if constexpr (std::is_void_v<R>) {
        (target.*method)(FromVariant<Args>(args[I])...);
        return Variant();
      } else {
        return ToVariant<R>((target.*method)(FromVariant<Args>(args[I])...));
      }
    }
    (std::index_sequence_for<Args...>());
  };
  return member;
}

}  // namespace discoplan
