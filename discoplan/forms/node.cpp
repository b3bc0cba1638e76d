// SPDX-License-Identifier: MIT
#include "discoplan/forms/node.h"

#include <array>

namespace discoplan {

std::string_view NameOf(NodeKind kind) {
  constexpr std::array<std::string_view, 13> kNames = {
      "control", "form", "frame", "panel",   "label",   "picture", "image",
      "button",  "text", "check", "options", "spinner", "line",
  };
  return kNames[static_cast<std::size_t>(kind)];
}

Node::Node(NodeKind node_kind, std::string node_name, const TwipsBox& place)
    : kind(node_kind), name(std::move(node_name)), box(place) {}

Node& Node::Add(NodeKind child_kind, std::string child_name, const TwipsBox& place) {
  children_.push_back(std::make_unique<Node>(child_kind, std::move(child_name), place));
  children_.back()->parent_ = this;
  return *children_.back();
}

Node* Node::Find(std::string_view wanted) {
  if (name == wanted) return this;
  for (const auto& child : children_) {
    if (Node* found = child->Find(wanted)) return found;
  }
  return nullptr;
}

bool Node::IsShown() const { return visible && (parent_ == nullptr || parent_->IsShown()); }

void Node::Move(const TwipsBox& place) {
  box = place;
  if (picture) picture->Resize(box.width, box.height);
}

void Node::caption(const std::string& new_text) {
  text = new_text;
  if (auto_size && measure) box.width = measure(*this);
}

void Node::BackColor(Colour colour) {
  back_color = colour;
  if (picture) picture->BackColor(colour);
}

}  // namespace discoplan
