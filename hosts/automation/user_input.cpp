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
