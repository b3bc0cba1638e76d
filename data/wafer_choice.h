// SPDX-License-Identifier: MIT
#pragma once

/// Which wafers of a file are asked for: by name, slot, or range of slots.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/lot.h"

namespace discoplan::data {

/// What `wafers` may be chosen by, for a sentence: their slots if each has one of its own, or else
/// their names.
std::string ChoiceText(const std::vector<Wafer>& wafers);

class WaferChoice {
 public:
  /// Entries such as "7", "3-7" or "Slot07". None: all wafers.
  WaferChoice(const std::vector<std::string>& entries, std::string file);

  bool TakesAll() const { return entries_.empty(); }
  /// Whether a wafer is asked for, and takes note of it.
  bool Takes(std::string_view name, std::optional<int> slot);
  /// To be called when all wafers have been seen. Throws `DataError` if an entry has met none,
  /// such as a range that runs backwards.
  void RequireAll() const;

 private:
  struct Entry {
    std::string text;
    std::optional<int> first, last;  // slots
    bool met = false;
  };

  std::string file_;
  std::vector<Entry> entries_;
  std::vector<Wafer> seen_;  // names and slots alone
};

}  // namespace discoplan::data
