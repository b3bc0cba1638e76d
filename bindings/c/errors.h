// SPDX-License-Identifier: MIT
#pragma once

/// Errors as codes with a text for the thread: no exception leaves a function of the interface.
///
///     discoplan_status discoplan_lot_count(discoplan_lot* lot, int64_t* count) {
///       return Guarded([&] { Needed(count, "count") = ...; });
///     }

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include "bindings/c/discoplan.h"
#include "discoplan/base/numbers.h"

namespace discoplan::c {

class Error : public std::runtime_error {
 public:
  Error(discoplan_status status, const std::string& text)
      : std::runtime_error(text), status_(status) {}
  discoplan_status status() const { return status_; }

 private:
  discoplan_status status_;
};

/// Readers name their options as the command line does; callers know them as fields.
std::string WithFieldNames(const std::string& sentence);
/// The same error with the name of the member that it comes from.
[[noreturn]] void RaiseNamed(std::string_view name, const RunTimeError& error);

/// The text of the calling thread's last error.
const char* LastError() noexcept;
/// The status of the exception in flight; keeps its text.
discoplan_status KeepError() noexcept;

template <class Work>
discoplan_status Guarded(Work&& work) noexcept {
  try {
    work();
    return DISCOPLAN_OK;
  } catch (...) {
    return KeepError();
  }
}

/// What a pointer points to; raises for null.
template <class T>
std::add_lvalue_reference_t<T> Needed(T* pointer, const char* name) {
  if (pointer == nullptr) {
    throw Error(DISCOPLAN_BAD_ARGUMENT, std::string("the pointer '") + name + "' is null");
  }
  return *pointer;
}

[[noreturn]] inline void Refuse(const std::string& text) {
  throw Error(DISCOPLAN_BAD_ARGUMENT, text);
}

inline std::string TextOr(const char* text, const char* otherwise = "") {
  return text != nullptr ? text : otherwise;
}

}  // namespace discoplan::c
