// SPDX-License-Identifier: MIT
#pragma once

/// Objects with named members: what automation, property pages, stored properties and every
/// binding see of a control or a surface.
///
/// A class lists its members once, in interface order, as a `MemberTable`; all others read it:
///
///     for (const Member& member : control.Members()) Show(member.name, member.type);
///     control.Members().At("TestDiameter").Set(control, Variant(150.0F));

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "discoplan/base/variant.h"
#include "discoplan/export.h"

namespace discoplan {

class MemberTable;

class DISCOPLAN_EXPORT Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object();

  virtual const MemberTable& Members() const = 0;
};

/// A named value of an enumeration.
struct Enumerator {
  std::string_view name;
  std::int16_t value;
};

/// One property or method. The functions raise `RunTimeError` for a value of the wrong type
/// (`TypeMismatch`) or out of its range (`Overflow`), and for a wrong number of arguments
/// (`InvalidCall`).
struct Member {
  enum class Kind { Property, Method };

  std::string_view name;
  Kind kind;
  std::string_view type;  ///< Of the value or of the result; "none" for a method without one.
  std::span<const Enumerator> choices = {};  ///< Of an enumeration.
  std::function<Variant(Object&)> get;
  std::function<void(Object&, const Variant&)> set;
  std::vector<std::string_view> parameters;  ///< Types of a method's arguments.
  /// By-reference arguments are changed in place.
  std::function<Variant(Object&, std::span<Variant>)> call;

  bool writable() const { return set != nullptr; }
};

/// The members of one class, in interface order.
class DISCOPLAN_EXPORT MemberTable {
 public:
  MemberTable() = default;
  explicit MemberTable(std::vector<Member> members) : members_(std::move(members)) {}

  auto begin() const { return members_.begin(); }
  auto end() const { return members_.end(); }
  std::size_t size() const { return members_.size(); }

  /// The member of that name, or nothing. Names are compared to the letter.
  const Member* Find(std::string_view name) const;
  /// The same; raises `MemberNotOffered` where there is none.
  const Member& At(std::string_view name) const;

 private:
  std::vector<Member> members_;
};

}  // namespace discoplan
