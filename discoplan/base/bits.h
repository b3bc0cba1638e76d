// SPDX-License-Identifier: MIT
#pragma once

/// A number's bits as another type's, for standard libraries without `std::bit_cast`.

#include <type_traits>

namespace discoplan {

template <class To, class From>
constexpr To BitCast(const From& from) {
  static_assert(sizeof(To) == sizeof(From));
  static_assert(std::is_trivially_copyable_v<To> && std::is_trivially_copyable_v<From>);
  return __builtin_bit_cast(To, from);
}

}  // namespace discoplan
