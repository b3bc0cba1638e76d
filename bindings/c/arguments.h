// SPDX-License-Identifier: MIT
#pragma once

/// What callers pass: structs that grow from version to version, and arrays with strides.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <string>

#include "bindings/c/errors.h"

namespace discoplan::c {

/// The struct's size in the first version of the interface, which its later fields aren't part of.
template <class T>
inline constexpr std::size_t kFirstSize = sizeof(T);
template <>
inline constexpr std::size_t kFirstSize<discoplan_batch> = offsetof(discoplan_batch, figures);
template <>
inline constexpr std::size_t kFirstSize<discoplan_read_options> = offsetof(discoplan_read_options,
                                                                           value_unit);
template <>
inline constexpr std::size_t kFirstSize<discoplan_wafer_info> = offsetof(discoplan_wafer_info,
                                                                         repeated);

/// Refuses a struct that is smaller than in the first version.
template <class T>
void RequireSize(std::size_t size, const char* name) {
  if (size >= kFirstSize<T>) return;
  Refuse(std::string(name) + ": its field 'size' is " + std::to_string(size) +
         ", not sizeof the struct, " + std::to_string(sizeof(T)));
}

/// A copy of a struct that begins with its size; all zeros for null. Fields that an earlier version
/// hadn't are zero. One of a later version will do as long as it asks for nothing that isn't known
/// here.
template <class T>
T Taken(const T* given, const char* name) {
  T taken{};
  taken.size = sizeof(T);
  if (given == nullptr) return taken;
  const std::size_t size = given->size;
  RequireSize<T>(size, name);
  const auto* bytes = reinterpret_cast<const std::byte*>(given);
  const std::size_t known = std::min(size, sizeof(T));
  if (std::any_of(bytes + known, bytes + size, [](std::byte b) { return b != std::byte{}; })) {
    Refuse(std::string(name) + ": it asks for what this version of the library doesn't know");
  }
  std::memcpy(&taken, given, known);
  taken.size = sizeof(T);
  return taken;
}

/// Sets as much of a struct as the caller has by its size; fields of later versions become 0.
template <class T>
void Give(T* wanted, const char* name, T value) {
  Needed(wanted, name);
  value.size = wanted->size;
  const std::size_t size = value.size;
  RequireSize<T>(size, name);
  const std::size_t known = std::min(size, sizeof(T));
  auto* bytes = reinterpret_cast<std::byte*>(wanted);
  std::memcpy(bytes, &value, known);
  std::fill(bytes + known, bytes + size, std::byte{});
}

/// A caller's array, read one number at a time.
class Numbers {
 public:
  Numbers(const discoplan_array& array, const char* name);
  double operator[](std::int64_t i) const {
    const std::byte* at = data_ + i * stride_;
    if (is_double_) return Read<double>(at);
    return Read<float>(at);
  }
  /// Numbers `first` and those behind it, as 32-bit floats: infinite where they don't fit.
  void Copy(std::int64_t first, std::span<float> numbers) const;

 private:
  template <class T>
  static T Read(const std::byte* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
  }

  const std::byte* data_;
  std::int64_t stride_;
  bool is_double_;
};

/// Offsets of 32 or 64 bits; ascending, within 0 to `limit`.
class Offsets {
 public:
  Offsets(const std::int32_t* narrow, const std::int64_t* wide, std::int64_t count,
          std::int64_t limit);
  std::int64_t operator[](std::int64_t i) const {
    return narrow_ != nullptr ? narrow_[i] : wide_[i];
  }

 private:
  const std::int32_t* narrow_;
  const std::int64_t* wide_;
};

}  // namespace discoplan::c
