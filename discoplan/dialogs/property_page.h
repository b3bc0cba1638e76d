// SPDX-License-Identifier: MIT
#pragma once

/// A property page: the settings of a control in a host's designer.
///
///     std::unique_ptr<PropertyPage> page = NewPropertyPage("Plot2DProp", platform);
///     page->Select(&control);
///     ...                      // the user edits
///     if (page->Changed()) page->ApplyChanges();
///
/// A page sees the control as an object with named members. A member that the control doesn't
/// have, or that refuses a value, is a `RunTimeError`. One thread uses a page and its control.

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "discoplan/core/wafer.h"
#include "discoplan/dialogs/field_column.h"
#include "discoplan/forms/form.h"
#include "discoplan/platform/object.h"

namespace discoplan {

class DISCOPLAN_EXPORT PropertyPage : public Object, public Form {
 public:
  /// Selects the control and reads it; nothing for none.
  void Select(Object* control);
  /// The control is about to go: it is selected no more, the fields stay as they are.
  void Forget(const Object& control);

  /// Fills the fields from the selected control.
  virtual void SelectionChanged();
  /// Checks and writes back.
  virtual void ApplyChanges();
  /// Something was edited since the fields were filled or applied.
  bool Changed() const { return changed_; }

  const MemberTable& Members() const override;

 protected:
  PropertyPage(Platform& platform, const char* name, const char* caption);

  void MarkChanged() { changed_ = true; }
  Variant Get(std::string_view property) const;
  void Set(std::string_view property, const Variant& value) const;

  // Fields by the property that they stand for, in the order of writing.

  NumberEntry& AddNumber(const char* label, const char* name, const char* property,
                         const std::string& fallback);
  AngleEntry& AddAngle(const char* label, const char* name, const char* property,
                       const AngleEntry::Range& range);
  OptionGroup& AddOptions(const char* label, const char* name, const char* property,
                          std::vector<OptionGroup::Option> options);
  void AddCheck(const char* label, const char* name, const char* property);
  Node& AddPreview(const std::string& name);
  /// All that is added from here on lies in a frame.
  void BeginFrame(const char* name, const char* caption);
  /// The order in which the properties are written; they are read in the reverse order.
  void WriteInOrder(std::vector<const char*> properties) { order_ = std::move(properties); }
  void Finish();

 private:
  /// What a field shows of a property, and what was entered for it.
  struct Field {
    std::function<void(const Variant&)> show;
    std::function<Variant()> entered;
  };
  void Bind(std::string_view property, std::function<void(const Variant&)> show,
            std::function<Variant()> entered);

  Object* control_ = nullptr;
  FieldColumn column_;
  std::map<std::string_view, Field> fields_;  // by property
  std::vector<const char*> order_;
  float side_top_;
  bool changed_ = false;
};

/// A page by its class name; nothing for a name that none has.
DISCOPLAN_EXPORT std::unique_ptr<PropertyPage> NewPropertyPage(std::string_view class_name,
                                                               Platform& platform);

/// The class names.
DISCOPLAN_EXPORT std::vector<std::string_view> PropertyPageClasses();

}  // namespace discoplan
