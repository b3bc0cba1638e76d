// SPDX-License-Identifier: MIT
#include "hosts/json/class_json.h"

#include "discoplan/version.h"
#include "hosts/json/json_number.h"

namespace discoplan {
namespace {

using nlohmann::ordered_json;

ordered_json ValueOf(const Variant& value, Type type) {
  switch (type) {
    case Type::Boolean:
      return value.AsBoolean();
    case Type::String:
      return value.AsString();
    case Type::Rgb:
      return value.AsColour();
    case Type::Float:
      return ToJson(value.AsFloat());
    case Type::Double:
      return ToJson(value.AsDouble());
    case Type::Int16:
    case Type::Int32:
    case Type::Enumeration:
      return value.AsInt32();
    default:
      return nullptr;
  }
}

Type TypeOf(StoredKind kind, Type member) {
  switch (kind) {
    case StoredKind::Int16:
      return Type::Int16;
    case StoredKind::Int32:
      return member == Type::Rgb ? Type::Rgb : Type::Int32;
    case StoredKind::Double:
      return Type::Double;
    default:
      return member;
  }
}

ordered_json Described(const ParameterList& parameters) {
  ordered_json list = ordered_json::array();
  for (const Parameter& parameter : parameters) {
    list.push_back({{"name", parameter.name},
                    {"type", NameOf(parameter.type)},
                    {"direction", parameter.direction == Direction::In ? "in" : "in-out"}});
  }
  return list;
}

ordered_json Kept(const ControlClass& kind, const Member& member) {
  if (!member.kept()) return nullptr;
  const Stored& stored = member.stored;
  return {{"key", kind.KeyOf(member)},
          {"kind", NameOf(stored.kind)},
          {"default", ValueOf(stored.default_value.As(stored.kind, member.type),
                              TypeOf(stored.kind, member.type))}};
}

ordered_json Described(const ControlClass& kind, const Member& member) {
  const bool property = member.kind == Member::Kind::Property;
  const bool gives = !property && member.type != Type::None;
  return {{"name", member.name},
          {"id", member.id},
          {"kind", property ? "property" : "method"},
          {"type", member.TypeName()},
          {"writable", member.writable()},
          {"parameters", Described(member.parameters)},
          {"result", gives ? ordered_json(member.TypeName()) : ordered_json()},
          {"initial", member.initial.IsNothing()
                          ? ordered_json()
                          : ValueOf(member.initial.As(member.type), member.type)},
          {"stored", Kept(kind, member)},
          {"doc", member.doc}};
}

ordered_json Described(const ControlClass& kind) {
  ordered_json members = ordered_json::array();
  for (const Member& member : kind.members) members.push_back(Described(kind, member));
  ordered_json events = ordered_json::array();
  for (const Event& event : kind.events) {
    events.push_back({{"name", event.name},
                      {"id", event.id},
                      {"parameters", Described(event.parameters)},
                      {"doc", event.doc}});
  }
  return {{"name", kind.name},
          {"title", kind.title},
          {"summary", kind.summary},
          {"class_id", kind.class_id},
          {"program_id", kind.program_id},
          {"pages", kind.pages},
          {"members", std::move(members)},
          {"events", std::move(events)}};
}

ordered_json Described(const Enumeration& enumeration, Aliases aliases) {
  ordered_json values = ordered_json::array();
  for (const Enumerator& row : enumeration.values) {
    values.push_back({{"name", row.name}, {"value", row.value}, {"doc", row.doc}});
    if (aliases == Aliases::Told && !row.alias.empty()) values.back()["alias"] = row.alias;
  }
  return {{"name", enumeration.name}, {"values", std::move(values)}};
}

}  // namespace

ordered_json DescribedClasses(std::span<const ControlClass* const> classes, Aliases aliases) {
  ordered_json text = {{"version", LibraryVersion()},
                       {"enumerations", ordered_json::array()},
                       {"classes", ordered_json::array()}};
  for (const Enumeration& enumeration : Enumerations()) {
    text["enumerations"].push_back(Described(enumeration, aliases));
  }
  for (const ControlClass* kind : classes) text["classes"].push_back(Described(*kind));
  return text;
}

}  // namespace discoplan
