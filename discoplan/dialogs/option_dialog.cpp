// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/option_dialog.h"

#include <algorithm>

#include "discoplan/base/numbers.h"
#include "discoplan/core/number_checks.h"

namespace discoplan {
namespace {

// Twips.
constexpr float kMargin = 120;
constexpr float kFirstRow = 300;
constexpr float kRightOfFields = 900;  // for units
constexpr float kSideLeft = 3600;
constexpr float kSideWidth = 2400;
constexpr float kButtonWidth = 1200;
constexpr float kButtonHeight = 375;
constexpr const char* kCaption = "Define Plot Options";

}  // namespace

OptionDialog::OptionDialog(Platform& platform, const char* name, const FrameName& frame)
    : Form(platform, name, kCaption),
      frame_(root_.Add(NodeKind::Frame, frame.name, {kMargin, kMargin, 0, 0})),
      column_(
          frame_,
          {.field_left = kOptionFieldLeft, .field_width = kOptionFieldWidth, .check_width = 2640},
          kFirstRow),
      side_top_(kFirstRow) {
  frame_.Text(frame.caption);
  frame_.Bordered(true);
}

Node& OptionDialog::AddSideFrame(const char* name, const char* caption, float height) {
  Node& side = frame_.Add(NodeKind::Frame, name, {kSideLeft, side_top_, kSideWidth, height});
  side.Text(caption);
  side.Bordered(true);
  side_top_ += height + kGroupGap;
  return side;
}

void OptionDialog::Finish() {
  white_back_ = &column_.AddCheck("White background", "whiteback");
  FinishWithoutBackground();
}

Node& OptionDialog::AddButton(const char* name, const char* caption, const TwipsBox& place,
                              std::function<void()> press) {
  Node& button = root_.Add(NodeKind::Button, name, place);
  button.Text(caption);
  button.on_click = std::move(press);
  return button;
}

void OptionDialog::FinishWithoutBackground() {
  const bool has_sides = side_top_ > kFirstRow;
  const float width =
      has_sides ? kSideLeft + kSideWidth + kMargin : column_.places().Right() + kRightOfFields;
  const float height = std::max(column_.next_top(), has_sides ? side_top_ : 0) + kMargin;
  frame_.Move({kMargin, kMargin, width, height});
  const float buttons = width + 2 * kMargin;
  accept_ = &AddButton("OKbtn", "OK", {buttons, 2 * kMargin, kButtonWidth, kButtonHeight},
                       [this] { PressOk(); });
  cancel_ = &AddButton("cancel", "Cancel",
                       {buttons, 3 * kMargin + kButtonHeight, kButtonWidth, kButtonHeight}, [this] {
                         source_ = nullptr;
                         Hide();
                       });
  root_.Move({0, 0, buttons + kButtonWidth + kMargin, height + 2 * kMargin});
}

void OptionDialog::Begin(const wafer& source) {
  source_ = &source;
  redraw_ = false;
}

void OptionDialog::Begin(const wafer& source, Colour back_color) {
  Begin(source);
  white_back_->Value(back_color == kWhite ? 1 : 0);
}

double OptionDialog::CoarsestPitch() const { return ToInt16(source_->TestDiameter / 4.0 + 1); }

void OptionDialog::CheckOnOk(NumberEntry& field, const char* label, double lower,
                             std::optional<double> upper) {
  checks_.push_back({&field, label, lower, upper});
}

void OptionDialog::PressOk() {
  std::string errors;
  for (const Check& check : checks_) {
    CheckRangeOk(check.field->text(), check.lower, check.upper ? *check.upper : CoarsestPitch(),
                 errors, check.label);
  }
  if (errors.empty()) return Accept();
  platform_.Show({.text = errors, .title = "Input Error", .system_modal = true});
}

void OptionDialog::Accept() {
  redraw_ = true;
  Hide();
}

}  // namespace discoplan
