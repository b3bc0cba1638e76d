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
constexpr float kLabelWidth = 1500;
constexpr float kFieldLeft = 1800;
constexpr float kFieldWidth = 1200;
constexpr float kRowHeight = 285;
constexpr float kRowPitch = 375;
constexpr float kOptionPitch = 270;
constexpr float kPreviewLeft = 3300;
constexpr float kPreviewSide = 1020;

using C = PropertyPage;
constexpr std::array kMembers = {
    ReadOnly<C, bool, &C::Changed>({.name = "Changed"}),
    Method<&C::SelectionChanged>({.name = "SelectionChanged"}),
    Method<&C::ApplyChanges>({.name = "ApplyChanges"}),
};
constexpr MemberTable kTable(kMembers);

}  // namespace

PropertyPage::PropertyPage(Platform& platform, const char* name, const char* caption)
    : Form(platform, name, caption), parent_(&root_), next_top_(kMargin), side_top_(kMargin) {
  root_.visible = true;
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

Node& PropertyPage::AddField(NodeKind kind, const char* label, const char* name) {
  parent_
      ->Add(NodeKind::Label, std::string(name) + "Label",
            {kMargin, next_top_, kLabelWidth, kRowHeight})
      .text = label;
  Node& field = parent_->Add(kind, name, {kFieldLeft, next_top_, kFieldWidth, kRowHeight});
  field.back_color = kWhite;
  next_top_ += kRowPitch;
  return field;
}

void PropertyPage::AddNumber(const char* label, const char* name, const char* property,
                             const std::string& fallback) {
  auto field = std::make_unique<NumberEntry>(AddField(NodeKind::Text, label, name),
                                             NumberEntry::Filter::Decimal);
  field->Open(0, fallback);
  field->node().text = fallback;
  field->OnChange([this] { MarkChanged(); });
  fallbacks_[property] = fallback;
  numbers_[property] = std::move(field);
}

void PropertyPage::AddAngle(const char* label, const char* name, const char* property,
                            const AngleEntry::Range& range) {
  auto field = std::make_unique<AngleEntry>(AddField(NodeKind::Text, label, name), range);
  field->OnChange([this] { MarkChanged(); });
  angles_[property] = std::move(field);
}

void PropertyPage::AddOptions(const char* label, const char* name, const char* property,
                              std::vector<OptionGroup::Option> options) {
  const float height = 300 + kOptionPitch * static_cast<float>(options.size());
  Node& group = parent_->Add(NodeKind::Options, name,
                             {kMargin, next_top_, kFieldLeft + kFieldWidth - kMargin, height});
  group.text = label;
  group.on_change = [this] { MarkChanged(); };
  next_top_ += height + 120;
  groups_[property] = std::make_unique<OptionGroup>(group, std::move(options));
}

void PropertyPage::AddCheck(const char* label, const char* name, const char* property) {
  Node& box = parent_->Add(NodeKind::Check, name,
                           {kMargin, next_top_, kFieldLeft + kFieldWidth - kMargin, kRowHeight});
  box.text = label;
  box.on_change = [this] { MarkChanged(); };
  next_top_ += kRowPitch;
  checks_[property] = &box;
}

Node& PropertyPage::AddPreview(const char* name) {
  Node& picture = AddPicture(*parent_, name, {kPreviewLeft, side_top_, kPreviewSide, kPreviewSide});
  side_top_ += kPreviewSide + kMargin;
  return picture;
}

void PropertyPage::BeginFrame(const char* name, const char* caption) {
  parent_ = &root_.Add(NodeKind::Frame, name, {kMargin, kMargin, 0, 0});
  parent_->text = caption;
  parent_->bordered = true;
  next_top_ = side_top_ = kFrameTitle;
}

void PropertyPage::Finish() {
  const bool has_previews = side_top_ > kPreviewSide;
  const float right = has_previews ? kPreviewLeft + kPreviewSide : kFieldLeft + kFieldWidth;
  const float width = right + kMargin;
  const float height = std::max(next_top_, side_top_) + kMargin;
  const float around = parent_ == &root_ ? 0 : kMargin;
  parent_->Move({around, around, width, height});
  root_.Move({0, 0, width + 2 * around, height + 2 * around});
}

void PropertyPage::SelectionChanged() {
  for (auto it = order_.rbegin(); it != order_.rend(); ++it) {
    const char* property = *it;
    const Variant value = Get(property);
    if (numbers_.contains(property)) {
      numbers_[property]->Open(value.AsFloat(), fallbacks_[property]);
    } else if (angles_.contains(property)) {
      angles_[property]->Open(value.AsInt16());
    } else if (groups_.contains(property)) {
      groups_[property]->Choose(value.AsInt16());
    } else {
      checks_.at(property)->value = value.AsBoolean() ? 1 : 0;
    }
  }
  changed_ = false;
}

void PropertyPage::ApplyChanges() {
  for (const char* property : order_) {
    if (numbers_.contains(property)) {
      Set(property, Variant(NumberIn(numbers_[property]->node())));
    } else if (angles_.contains(property)) {
      Set(property, Variant(angles_[property]->value()));
    } else if (groups_.contains(property)) {
      Set(property, Variant(groups_[property]->value()));
    } else {
      Set(property, BooleanVariant(checks_.at(property)->value != 0));
    }
  }
  changed_ = false;
}

const MemberTable& PropertyPage::Members() const { return kTable; }

}  // namespace discoplan
