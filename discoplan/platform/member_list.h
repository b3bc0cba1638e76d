// SPDX-License-Identifier: MIT
#pragma once

/// How a class writes down its members: typed C++ functions become constant rows.
///
///     constexpr std::array kSize = {
///         Property<Plot2D, float, &Plot2D::TestDiameter, &Plot2D::TestDiameter>({
///             .name = "TestDiameter", .id = 18, .doc = "Diameter of the measured area in mm."}),
///         Method<&Plot2D::Plot>({.name = "Plot", .id = 30, .doc = "Draws."}),
///     };

#include <array>
#include <string_view>
#include <type_traits>
#include <utility>

#include "discoplan/base/numbers.h"
#include "discoplan/platform/object.h"

namespace discoplan {

/// The description of an enumeration of the interface; nothing for a plain code.
template <class T>
inline constexpr std::nullptr_t kEnumeration = nullptr;
template <class T>
inline constexpr bool kIsDescribed =
    !std::is_same_v<decltype(kEnumeration<T>), const std::nullptr_t>;

template <class T>
constexpr Type TypeOf() {
  if constexpr (std::is_void_v<T>) return Type::None;
  if constexpr (std::is_enum_v<T>) return kIsDescribed<T> ? Type::Enumeration : Type::Int16;
  if constexpr (std::is_same_v<T, float>) return Type::Float;
  if constexpr (std::is_same_v<T, double>) return Type::Double;
  if constexpr (std::is_same_v<T, std::int16_t>) return Type::Int16;
  if constexpr (std::is_same_v<T, std::int32_t>) return Type::Int32;
  if constexpr (std::is_same_v<T, Colour>) return Type::Rgb;
  if constexpr (std::is_same_v<T, bool>) return Type::Boolean;
  if constexpr (std::is_same_v<T, std::string>) return Type::String;
  if constexpr (std::is_same_v<T, ObjectRef>) return Type::Object;
  if constexpr (std::is_same_v<T, FloatArray> || std::is_same_v<T, ArrayView>) return Type::Array;
  if constexpr (std::is_same_v<T, Variant>) return Type::Variant;
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
    return value.IsEmpty() ? ArrayView() : value.AsView();
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

/// What a row states beside what its functions tell.
struct MemberFacts {
  std::string_view name;
  std::int32_t id = 0;
  std::string_view alias = {};
  std::array<std::string_view, ParameterList::kMost> parameters = {};
  std::string_view doc = {};
  Change change = Change::Silent;
  std::string_view announced = {};  ///< Where that isn't the name.
  Constant initial = {};
  Stored stored = {};
  bool run_time_only = false;
  bool hidden = false;
};

namespace member_detail {

/// The object as one of that class.
template <class C>
C& As(Object& object, const Member& member) {
  if (auto* target = dynamic_cast<C*>(&object)) return *target;
  throw RunTimeError(Fault::MemberNotOffered,
                     std::string(member.name) + " of an object of another class");
}

/// What a setter of a value of that type takes.
template <class T>
using Given =
    std::conditional_t<std::is_same_v<std::remove_cvref_t<T>, std::string>, const std::string&, T>;

template <class C, class T, T (C::*get)() const>
Variant Get(Object& object, const Member& member) {
  return ToVariant<std::remove_cvref_t<T>>((As<C>(object, member).*get)());
}

template <class C, class T, void (C::*set)(Given<T>)>
void Set(Object& object, const Variant& value, const Member& member) {
  Variant copy = value;
  (As<C>(object, member).*set)(FromVariant<std::remove_cvref_t<T>>(copy));
}

template <class>
struct Signature;
template <class Class, class R, class... Args>
struct Signature<R (Class::*)(Args...)> {
  using C = Class;
  using Result = R;

  static constexpr ParameterList Parameters(const std::string_view* names) {
    ParameterList list;
    std::size_t i = 0;
    (list.Add(
         {.name = names[i++],
          .type = TypeOf<std::remove_cvref_t<Args>>(),
          .direction = std::is_reference_v<Args> && !std::is_const_v<std::remove_reference_t<Args>>
                           ? Direction::InOut
                           : Direction::In}),
     ...);
    return list;
  }

  template <auto method, class Given, std::size_t... I>
  static Variant Call(C& target, std::span<Variant> args, std::index_sequence<I...>) {
    if constexpr (std::is_void_v<R>) {
      (target.*method)(FromVariant<Args>(args[I])...);
      return Variant();
    } else {
      return ToVariant<Given>(static_cast<Given>((target.*method)(FromVariant<Args>(args[I])...)));
    }
  }
  template <auto method, class Given>
  static Variant Call(Object& object, std::span<Variant> args, const Member& member) {
    return Call<method, Given>(As<C>(object, member), args, std::index_sequence_for<Args...>());
  }
};

}  // namespace member_detail

/// Property of type T that can't be written.
template <class C, class T, T (C::*get)() const>
constexpr Member ReadOnly(const MemberFacts& facts) {
  using Value = std::remove_cvref_t<T>;
  return {.name = facts.name,
          .kind = Member::Kind::Property,
          .type = TypeOf<Value>(),
          .enumeration = kEnumeration<Value>,
          .id = facts.id,
          .alias = facts.alias,
          .doc = facts.doc,
          .parameters = {},
          .run_time_only = facts.run_time_only,
          .hidden = facts.hidden,
          .change = facts.change,
          .announced = facts.change == Change::Silent ? std::string_view()
                       : facts.announced.empty()      ? facts.name
                                                      : facts.announced,
          .initial = facts.initial,
          .stored = facts.stored,
          .get = &member_detail::Get<C, T, get>,
          .set = nullptr,
          .call = nullptr};
}

/// Property of type T through an overloaded pair `T Name() const; void Name(T)`.
template <class C, class T, T (C::*get)() const, void (C::*set)(member_detail::Given<T>)>
constexpr Member Property(const MemberFacts& facts) {
  Member member = ReadOnly<C, T, get>(facts);
  member.set = &member_detail::Set<C, T, set>;
  return member;
}

/// A method; its result is given as `Result`.
template <auto method, class Result = typename member_detail::Signature<decltype(method)>::Result>
constexpr Member Method(const MemberFacts& facts) {
  using Signature = member_detail::Signature<decltype(method)>;
  return {.name = facts.name,
          .kind = Member::Kind::Method,
          .type = TypeOf<Result>(),
          .enumeration = nullptr,
          .id = facts.id,
          .alias = facts.alias,
          .doc = facts.doc,
          .parameters = Signature::Parameters(facts.parameters.data()),
          .run_time_only = true,
          .hidden = facts.hidden,
          .change = Change::Silent,
          .announced = {},
          .initial = {},
          .stored = {},
          .get = nullptr,
          .set = nullptr,
          .call = &Signature::template Call<method, Result>};
}

/// Blocks of rows, one behind the other.
template <std::size_t... N>
constexpr auto Joined(const std::array<Member, N>&... blocks) {
  std::array<Member, (N + ...)> all{};
  std::size_t size = 0;
  const auto add = [&](const auto& block) {
    for (const Member& row : block) all[size++] = row;
  };
  (add(blocks), ...);
  return all;
}

}  // namespace discoplan
