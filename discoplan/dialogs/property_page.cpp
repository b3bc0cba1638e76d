// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/property_page.h"

#include <algorithm>

#include "discoplan/base/numbers.h"
#include "discoplan/platform/member_list.h"
#include "discoplan/render/number_text.h"

namespace discoplan {
namespace {

// Twips.
constexpr float kMargin = 180;
constexpr float kFrameTitle = 300;
constexpr float kPreviewLeft = 3300;
constexpr float kPreviewSide = 1020;
constexpr FieldColumn::Places kPlaces{
    .left = kMargin, .field_left = 1800, .field_width = 1200, .check_width = 2820};

using C = PropertyPage;
constexpr std::array kMembers = {
    ReadOnly<C, bool, &C::Changed>({.name = "Changed"}),
    Method<&C::SelectionChanged>({.name = "SelectionChanged"}),
    Method<&C::ApplyChanges>({.name = "ApplyChanges"}),
};
constexpr MemberTable kTable(kMembers);

}  // namespace

PropertyPage::PropertyPage(Platform& platform, const char* name, const char* caption)
    : Form(platform, name, caption), column_(root_, kPlaces, kMargin), side_top_(kMargin) {
  root_.Visible(true);
}

void PropertyPage::Select(Object* control) {
  control_ = control;
  if (control_ != nullptr) SelectionChanged();
}

void PropertyPage::Forget(const Object& control) {
  if (control_ == &control) control_ = nullptr;
}

Variant PropertyPage::Get(std::string_view property) const {
  if (control_ == nullptr) throw RunTimeError(Fault::ObjectNotSet, "no control is selected");
  return control_->Members().At(property).Get(*control_);
}

void PropertyPage::Set(std::string_view property, const Variant& value) const {
  if (control_ == nullptr) throw RunTimeError(Fault::ObjectNotSet, "no control is selected");
  control_->Members().At(property).Set(*control_, value);
}

void PropertyPage::Bind(std::string_view property, std::function<void(const Variant&)> show,
                        std::function<Variant()> entered) {
  fields_[property] = {std::move(show), std::move(entered)};
}

NumberEntry& PropertyPage::AddNumber(const char* label, const char* name, const char* property,
                                     const std::string& fallback) {
  NumberEntry& field = column_.AddNumber(label, name);
  field.Open(0, fallback);
  field.node().Text(fallback);
  field.OnChange([this] { MarkChanged(); });
  Bind(
      property, [&field, fallback](const Variant& value) { field.Open(value.AsFloat(), fallback); },
      [&field] { return Variant(NumberIn(field.node())); });
  return field;
}

AngleEntry& PropertyPage::AddAngle(const char* label, const char* name, const char* property,
                                   const AngleEntry::Range& range) {
  AngleEntry& field = column_.AddAngle(label, name, range);
  field.OnChange([this] { MarkChanged(); });
  Bind(
      property, [&field](const Variant& value) { field.Open(value.AsInt16()); },
      [&field] { return Variant(field.value()); });
  return field;
}

OptionGroup& PropertyPage::AddOptions(const char* label, const char* name, const char* property,
                                      std::vector<OptionGroup::Option> options) {
  OptionGroup& group = column_.AddOptions(label, name, std::move(options));
  group.node().on_change = [this] { MarkChanged(); };
  Bind(
      property, [&group](const Variant& value) { group.Choose(value.AsInt16()); },
      [&group] { return Variant(group.value()); });
  return group;
}

void PropertyPage::AddCheck(const char* label, const char* name, const char* property) {
  Node& box = column_.AddCheck(label, name);
  box.on_change = [this] { MarkChanged(); };
  Bind(
      property, [&box](const Variant& value) { box.Value(value.AsBoolean() ? 1 : 0); },
      [&box] { return BooleanVariant(box.Value() != 0); });
}

Node& PropertyPage::AddPreview(const std::string& name) {
  Node& picture =
      AddPicture(column_.parent(), name, {kPreviewLeft, side_top_, kPreviewSide, kPreviewSide});
  side_top_ += kPreviewSide + kMargin;
  return picture;
}

void PropertyPage::BeginFrame(const char* name, const char* caption) {
  Node& frame = root_.Add(NodeKind::Frame, name, {kMargin, kMargin, 0, 0});
  frame.Text(caption);
  frame.Bordered(true);
  column_.Begin(frame, kFrameTitle);
  side_top_ = kFrameTitle;
}

void PropertyPage::Finish() {
  const bool has_previews = side_top_ > kPreviewSide;
  const float right = has_previews ? kPreviewLeft + kPreviewSide : kPlaces.Right();
  const float width = right + kMargin;
  const float height = std::max(column_.next_top(), side_top_) + kMargin;
  const float around = &column_.parent() == &root_ ? 0 : kMargin;
  column_.parent().Move({around, around, width, height});
  root_.Move({0, 0, width + 2 * around, height + 2 * around});
}

void PropertyPage::SelectionChanged() {
  for (auto property = order_.rbegin(); property != order_.rend(); ++property) {
    fields_.at(*property).show(Get(*property));
  }
  changed_ = false;
}

void PropertyPage::ApplyChanges() {
  for (const char* property : order_) Set(property, fields_.at(property).entered());
  changed_ = false;
}

const MemberTable& PropertyPage::Members() const { return kTable; }

}  // namespace discoplan
