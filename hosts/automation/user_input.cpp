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
  field.Type(text.get<std::string>());
}

void Key(Node& field, const json& code) {
  Demand(field, NodeKind::Text, "field");
  field.Key(ToInt32(ToNumber(code, "A key code")));
}

void Spin(Node& spinner, const json& steps) {
  Demand(spinner, NodeKind::Spinner, "spinner");
  spinner.Spin(ToInt32(ToNumber(steps, "A number of steps")));
}

void Click(Node& button, const json&) {
  Demand(button, NodeKind::Button, "button");
  button.Click();
}

void Leave(Node& field, const json&) {
  Demand(field, NodeKind::Text, "field");
  field.Leave();
}

void Select(Node& group, const json& index) {
  const int choice = ToInt32(ToNumber(index, "The number of an option"));
  Demand(group, NodeKind::Options, "group of options");
  if (choice < 0 || static_cast<std::size_t>(choice) >= group.Options().size()) {
    throw RequestError("The child has " + std::to_string(group.Options().size()) +
                       " options, numbered from 0.");
  }
  group.Choose(choice);
}

void Check(Node& box, const json& ticked) {
  Demand(box, NodeKind::Check, "box to tick");
  const bool tick =
      ticked.is_boolean() ? ticked.get<bool>() : ToNumber(ticked, "Whether a box is ticked") != 0;
  box.Tick(tick);
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
