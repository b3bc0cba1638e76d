// SPDX-License-Identifier: MIT
#pragma once

/// What callers hold. A handle is a number in the disguise of a pointer: it is looked up among
/// those that are alive and never followed, so that a stale one does no harm. Numbers aren't given
/// twice.

#include <memory>
#include <string>

#include "bindings/c/errors.h"

namespace discoplan::c {

enum class Kind { Wafer, Lot, Picture, Result, Control };

class Held {
 public:
  explicit Held(Kind held_kind) : kind(held_kind) {}
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  virtual ~Held() = default;

  const Kind kind;
};

void* Hold(std::shared_ptr<Held> object);
/// The object stays alive as long as the result. Raises `Error`.
std::shared_ptr<Held> Find(const void* handle, Kind kind);
/// Raises `Error` for a handle that isn't alive.
void Release(const void* handle);

/// `T` names its kind and its handle's type: `T::kKind`, `T::Handle`.
template <class T>
std::shared_ptr<T> Get(const typename T::Handle* handle) {
  return std::static_pointer_cast<T>(Find(handle, T::kKind));
}

template <class T>
typename T::Handle* HandleOf(std::shared_ptr<T> object) {
  return static_cast<typename T::Handle*>(Hold(std::move(object)));
}

/// Runs `make` and hands out what it gives; the handle is null where it fails.
template <class T, class Make>
discoplan_status HandedOut(typename T::Handle** handle, Make&& make) noexcept {
  return Guarded([&] {
    Needed(handle, "handle to set") = nullptr;
    *handle = HandleOf<T>(make());
  });
}

}  // namespace discoplan::c
