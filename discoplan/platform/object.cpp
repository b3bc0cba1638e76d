// SPDX-License-Identifier: MIT
#include "discoplan/platform/object.h"

#include <algorithm>
#include <string>

#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

[[noreturn]] void Refuse(const Member& member, const char* what) {
  throw RunTimeError(Fault::MemberNotOffered, std::string(member.name) + what);
}

template <class Rows, class Matches>
auto FirstOf(const Rows& rows, const Matches& matches) {
  const auto found = std::find_if(rows.begin(), rows.end(), matches);
  return found == rows.end() ? nullptr : &*found;
}

}  // namespace

Object::~Object() = default;

std::string_view NameOf(Type type) {
  constexpr std::array<std::string_view, 12> kNames = {
      "none",   "int16",  "int32",  "float", "double",  "boolean",
      "colour", "string", "object", "array", "variant", "enumeration"};
  return kNames[static_cast<std::size_t>(type)];
}

const Enumerator* Enumeration::Find(std::string_view wanted) const {
  return FirstOf(values, [&](const Enumerator& row) {
    return row.name == wanted || (!row.alias.empty() && row.alias == wanted);
  });
}

const Enumerator* Enumeration::Find(std::int32_t wanted) const {
  return FirstOf(values, [&](const Enumerator& row) { return row.value == wanted; });
}

Variant Constant::As(Type type) const {
  switch (type) {
    case Type::Int16:
    case Type::Enumeration:
      return Variant(ToInt16(number_));
    case Type::Int32:
      return Variant(ToInt32(number_));
    case Type::Float:
      return Variant(ToFloat(number_));
    case Type::Double:
      return Variant(number_);
    case Type::Boolean:
      return BooleanVariant(number_ != 0);
    case Type::Rgb:
      return Variant(RoundTo<Colour>(number_));
    case Type::String:
      return Variant(std::string(text_));
    case Type::Object:
      return Variant(ObjectRef());
    default:
      return {};
  }
}

Variant Constant::As(StoredKind kind, Type type) const {
  switch (kind) {
    case StoredKind::Int16:
      return As(Type::Int16);
    case StoredKind::Int32:
      return As(type == Type::Rgb ? Type::Rgb : Type::Int32);
    case StoredKind::Double:
      return As(Type::Double);
    case StoredKind::Boolean:
      return As(Type::Boolean);
    case StoredKind::String:
      return As(Type::String);
    default:
      return As(Type::Object);
  }
}

Variant Member::Get(Object& object) const {
  if (get == nullptr) Refuse(*this, " can't be read");
  return get(object, *this);
}

void Member::Set(Object& object, const Variant& value) const {
  if (set == nullptr) Refuse(*this, " can't be written");
  set(object, value, *this);
}

Variant Member::Call(Object& object, std::span<Variant> args) const {
  if (call == nullptr) Refuse(*this, " is no method");
  if (args.size() != parameters.size()) {
    throw RunTimeError(Fault::InvalidCall, "wrong number of arguments");
  }
  return call(object, args, *this);
}

const Member* MemberTable::Find(std::string_view name) const {
  return FirstOf(members_, [&](const Member& row) {
    return row.name == name || (!row.alias.empty() && row.alias == name);
  });
}

const Member* MemberTable::Find(std::int32_t id) const {
  return FirstOf(members_, [&](const Member& row) { return row.id == id; });
}

const Member& MemberTable::At(std::string_view name) const {
  if (const Member* member = Find(name)) return *member;
  throw RunTimeError(Fault::MemberNotOffered, std::string(name));
}

}  // namespace discoplan
