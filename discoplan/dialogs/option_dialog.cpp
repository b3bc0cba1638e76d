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
constexpr float kRowPitch = 375;
constexpr float kLabelLeft = 180;
constexpr float kLabelWidth = 1500;
constexpr float kFieldLeft = 1740;
constexpr float kFieldWidth = 900;
constexpr float kUnitWidth = 720;
constexpr float kRowHeight = 285;
constexpr float kOptionPitch = 270;
constexpr float kGroupMargin = 120;
constexpr float kSideLeft = 3600;
constexpr float kSideWidth = 2400;
constexpr float kButtonWidth = 1200;
constexpr float kButtonHeight = 375;
constexpr const char* kCaption = "Define Plot Options";

}  // namespace

OptionDialog::OptionDialog(Platform& platform, const char* name, const FrameName& frame)
    : Form(platform, name, kCaption),
      frame_(root_.Add(NodeKind::Frame, frame.name, {kMargin, kMargin, 0, 0})),
      next_top_(kFirstRow),
      side_top_(kFirstRow) {
  frame_.text = frame.caption;
  frame_.bordered = true;
}

NumberEntry& OptionDialog::AddNumber(const char* label, const char* name, const char* unit,
                                     NumberEntry::Filter filter) {
  frame_
      .Add(NodeKind::Label, std::string(name) + "Label",
           {kLabelLeft, next_top_, kLabelWidth, kRowHeight})
      .text = label;
  Node& field = frame_.Add(NodeKind::Text, name, {kFieldLeft, next_top_, kFieldWidth, kRowHeight});
  field.back_color = kWhite;
  if (*unit != '\0') {
    frame_
        .Add(NodeKind::Label, std::string(name) + "Unit",
             {kFieldLeft + kFieldWidth + 60, next_top_, kUnitWidth, kRowHeight})
        .text = unit;
  }
  next_top_ += kRowPitch;
  return *numbers_.emplace_back(std::make_unique<NumberEntry>(field, filter));
}

OptionGroup& OptionDialog::AddOptions(const char* label, const char* name,
                                      std::vector<OptionGroup::Option> options) {
  const float height = kGroupMargin + 180 + kOptionPitch * static_cast<float>(options.size());
  Node& group = frame_.Add(NodeKind::Options, name,
                           {kLabelLeft, next_top_, kFieldLeft + kFieldWidth - kLabelLeft, height});
  group.text = label;
  next_top_ += height + kGroupMargin;
  return *groups_.emplace_back(std::make_unique<OptionGroup>(group, std::move(options)));
}

Node& OptionDialog::AddSideFrame(const char* name, const char* caption, float height) {
  Node& side = frame_.Add(NodeKind::Frame, name, {kSideLeft, side_top_, kSideWidth, height});
  side.text = caption;
  side.bordered = true;
  side_top_ += height + kGroupMargin;
  return side;
}

void OptionDialog::Reserve(float bottom) { next_top_ = std::max(next_top_, bottom); }

void OptionDialog::Finish() {
  white_back_ = &frame_.Add(NodeKind::Check, "whiteback",
                            {kLabelLeft, next_top_, kFieldLeft + kFieldWidth, kRowHeight});
  white_back_->text = "White background";
  next_top_ += kRowPitch;
  FinishWithoutBackground();
}

void OptionDialog::FinishWithoutBackground() {
  const bool has_sides = side_top_ > kFirstRow;
  const float width =
      has_sides ? kSideLeft + kSideWidth + kMargin : kFieldLeft + kFieldWidth + kUnitWidth + 180;
  const float height = std::max(next_top_, has_sides ? side_top_ : 0) + kMargin;
  frame_.Move({kMargin, kMargin, width, height});
  const float buttons = width + 2 * kMargin;
  accept_ =
      &root_.Add(NodeKind::Button, "OKbtn", {buttons, 2 * kMargin, kButtonWidth, kButtonHeight});
  accept_->text = "OK";
  accept_->on_click = [this] { PressOk(); };
  cancel_ = &root_.Add(NodeKind::Button, "cancel",
                       {buttons, 3 * kMargin + kButtonHeight, kButtonWidth, kButtonHeight});
  cancel_->text = "Cancel";
  cancel_->on_click = [this] {
    source_ = nullptr;
    Hide();
  };
  root_.Move({0, 0, buttons + kButtonWidth + kMargin, height + 2 * kMargin});
}

void OptionDialog::Begin(const wafer& source) {
  source_ = &source;
  redraw_ = false;
}

void OptionDialog::Begin(const wafer& source, Colour back_color) {
  Begin(source);
  white_back_->value = back_color == kWhite ? 1 : 0;
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
