// SPDX-License-Identifier: MIT
#pragma once

/// What crosses the interface of a control, in the words of C.

#include <deque>
#include <string>

#include "bindings/c/errors.h"
#include "discoplan/base/variant.h"

namespace discoplan::c {

/// Holds the texts and arrays that values refer to.
class Kept {
 public:
  discoplan_value Keep(const Variant& value);
  void Clear() { values_.clear(); }

 private:
  std::deque<Variant> values_;  // whose places stay
};

/// Refers to the caller's numbers. Raises `Error`.
Variant VariantOf(const discoplan_value& value);

}  // namespace discoplan::c
