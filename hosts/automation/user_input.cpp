// SPDX-License-Identifier: MIT
#include "hosts/automation/user_input.h"

#include <map>
#include <string>

#include "discoplan/base/numbers.h"
#include "hosts/automation/values.h"

namespace discoplan {
namespace {

using nlohmann::json;

void Demand(const Node& node, NodeKind kind, const char* what) {
  if (node.kind != kind) throw RequestError("The child is no " + std::string(what) + ".");
}

void Type(Node& field, const json& text) {
  Demand(field, NodeKind::Text, "field");
  if (!text.is_string()) throw RequestError("What is typed must be a text.");
  if (field.text == text.get<std::string>()) return;
  field.text = text.get<std::string>();
  if (field.on_change) field.on_change();
}

void Key(Node& field, const json& code) {
  Demand(field, NodeKind::Text, "field");
  const int key = ToInt32(ToNumber(code, "A key code"));
  if (field.on_key) field.on_key(key);
}

void Spin(Node& spinner, const json& steps) {
  Demand(spinner, NodeKind::Spinner, "spinner");
  const int upward = ToInt32(ToNumber(steps, "A number of steps"));
  if (spinner.on_spin) spinner.on_spin(upward);
}

void Click(Node& button, const json&) {
  Demand(button, NodeKind::Button, "button");
  if (button.on_click) button.on_click();
}

void Leave(Node& field, const json&) {
  Demand(field, NodeKind::Text, "field");
  if (field.on_leave) field.on_leave();
}

void Select(Node& group, const json& index) {
  const int choice = ToInt32(ToNumber(index, "The number of an option"));
  Demand(group, NodeKind::Options, "group of options");
  if (choice < 0 || static_cast<std::size_t>(choice) >= group.options.size()) {
    throw RequestError("The child has " + std::to_string(group.options.size()) +
                       " options, numbered from 0.");
  }
  if (group.value == choice) return;
  group.value = choice;
  if (group.on_change) group.on_change();
}

void Check(Node& box, const json& ticked) {
  Demand(box, NodeKind::Check, "box to tick");
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
      {"type", {Type, true}},    {"key", {Key, true}},      {"spin", {Spin, true}},
      {"click", {Click, false}}, {"leave", {Leave, false}}, {"select", {Select, true}},
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
