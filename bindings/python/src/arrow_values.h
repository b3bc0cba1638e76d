// SPDX-License-Identifier: MIT
#pragma once

/// Arrays of Arrow, and single values of them.

#include <cstdint>
#include <string>
#include <string_view>

// The Arrow C data interface, as its specification has it.
extern "C" {
struct ArrowSchema {
  const char* format;
  const char* name;
  const char* metadata;
  int64_t flags;
  int64_t n_children;
  ArrowSchema** children;
  ArrowSchema* dictionary;
  void (*release)(ArrowSchema*);
  void* private_data;
};
struct ArrowArray {
  int64_t length;
  int64_t null_count;
  int64_t offset;
  int64_t n_buffers;
  int64_t n_children;
  const void** buffers;
  ArrowArray** children;
  ArrowArray* dictionary;
  void (*release)(ArrowArray*);
  void* private_data;
};
struct ArrowArrayStream {
  int (*get_schema)(ArrowArrayStream*, ArrowSchema*);
  int (*get_next)(ArrowArrayStream*, ArrowArray*);
  const char* (*get_last_error)(ArrowArrayStream*);
  void (*release)(ArrowArrayStream*);
  void* private_data;
};
}

namespace discoplan::python {

/// Value `i` of a column as a number, the double nearest to a decimal; not a number for what is
/// missing. Raises `TypeError` for a type that has no numbers.
double NumberAt(const ArrowSchema& schema, const ArrowArray& array, int64_t i,
                const std::string& name);

/// What tells wafers apart, as people write it; "" for what is missing. Raises `TypeError` for a
/// type that has neither texts nor numbers.
std::string TextAt(const ArrowSchema& schema, const ArrowArray& array, int64_t i,
                   const std::string& name);

}  // namespace discoplan::python
