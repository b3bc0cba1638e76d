// SPDX-License-Identifier: MIT
#pragma once

/// Objects with named members: what automation, property pages, stored properties and every
/// binding see of a control or a surface.
///
/// A class describes its members once, in interface order, as constant rows; all others read them:
///
///     for (const Member& member : control.Members()) Show(member.name, member.TypeName());
///     control.Members().At("TestDiameter").Set(control, Variant(150.0F));

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include "discoplan/base/variant.h"
#include "discoplan/export.h"
#include "discoplan/platform/property_bag.h"

namespace discoplan {

class MemberTable;

/// A host that counts references holds objects as `ObjectRef`. Such an object stays alive while one
/// of its own members runs, also when an event handler drops the last reference meanwhile.
class DISCOPLAN_EXPORT Object : public std::enable_shared_from_this<Object> {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object();

  virtual const MemberTable& Members() const = 0;
};

/// What a value that crosses the interface is. A boolean is the 16-bit -1 or 0, an array one of
/// 32-bit floats, a variant any of them.
enum class Type : std::uint8_t {
  None,
  Int16,
  Int32,
  Float,
  Double,
  Boolean,
  Rgb,  ///< A colour.
  String,
  Object,
  Array,
  Variant,
  Enumeration,
};

/// "none", "int16", "int32", "float", "double", "boolean", "colour", "string", "object", "array",
/// "variant" or "enumeration".
DISCOPLAN_EXPORT std::string_view NameOf(Type type);

/// A named value of an enumeration.
struct Enumerator {
  std::string_view name;
  std::int16_t value;
  std::string_view doc;         ///< One sentence.
  std::string_view alias = {};  ///< For languages that reserve the name.
};

/// An enumeration of the interface.
struct Enumeration {
  std::string_view name;
  std::span<const Enumerator> values;

  /// The enumerator of that name or alias, or of that value; nothing where there is none.
  DISCOPLAN_EXPORT const Enumerator* Find(std::string_view name) const;
  DISCOPLAN_EXPORT const Enumerator* Find(std::int32_t value) const;
};

/// In-out arguments are changed in place.
enum class Direction : std::uint8_t { In, InOut };

struct Parameter {
  std::string_view name = {};
  Type type = Type::None;
  Direction direction = Direction::In;
};

/// The parameters of a method or an event, in order.
class ParameterList {
 public:
  static constexpr std::size_t kMost = 4;

  constexpr ParameterList() = default;
  constexpr void Add(const Parameter& parameter) { parameters_[size_++] = parameter; }

  constexpr const Parameter* begin() const { return parameters_.data(); }
  constexpr const Parameter* end() const { return parameters_.data() + size_; }
  constexpr std::size_t size() const { return size_; }
  constexpr const Parameter& operator[](std::size_t i) const { return parameters_[i]; }

 private:
  std::array<Parameter, kMost> parameters_{};
  std::size_t size_ = 0;
};

/// A number or a text that a row states, or nothing.
class Constant {
 public:
  constexpr Constant() = default;
  template <class T>
  requires std::is_arithmetic_v<T>
  constexpr Constant(T number) : kind_(Kind::Number), number_(static_cast<double>(number)) {}
  constexpr Constant(const char* text) : kind_(Kind::Text), text_(text) {}

  constexpr bool IsNothing() const { return kind_ == Kind::Nothing; }
  /// As a value of that type, or of that kind in a store, where colours are 32-bit numbers.
  DISCOPLAN_EXPORT Variant As(Type type) const;
  DISCOPLAN_EXPORT Variant As(StoredKind kind, Type type) const;

 private:
  enum class Kind : std::uint8_t { Nothing, Number, Text };

  Kind kind_ = Kind::Nothing;
  double number_ = 0;
  std::string_view text_ = {};
};

/// What writing a property sets off. Each step includes those above it.
enum class Change : std::uint8_t {
  Silent,     ///< Nothing.
  Announced,  ///< The container is told, so that it stores the property.
  Repainted,  ///< Before that, the control is painted again.
  Stale,      ///< Before that, the picture counts as out of date: the next `Plot` draws anew.
};

struct Member;

/// How a property is kept in a store: under which key, of which kind, and with which default.
/// Without a key it isn't.
struct Stored {
  /// What a control's class puts before the key.
  enum class Prefix : std::uint8_t { None, First, Last, Colours };

  std::string_view key = {};  ///< Behind the prefix.
  StoredKind kind = StoredKind::Int16;
  Constant default_value = {};  ///< An object's is nothing.
  Prefix prefix = Prefix::None;

  /// Where reading differs from writing. Stores that exist depend on it.
  struct Reading {
    StoredKind kind;
    Constant default_value;  ///< Nothing stands for the property's present value.
    /// In place of the property's own set.
    void (*take)(Object&, const Variant&, const Member&) = nullptr;
  };
  const Reading* reading = nullptr;
};

/// One property or method.
struct Member {
  enum class Kind : std::uint8_t { Property, Method };

  std::string_view name;
  Kind kind;
  Type type;  ///< Of the value or of the result.
  const Enumeration* enumeration = nullptr;
  std::int32_t id = 0;          ///< By which a host calls it; never changes.
  std::string_view alias = {};  ///< For languages that reserve the name.
  std::string_view doc = {};    ///< What it is, with unit, range and what becomes of bad values.
  ParameterList parameters = {};

  bool run_time_only = false;  ///< Of no use at design time.
  bool hidden = false;         ///< Not for people who browse the members.
  Change change = Change::Silent;
  std::string_view announced = {};  ///< The name that the container is told.
  Constant initial = {};            ///< The value in a new object, as far as that is stated.
  Stored stored = {};

  // By `Get`, `Set` and `Call` below; nothing where the member doesn't offer it.
  Variant (*get)(Object&, const Member&) = nullptr;
  void (*set)(Object&, const Variant&, const Member&) = nullptr;
  Variant (*call)(Object&, std::span<Variant>, const Member&) = nullptr;

  bool writable() const { return set != nullptr; }
  bool announces() const { return change != Change::Silent; }
  bool kept() const { return !stored.key.empty(); }
  /// The name of the type or the enumeration.
  std::string_view TypeName() const {
    return enumeration != nullptr ? enumeration->name : NameOf(type);
  }
  /// The enumerators; none of another type.
  std::span<const Enumerator> Choices() const {
    return enumeration != nullptr ? enumeration->values : std::span<const Enumerator>();
  }

  // Each raises `RunTimeError`: `MemberNotOffered` for an object of another class and for what the
  // member can't do, `TypeMismatch` for a value of the wrong type, `Overflow` for one out of its
  // range, `InvalidCall` for a wrong number of arguments.
  DISCOPLAN_EXPORT Variant Get(Object& object) const;
  DISCOPLAN_EXPORT void Set(Object& object, const Variant& value) const;
  DISCOPLAN_EXPORT Variant Call(Object& object, std::span<Variant> args) const;
};

/// The members of one class, in interface order. The rows outlive it.
class DISCOPLAN_EXPORT MemberTable {
 public:
  constexpr MemberTable() = default;
  constexpr explicit MemberTable(std::span<const Member> members) : members_(members) {}

  constexpr auto begin() const { return members_.begin(); }
  constexpr auto end() const { return members_.end(); }
  constexpr std::size_t size() const { return members_.size(); }

  /// The member of that name or alias, or nothing. Names are compared to the letter.
  const Member* Find(std::string_view name) const;
  const Member* Find(std::int32_t id) const;
  /// The same; raises `MemberNotOffered` where there is none.
  const Member& At(std::string_view name) const;

 private:
  std::span<const Member> members_;
};

}  // namespace discoplan
