// SPDX-License-Identifier: MIT
#pragma once

/// Fields with their labels, one below the other: what dialogs and pages are built of.
///
///     FieldColumn column(frame, {.field_left = 1740, .field_width = 900}, 300);
///     NumberEntry& pitch = column.AddNumber("Resolution : ", "tresx");
///     OptionGroup& marks = column.AddOptions("Marked Sites:", "optMark", ShowOrHide());

#include <memory>
#include <string>
#include <vector>

#include "discoplan/dialogs/fields.h"
#include "discoplan/forms/node.h"

namespace discoplan {

// Twips, of all fields.
inline constexpr float kFieldHeight = 285;
inline constexpr float kFieldPitch = 375;
inline constexpr float kOptionRowPitch = 270;
inline constexpr float kGroupGap = 120;  // below a group or a frame

class DISCOPLAN_EXPORT FieldColumn {
 public:
  /// Twips within the parent.
  struct Places {
    float left = 180;  ///< Of labels, groups and boxes.
    float label_width = 1500;
    float field_left = 0;
    float field_width = 0;
    float check_width = 0;

    float Right() const { return field_left + field_width; }
  };

  FieldColumn(Node& parent, const Places& places, float top)
      : parent_(&parent), places_(places), next_top_(top) {}

  /// What is added from here on lies in that parent, from there downward.
  void Begin(Node& parent, float top);

  /// The unit stands behind the field, if there is one.
  NumberEntry& AddNumber(const std::string& label, const std::string& name,
                         const std::string& unit = {},
                         NumberEntry::Filter filter = NumberEntry::Filter::Decimal);
  AngleEntry& AddAngle(const std::string& label, const std::string& name,
                       const AngleEntry::Range& range);
  OptionGroup& AddOptions(const std::string& label, const std::string& name,
                          std::vector<OptionGroup::Option> options);
  Node& AddCheck(const std::string& label, const std::string& name);

  Node& parent() { return *parent_; }
  const Places& places() const { return places_; }
  /// Where the next row would begin.
  float next_top() const { return next_top_; }
  /// Keeps the parent free down to there for fields that are placed otherwise.
  void Reserve(float bottom);

 private:
  Node& AddField(const std::string& label, const std::string& name);

  Node* parent_;
  const Places places_;
  float next_top_;
  std::vector<std::unique_ptr<NumberEntry>> numbers_;
  std::vector<std::unique_ptr<AngleEntry>> angles_;
  std::vector<std::unique_ptr<OptionGroup>> groups_;
};

}  // namespace discoplan
