// SPDX-License-Identifier: MIT
#pragma once

/// What all option dialogs share: a frame of fields, OK with its checks, Cancel, and a box for a
/// white background.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/dialogs/fields.h"
#include "discoplan/forms/form.h"

namespace discoplan {

class DISCOPLAN_EXPORT OptionDialog : public Form {
 public:
  /// The user pressed OK, and the fields passed.
  bool Redraw() const { return redraw_; }
  /// White, or the system's button face.
  Colour GetBackColor() const {
    return white_back_ != nullptr && white_back_->value != 0 ? kWhite : kButtonFace;
  }

 protected:
  struct FrameName {
    const char* name;
    const char* caption;
  };

  OptionDialog(Platform& platform, const char* name, const FrameName& frame);

  /// A label and a field below what is there.
  NumberEntry& AddNumber(const char* label, const char* name, const char* unit = "",
                         NumberEntry::Filter filter = NumberEntry::Filter::Decimal);
  OptionGroup& AddOptions(const char* label, const char* name,
                          std::vector<OptionGroup::Option> options);
  /// A frame beside the fields, for a preview.
  Node& AddSideFrame(const char* name, const char* caption, float height);
  /// Keeps the frame free down to there for fields that a dialog places itself.
  void Reserve(float bottom);
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

  void PressOk();

  Node* white_back_ = nullptr;
  std::vector<std::unique_ptr<NumberEntry>> numbers_;
  std::vector<std::unique_ptr<OptionGroup>> groups_;
  std::vector<Check> checks_;
  const wafer* source_ = nullptr;
  float next_top_;
  float side_top_;
  bool redraw_ = false;
};

}  // namespace discoplan
