// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/field_column.h"

#include <algorithm>

namespace discoplan {
namespace {

// Twips.
constexpr float kUnitGap = 60;
constexpr float kUnitWidth = 720;
constexpr float kGroupTitle = 300;  // above the first option, with the margin below the last

}  // namespace

void FieldColumn::Begin(Node& parent, float top) {
  parent_ = &parent;
  next_top_ = top;
}

void FieldColumn::Reserve(float bottom) { next_top_ = std::max(next_top_, bottom); }

Node& FieldColumn::AddField(const std::string& label, const std::string& name) {
  parent_
      ->Add(NodeKind::Label, name + "Label",
            {places_.left, next_top_, places_.label_width, kFieldHeight})
      .Text(label);
  Node& field = parent_->Add(NodeKind::Text, name,
                             {places_.field_left, next_top_, places_.field_width, kFieldHeight});
  field.BackColor(kWhite);
  next_top_ += kFieldPitch;
  return field;
}

NumberEntry& FieldColumn::AddNumber(const std::string& label, const std::string& name,
                                    const std::string& unit, NumberEntry::Filter filter) {
  const float top = next_top_;
  Node& field = AddField(label, name);
  if (!unit.empty()) {
    parent_
        ->Add(NodeKind::Label, name + "Unit",
              {places_.Right() + kUnitGap, top, kUnitWidth, kFieldHeight})
        .Text(unit);
  }
  return *numbers_.emplace_back(std::make_unique<NumberEntry>(field, filter));
}

AngleEntry& FieldColumn::AddAngle(const std::string& label, const std::string& name,
                                  const AngleEntry::Range& range) {
  return *angles_.emplace_back(std::make_unique<AngleEntry>(AddField(label, name), range));
}

OptionGroup& FieldColumn::AddOptions(const std::string& label, const std::string& name,
                                     std::vector<OptionGroup::Option> options) {
  const float height = kGroupTitle + kOptionRowPitch * static_cast<float>(options.size());
  Node& group = parent_->Add(NodeKind::Options, name,
                             {places_.left, next_top_, places_.Right() - places_.left, height});
  group.Text(label);
  next_top_ += height + kGroupGap;
  return *groups_.emplace_back(std::make_unique<OptionGroup>(group, std::move(options)));
}

Node& FieldColumn::AddCheck(const std::string& label, const std::string& name) {
  Node& box = parent_->Add(NodeKind::Check, name,
                           {places_.left, next_top_, places_.check_width, kFieldHeight});
  box.Text(label);
  next_top_ += kFieldPitch;
  return box;
}

}  // namespace discoplan
