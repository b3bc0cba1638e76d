// SPDX-License-Identifier: MIT
#include "data/wafer_choice.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <utility>

#include "data/data_error.h"

namespace discoplan::data {
namespace {

std::optional<int> WholeNumber(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 0) return {};
  return number;
}

bool HaveSlots(const std::vector<Wafer>& wafers) {
  std::set<int> slots;
  return std::all_of(wafers.begin(), wafers.end(), [&](const Wafer& wafer) {
    return wafer.slot && slots.insert(*wafer.slot).second;
  });
}

std::string NamesOf(const std::vector<Wafer>& wafers) {
  std::vector<std::string> names;
  for (const Wafer& wafer : wafers) names.push_back(Shown(wafer.name));
  return Listed(names);
}

}  // namespace

std::string ChoiceText(const std::vector<Wafer>& wafers) {
  if (!HaveSlots(wafers)) return NamesOf(wafers);
  std::vector<std::string> slots;
  for (const Wafer& wafer : wafers) slots.push_back(std::to_string(*wafer.slot));
  return Listed(slots);
}

WaferChoice::WaferChoice(const std::vector<std::string>& entries, std::string file)
    : file_(std::move(file)) {
  for (const std::string& text : entries) {
    const std::size_t dash = text.find('-');
    const auto first = WholeNumber(Trimmed(std::string_view(text).substr(0, dash)));
    const auto last = dash == std::string::npos
                          ? first
                          : WholeNumber(Trimmed(std::string_view(text).substr(dash + 1)));
    const bool by_slot = first && last;
    entries_.push_back({text, by_slot ? first : std::nullopt, by_slot ? last : std::nullopt});
  }
}

bool WaferChoice::Takes(std::string_view name, std::optional<int> slot) {
  if (entries_.empty()) return true;
  seen_.emplace_back();
  seen_.back().name = name;
  seen_.back().slot = slot;
  bool takes = false;
  for (Entry& entry : entries_) {
    const bool in_range = slot && entry.first && *slot >= *entry.first && *slot <= *entry.last;
    if (!in_range && !SameName(entry.text, name)) continue;
    entry.met = true;
    takes = true;
  }
  return takes;
}

void WaferChoice::RequireAll() const {
  for (const Entry& entry : entries_) {
    if (entry.met) continue;
    if (entry.first && *entry.first > *entry.last) {
      throw DataError(
          {file_}, "--wafer " + Shown(entry.text) + " runs backwards; write the lower slot first");
    }
    const bool by_slot = entry.first.has_value() && HaveSlots(seen_);
    throw DataError(
        {file_}, "there is no " + (by_slot ? "slot " + entry.text : "wafer " + Shown(entry.text)) +
                     "; choose from " + (entry.first ? ChoiceText(seen_) : NamesOf(seen_)));
  }
}

}  // namespace discoplan::data
