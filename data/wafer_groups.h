// SPDX-License-Identifier: MIT
#pragma once

/// The wafers of a table whose rows belong to several, told apart by the texts of some columns.

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/wafer_choice.h"

namespace discoplan::data {

class WaferGroups {
 public:
  /// One wafer of that name if `columns` is empty. `parameters` counts the values of a row.
  WaferGroups(std::vector<std::size_t> columns, std::string name, std::size_t parameters,
              WaferChoice& choice);

  /// The wafers of a row, one for each parameter; empty if the row's wafer isn't asked for.
  std::span<Wafer> Of(const std::vector<std::string_view>& fields);
  /// All wafers with sites, in the order of `Lot::wafers`. Leaves nothing here.
  std::vector<Wafer> Take();

 private:
  using Group = std::vector<Wafer>;  // one for each parameter, or none if it isn't asked for

  Group& NewGroup(const std::vector<std::string_view>& fields);

  std::vector<std::size_t> columns_;
  std::string name_;
  std::size_t parameters_;
  WaferChoice& choice_;
  std::deque<Group> groups_;
  std::unordered_map<std::string, Group*> by_key_;
  std::string key_;
  std::string last_key_;
  Group* last_ = nullptr;
};

}  // namespace discoplan::data
