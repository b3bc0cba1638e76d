// SPDX-License-Identifier: MIT
#include "discoplan/forms/form.h"

namespace discoplan {

void Platform::ShowModal(Form& form) { form.Cancel(); }

Form::Form(Platform& platform, std::string name, const std::string& caption)
    : platform_(platform), root_(NodeKind::Form, std::move(name), {}) {
  root_.text = caption;
  root_.visible = false;
}

void Form::Cancel() {
  if (cancel_ != nullptr && cancel_->on_click) cancel_->on_click();
  Hide();
}

Node& Form::AddPicture(Node& parent, std::string name, const TwipsBox& place) {
  Node& node = parent.Add(NodeKind::Picture, std::move(name), place);
  node.picture = platform_.NewPicture(place.width, place.height);
  node.back_color = kWhite;
  return node;
}

}  // namespace discoplan
