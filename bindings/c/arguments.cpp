// SPDX-License-Identifier: MIT
#include "bindings/c/arguments.h"

namespace discoplan::c {

Numbers::Numbers(const discoplan_array& array, const char* name)
    : data_(static_cast<const std::byte*>(array.data)),
      stride_(array.stride),
      is_double_(array.type == DISCOPLAN_FLOAT64) {
  if (array.type != DISCOPLAN_FLOAT32 && array.type != DISCOPLAN_FLOAT64) {
    Refuse(std::string(name) + ": its type is " + std::to_string(array.type) +
           ", neither DISCOPLAN_FLOAT32 nor DISCOPLAN_FLOAT64");
  }
  if (data_ == nullptr) Refuse(std::string(name) + ": its data are null");
  if (stride_ == 0) stride_ = is_double_ ? sizeof(double) : sizeof(float);
}

void Numbers::Copy(std::int64_t first, std::span<float> numbers) const {
  const std::byte* at = data_ + first * stride_;
  if (!is_double_ && stride_ == sizeof(float)) {
    std::memcpy(numbers.data(), at, numbers.size_bytes());
    return;
  }
  for (float& number : numbers) {
    number = is_double_ ? static_cast<float>(Read<double>(at)) : Read<float>(at);
    at += stride_;
  }
}

Offsets::Offsets(const std::int32_t* narrow, const std::int64_t* wide, std::int64_t count,
                 std::int64_t limit)
    : narrow_(narrow), wide_(wide) {
  if ((narrow != nullptr) == (wide != nullptr)) Refuse("offsets are given in 32 or in 64 bits");
  std::int64_t last = 0;
  for (std::int64_t i = 0; i <= count; ++i) {
    const std::int64_t offset = (*this)[i];
    if (offset < last || offset > limit) {
      Refuse("offset " + std::to_string(i) + " is " + std::to_string(offset) + ", outside " +
             std::to_string(last) + " to " + std::to_string(limit));
    }
    last = offset;
  }
}

}  // namespace discoplan::c
