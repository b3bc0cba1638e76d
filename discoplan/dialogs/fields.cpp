// SPDX-License-Identifier: MIT
#include "discoplan/dialogs/fields.h"

#include "discoplan/base/numbers.h"
#include "discoplan/core/number_checks.h"
#include "discoplan/render/number_text.h"

namespace discoplan {

double NumberIn(const Node& field) { return ParseNumber(field.Text()).value_or(0); }

NumberEntry::NumberEntry(Node& node, Filter filter) : node_(node), filter_(filter) {
  node_.on_change = [this] { Changed(); };
}

void NumberEntry::Open(float value) { Open(value, PlainNumber(value)); }

void NumberEntry::Open(float value, const std::string& fallback) {
  opening_ = value_ = value;
  fallback_ = fallback;
  node_.Text(PlainNumber(value));
}

void NumberEntry::Changed() {
  const bool passes = filter_ == Filter::Whole ? CheckIntegerText(node_.Text())
                                               : CheckDecimalText(node_.Text(), true);
  const auto take = [&] { value_ = ToFloat(NumberIn(node_)); };
  if (!passes || !Attempt(take)) {
    node_.Text(fallback_);
    Attempt(take);
  }
  if (changed_) changed_();
}

AngleEntry::AngleEntry(Node& node, const Range& range) : node_(node), range_(range) {
  node_.on_change = [this] { Changed(); };
}

void AngleEntry::Open(std::int16_t degrees) {
  opening_ = degrees;
  node_.Text(PlainNumber(degrees));
  Take();
}

void AngleEntry::Changed() {
  const bool is_angle =
      CheckRangeTyping(node_.Text(), -1, range_.end) && CheckDecimalText(node_.Text(), true);
  if (!is_angle) node_.Text(PlainNumber(opening_));
  Take();
  if (changed_) changed_();
}

void AngleEntry::Take() {
  const std::int16_t degrees = ToInt16(NumberIn(node_));
  const bool is_accepted = degrees >= 0 && degrees <= range_.largest;
  if (!is_accepted) node_.Text(degrees < 0 ? "0" : range_.above);
  value_ = is_accepted ? degrees : ToInt16(NumberIn(node_));
  if (accepted_) accepted_();
}

OptionGroup::OptionGroup(Node& node, std::vector<Option> options)
    : node_(node), options_(std::move(options)) {
  std::vector<std::string> captions;
  for (const Option& option : options_) captions.emplace_back(option.caption);
  node_.Options(std::move(captions));
}

void OptionGroup::Choose(std::int16_t value) {
  std::size_t chosen = options_.size() - 1;
  for (std::size_t i = 0; i < options_.size(); ++i) {
    if (options_[i].value == value) chosen = i;
  }
  node_.Value(static_cast<std::int32_t>(chosen));
}

std::int16_t OptionGroup::value() const {
  return options_[static_cast<std::size_t>(node_.Value())].value;
}

}  // namespace discoplan
