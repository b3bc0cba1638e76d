// SPDX-License-Identifier: MIT
#include "apps/discoplan/member_text.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "apps/discoplan/command.h"
#include "discoplan/base/charconv.h"
#include "discoplan/base/numbers.h"

namespace discoplan::app {
namespace {

std::optional<double> ToNumber(const std::string& text) {
  double number = 0;
  const auto [end, fault] = FromChars(text.data(), text.data() + text.size(), number);
  if (fault != std::errc() || end != text.data() + text.size()) return {};
  return number;
}

/// "#RRGGBB" as 0x00BBGGRR.
std::optional<Colour> ToColour(const std::string& text) {
  if (text.size() != 7 || text[0] != '#') return {};
  Colour rgb = 0;
  const auto [end, fault] = std::from_chars(text.data() + 1, text.data() + text.size(), rgb, 16);
  if (fault != std::errc() || end != text.data() + text.size()) return {};
  return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | rgb >> 16;
}

/// What a value of the member looks like.
std::string FormOf(const Member& member) {
  if (member.type == Type::Rgb) return "; it is #RRGGBB, such as #FF0000 for red";
  if (member.type == Type::Boolean) return "; it is true or false";
  if (member.enumeration == nullptr) return "; it is a number";
  std::string names;
  for (const Enumerator& choice : member.Choices()) {
    names += (names.empty() ? "; it is one of " : ", ") + std::string(choice.name);
  }
  return names;
}

Variant ToVariant(const std::string& text, const Member& member) {
  if (member.type == Type::String) return Variant(text);
  if (member.enumeration != nullptr) {
    if (const Enumerator* choice = member.enumeration->Find(text)) return Variant(choice->value);
  }
  if (member.type == Type::Rgb) {
    if (const auto colour = ToColour(text)) return Variant(*colour);
  }
  if (text == "true" || text == "false") return BooleanVariant(text == "true");
  if (const auto number = ToNumber(text)) return Variant(*number);
  throw UsageError("--set " + std::string(member.name) + ": '" + text + "' is no value of type " +
                   std::string(member.TypeName()) + FormOf(member));
}

std::string WritableNames(const MemberTable& members) {
  std::string names;
  for (const Member& member : members) {
    if (!member.writable() || member.type == Type::Object) continue;
    names += (names.empty() ? "" : ", ") + std::string(member.name);
  }
  return names;
}

}  // namespace

void SetMember(Object& object, const std::string& assignment) {
  const std::size_t mark = assignment.find('=');
  if (mark == std::string::npos)
    throw UsageError("--set takes NAME=VALUE, not '" + assignment + "'");
  const std::string name = assignment.substr(0, mark);
  const Member* member = object.Members().Find(name);
  if (member == nullptr || !member->writable() || member->type == Type::Object) {
    throw UsageError("--set: '" + name + "' is none of " + WritableNames(object.Members()));
  }
  try {
    member->Set(object, ToVariant(assignment.substr(mark + 1), *member));
  } catch (const RunTimeError& error) {
    throw UsageError("--set " + assignment + ": " + error.what());
  }
}

}  // namespace discoplan::app
