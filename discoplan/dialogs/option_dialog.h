// SPDX-License-Identifier: MIT
#pragma once

/// What all option dialogs share: a frame of fields, OK with its checks, Cancel, and a box for a
/// white background.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/dialogs/field_column.h"
#include "discoplan/forms/form.h"

namespace discoplan {

// Twips.
inline constexpr float kOptionLabelLeft = 180;
inline constexpr float kOptionFieldLeft = 1740;
inline constexpr float kOptionFieldWidth = 900;

class DISCOPLAN_EXPORT OptionDialog : public Form {
 public:
  /// The user pressed OK, and the fields passed.
  bool Redraw() const { return redraw_; }
  /// White, or the system's button face.
  Colour GetBackColor() const {
    return white_back_ != nullptr && white_back_->Value() != 0 ? kWhite : kButtonFace;
  }

 protected:
  struct FrameName {
    const char* name;
    const char* caption;
  };

  OptionDialog(Platform& platform, const char* name, const FrameName& frame);

  NumberEntry& AddNumber(const char* label, const char* name, const char* unit = "",
                         NumberEntry::Filter filter = NumberEntry::Filter::Decimal) {
    return column_.AddNumber(label, name, unit, filter);
  }
  OptionGroup& AddOptions(const char* label, const char* name,
                          std::vector<OptionGroup::Option> options) {
    return column_.AddOptions(label, name, std::move(options));
  }
  /// A frame beside the fields, for a preview.
  Node& AddSideFrame(const char* name, const char* caption, float height);
  /// Keeps the frame free down to there for fields that a dialog places itself.
  void Reserve(float bottom) { column_.Reserve(bottom); }
  /// Last of all: the box for the background, and the size of the window.
  void Finish();
  void FinishWithoutBackground();

  /// Takes what the dialog is about and forgets the last answer.
  void Begin(const wafer& source);
  void Begin(const wafer& source, Colour back_color);
  /// The coarsest pitch that a field may ask for, itself excluded.
  double CoarsestPitch() const;
  /// A field that must lie strictly between the bounds; without an upper one, below
  /// `CoarsestPitch`.
  void CheckOnOk(NumberEntry& field, const char* label, double lower,
                 std::optional<double> upper = {});
  /// What OK does once the fields passed.
  virtual void Accept();
  const wafer* source() const { return source_; }

  Node& frame_;

 private:
  struct Check {
    NumberEntry* field;
    const char* label;
    double lower;
    std::optional<double> upper;
  };

  Node& AddButton(const char* name, const char* caption, const TwipsBox& place,
                  std::function<void()> press);
  void PressOk();

  FieldColumn column_;
  Node* white_back_ = nullptr;
  std::vector<Check> checks_;
  const wafer* source_ = nullptr;
  float side_top_;
  bool redraw_ = false;
};

}  // namespace discoplan
