// SPDX-License-Identifier: MIT
#include "discoplan/forms/form.h"

namespace discoplan {

Form::Form(Platform& platform, std::string name, const std::string& caption)
    : platform_(platform), root_(NodeKind::Form, std::move(name), {}) {
  root_.Text(caption);
  root_.Visible(false);
}

void Form::Cancel() {
  if (cancel_ != nullptr) cancel_->Click();
  Hide();
}

Node& Form::AddPicture(Node& parent, std::string name, const TwipsBox& place) {
  return AddPictureNode(platform_, parent, std::move(name), place);
}

Node& AddPictureNode(Platform& platform, Node& parent, std::string name, const TwipsBox& place) {
  Node& node = parent.Add(NodeKind::Picture, std::move(name), place);
  node.BackColor(kWhite);
  node.Picture(platform.NewPicture(place.width, place.height));
  return node;
}

}  // namespace discoplan
