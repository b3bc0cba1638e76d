// SPDX-License-Identifier: MIT
#pragma once

/// How the fields of dialogs and pages behave while a person types.

#include <functional>
#include <string>

#include "discoplan/export.h"
#include "discoplan/forms/node.h"

namespace discoplan {

/// The number in a field; 0 for an empty one.
DISCOPLAN_EXPORT double NumberIn(const Node& field);

/// A field that takes a number. A text that can't become one gives way to what the field came
/// with.
class DISCOPLAN_EXPORT NumberEntry {
 public:
  enum class Filter { Decimal, Whole };

  NumberEntry(Node& node, Filter filter);
  NumberEntry(const NumberEntry&) = delete;
  NumberEntry& operator=(const NumberEntry&) = delete;

  Node& node() { return node_; }
  const std::string& text() const { return node_.Text(); }
  /// Fills the field; the value is also the one to fall back to.
  void Open(float value);
  /// Fills it, with a text of its own to fall back to.
  void Open(float value, const std::string& fallback);
  float value() const { return value_; }
  float opening() const { return opening_; }
  /// Called after each change.
  void OnChange(std::function<void()> changed) { changed_ = std::move(changed); }

 private:
  void Changed();

  Node& node_;
  const Filter filter_;
  float opening_ = 0;
  std::string fallback_;
  float value_ = 0;
  std::function<void()> changed_;
};

/// A field that takes an angle in whole degrees, 0 to `largest`. What is no angle of a turn gives
/// way to the value that the field came with.
class DISCOPLAN_EXPORT AngleEntry {
 public:
  struct Range {
    int largest;
    const char* above;  ///< What the text becomes above that.
    int end;            ///< Angles at or beyond this end are none at all.
  };
  static constexpr Range kQuarter{90, "90", 361};
  static constexpr Range kTurn{359, "0", 361};
  static constexpr Range kStrictTurn{359, "0", 360};

  AngleEntry(Node& node, const Range& range);
  AngleEntry(const AngleEntry&) = delete;
  AngleEntry& operator=(const AngleEntry&) = delete;

  Node& node() { return node_; }
  void Open(std::int16_t degrees);
  std::int16_t value() const { return value_; }
  /// Called with each accepted angle.
  void OnAngle(std::function<void()> accepted) { accepted_ = std::move(accepted); }
  /// Called after each change.
  void OnChange(std::function<void()> changed) { changed_ = std::move(changed); }

 private:
  void Changed();
  void Take();

  Node& node_;
  const Range range_;
  std::int16_t opening_ = 0;
  std::int16_t value_ = 0;
  std::function<void()> accepted_;
  std::function<void()> changed_;
};

/// A group of options that stand for the values of an enumeration.
class DISCOPLAN_EXPORT OptionGroup {
 public:
  struct Option {
    const char* caption;
    std::int16_t value;

    template <class Enum>
    Option(const char* own_caption, Enum of)
        : caption(own_caption), value(static_cast<std::int16_t>(of)) {}
  };

  OptionGroup(Node& node, std::vector<Option> options);

  Node& node() { return node_; }
  /// Chooses the option of that value; the last one for a value that none has.
  void Choose(std::int16_t value);
  std::int16_t value() const;

 private:
  Node& node_;
  const std::vector<Option> options_;
};

}  // namespace discoplan
