// SPDX-License-Identifier: MIT
#include "hosts/automation/user_input.h"

#include <map>
#include <string>

#include "discoplan/core/numbers.h"
#include "hosts/automation/values.h"

namespace discoplan {
namespace {

using nlohmann::json;

void Type(Node& field, const json& text) {
  if (!text.is_string()) throw RequestError("What is typed must be a text.");
  if (field.text == text.get<std::string>()) return;
  field.text = text.get<std::string>();
  if (field.on_change) field.on_change();
}

template <std::function<void(int)> Node::*kHandler>
void Send(Node& field, const json& number) {
  const int whole = ToInt32(ToNumber(number, "A key code or a number of steps"));
  if (field.*kHandler) (field.*kHandler)(whole);
}

void Click(Node& button, const json&) {
  if (button.on_click) button.on_click();
}

void Leave(Node& field, const json&) {
  if (field.on_leave) field.on_leave();
}

void Select(Node& group, const json& index) {
  const int choice = ToInt32(ToNumber(index, "The number of an option"));
  if (group.kind != NodeKind::Options) throw RequestError("The child has no options.");
  if (choice < 0 || static_cast<std::size_t>(choice) >= group.options.size()) {
    throw RequestError("The child has " + std::to_string(group.options.size()) +
                       " options, numbered from 0.");
  }
  if (group.value == choice) return;
  group.value = choice;
  if (group.on_change) group.on_change();
}

void Check(Node& box, const json& ticked) {
  if (box.kind != NodeKind::Check) throw RequestError("The child is no box to tick.");
  const bool tick =
      ticked.is_boolean() ? ticked.get<bool>() : ToNumber(ticked, "Whether a box is ticked") != 0;
  if ((box.value != 0) == tick) return;
  box.value = tick ? 1 : 0;
  if (box.on_change) box.on_change();
}

struct Action {
  void (*act)(Node&, const json&);
  bool has_argument;
};

const std::map<std::string, Action, std::less<>>& Actions() {
  static const std::map<std::string, Action, std::less<>> actions = {
      {"type", {Type, true}},
      {"key", {Send<&Node::on_key>, true}},
      {"spin", {Send<&Node::on_spin>, true}},
      {"click", {Click, false}},
      {"leave", {Leave, false}},
      {"select", {Select, true}},
      {"check", {Check, true}},
  };
  return actions;
}

}  // namespace

void ActOn(Node& root, const json& action) {
  if (!action.is_array() || action.size() < 2 || !action[0].is_string() || !action[1].is_string()) {
    throw RequestError("An action is a list of its name, a child's name and what belongs to it.");
  }
  const auto found = Actions().find(action[0].get<std::string>());
  if (found == Actions().end()) {
    throw RequestError("The action \"" + action[0].get<std::string>() + "\" isn't offered.");
  }
  const std::string name = action[1].get<std::string>();
  Node* child = root.Find(name);
  if (child == nullptr) throw RequestError("There is no child \"" + name + "\".");
  if (!child->IsShown()) throw RequestError("The child \"" + name + "\" is hidden.");
  const std::size_t due = found->second.has_argument ? 3 : 2;
  if (action.size() != due) {
    throw RequestError("The action takes a list of " + std::to_string(due) + ".");
  }
  found->second.act(*child, action.back());
}

}  // namespace discoplan
