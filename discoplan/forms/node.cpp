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
    : kind(node_kind), name(std::move(node_name)), box_(place) {}

Node& Node::Add(NodeKind child_kind, std::string child_name, const TwipsBox& place) {
  children_.push_back(std::make_unique<Node>(child_kind, std::move(child_name), place));
  Node& child = *children_.back();
  child.parent_ = this;
  Note(Aspect::Children);
  return child;
}

Node* Node::Find(std::string_view wanted) {
  if (name == wanted) return this;
  for (const auto& child : children_) {
    if (Node* found = child->Find(wanted)) return found;
  }
  return nullptr;
}

bool Node::IsShown() const { return visible_ && (parent_ == nullptr || parent_->IsShown()); }

void Node::Watch(Watcher watcher) {
  watcher_ = watcher ? std::make_shared<const Watcher>(std::move(watcher)) : nullptr;
}

/// The watcher of a root may drop it, and itself.
void Node::Note(Aspect aspect) {
  for (const Node *node = this, *next = nullptr; node != nullptr; node = next) {
    next = node->parent_;
    if (const auto watcher = node->watcher_) (*watcher)(*this, aspect);
  }
}

void Node::Move(const TwipsBox& place) {
  if (picture_) picture_->Resize(place.width, place.height);
  Write(box_, place, Aspect::Place);
}

void Node::Text(const std::string& text) {
  Write(text_, text, Aspect::Text);
  if (measure_) Width(measure_(*this));
}

void Node::BackColor(Colour colour) {
  Write(back_color_, colour, Aspect::Look);
  if (picture_) picture_->BackColor(colour);
}

void Node::Picture(std::shared_ptr<discoplan::Picture> picture) {
  if (picture_) picture_->Watch({});
  picture_ = std::move(picture);
  if (!picture_) return;
  picture_->Watch([this](PictureNews news) {
    Note(news == PictureNews::Refresh ? Aspect::Refresh : Aspect::Pixels);
  });
}

std::string IndexedName(std::string_view array, std::size_t index) {
  return std::string(array) + "(" + std::to_string(index) + ")";
}

// A handler may take the node's place in its owner: it is called from a copy.

void Node::Click() {
  if (const auto handler = on_click) handler();
}

void Node::Type(const std::string& text) {
  if (text_ == text) return;
  Text(text);
  if (const auto handler = on_change) handler();
}

void Node::Tick(bool ticked) {
  if ((value_ != 0) == ticked) return;
  Value(ticked ? 1 : 0);
  if (const auto handler = on_change) handler();
}

void Node::Choose(std::int32_t option) {
  if (option == value_ || option < 0 || static_cast<std::size_t>(option) >= options_.size()) return;
  Value(option);
  if (const auto handler = on_change) handler();
}

void Node::Spin(int steps) {
  if (const auto handler = on_spin) handler(steps);
}

void Node::Key(int code) {
  if (const auto handler = on_key) handler(code);
}

bool Node::Leave() {
  const auto handler = on_leave;
  return !handler || handler();
}

}  // namespace discoplan
