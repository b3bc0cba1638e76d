// SPDX-License-Identifier: MIT
#pragma once

/// A condition on the rows of a table.
///
///     MSE < 12 and Slot != 3
///     (`Goodness of fit` >= 0.9 or not Defect = 'OK') and X <= Y
///
/// Compared by <, <=, >, >=, = (or ==) and != (or <>) are columns, numbers and texts in quotes;
/// "and" binds closer than "or", "not" closer than both. A column's name stands bare if it is one
/// word, and else in backquotes; without its unit it will do. Texts are equal whatever their case,
/// and have no order. A column that is compared with a number must hold one.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/columns.h"
#include "data/number_text.h"

namespace discoplan::data {

class Condition {
 public:
  /// Holds for all rows.
  Condition();
  /// Throws `DataError` with the character that is wrong, from 1, for a text that is no condition,
  /// and for columns that aren't there.
  Condition(std::string_view text, const TableHead& head);
  Condition(Condition&&) noexcept;
  Condition& operator=(Condition&&) noexcept;
  ~Condition();

  bool IsGiven() const { return root_ != nullptr; }

  struct Fault {
    std::size_t column = 0;
    NumberFault fault = NumberFault::None;  ///< why its field is no number
  };
  /// Fields that are missing count as empty. A fault gives false.
  bool Holds(const std::vector<std::string_view>& fields, Fault& fault) const;

  struct Term;

 private:
  std::unique_ptr<const Term> root_;
};

}  // namespace discoplan::data
