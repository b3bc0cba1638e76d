// SPDX-License-Identifier: MIT
#include "data/wafer_groups.h"

#include <charconv>
#include <utility>

#include "data/plain_text.h"
#include "data/utf16.h"

namespace discoplan::data {
namespace {

constexpr char kBetweenKeys = '\x1F';

std::string_view FieldAt(const std::vector<std::string_view>& fields, std::size_t column) {
  return column < fields.size() ? fields[column] : std::string_view();
}

/// A text that is a whole number is a slot.
std::optional<int> SlotOf(const std::vector<std::string>& keys) {
  if (keys.size() != 1) return {};
  const std::string& text = keys.front();
  int slot = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), slot);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && slot >= 0 && slot <= 9999 ? std::optional(slot) : std::nullopt;
}

}  // namespace

WaferGroups::WaferGroups(std::vector<std::size_t> columns, std::string name, std::size_t parameters,
                         WaferChoice& choice)
    : columns_(std::move(columns)),
      name_(std::move(name)),
      parameters_(parameters),
      choice_(choice) {
  if (columns_.empty()) last_ = &NewGroup({});
}

std::span<Wafer> WaferGroups::Of(const std::vector<std::string_view>& fields) {
  if (columns_.empty()) return *last_;
  key_.clear();
  for (const std::size_t column : columns_) {
    if (!key_.empty()) key_ += kBetweenKeys;
    key_ += FieldAt(fields, column);
  }
  if (last_ != nullptr && key_ == last_key_) return *last_;
  const auto [place, is_new] = by_key_.try_emplace(key_);
  if (is_new) place->second = &NewGroup(fields);
  last_key_ = key_;
  last_ = place->second;
  return *last_;
}

WaferGroups::Group& WaferGroups::NewGroup(const std::vector<std::string_view>& fields) {
  Group& group = groups_.emplace_back();
  Wafer wafer;
  for (const std::size_t column : columns_) {
    wafer.keys.push_back(Utf8(FieldAt(fields, column)));
    if (!wafer.name.empty()) wafer.name += ", ";
    wafer.name += wafer.keys.back();
  }
  if (columns_.empty()) wafer.name = name_;
  wafer.slot = SlotOf(wafer.keys);
  if (!columns_.empty() && !choice_.Takes(wafer.name, wafer.slot)) return group;
  group.assign(parameters_, wafer);
  for (std::size_t i = 0; i < parameters_; ++i) {
    group[i].parameter = i;
    if (!columns_.empty()) continue;
    // Memory that nothing is written to costs nothing, and growing costs twice.
    for (std::vector<float>* column : {&group[i].x, &group[i].y, &group[i].value}) {
      column->reserve(static_cast<std::size_t>(kMostSites));
    }
  }
  return group;
}

std::vector<Wafer> WaferGroups::Take() {
  std::vector<Wafer> wafers;
  for (std::size_t i = 0; i < parameters_; ++i) {
    for (Group& group : groups_) {
      if (i < group.size() && !group[i].x.empty()) wafers.push_back(std::move(group[i]));
    }
  }
  groups_.clear();
  return wafers;
}

}  // namespace discoplan::data
