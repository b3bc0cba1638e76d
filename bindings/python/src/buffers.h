// SPDX-License-Identifier: MIT
#pragma once

/// Numbers from Python and back.

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "bindings/python/src/python.h"

namespace discoplan::python {

/// One-dimensional numbers of any object: read in place where they are floats or doubles in memory,
/// else from a copy. The memory stays exported, so that it is neither moved nor freed meanwhile.
class Column {
 public:
  Column(PyObject* object, const char* name);
  Column(const Column&) = delete;
  Column& operator=(const Column&) = delete;
  ~Column() { Release(); }

  std::int64_t Size() const { return size_; }
  const discoplan_array& Array() const { return array_; }
  /// Side by side, as 32-bit floats; copied where they aren't. Raises for what doesn't fit.
  const float* Floats();

 private:
  bool TakeBuffer(PyObject* object, const char* name);
  void Release();

  Py_buffer buffer_{};
  bool has_buffer_ = false;
  Object prepared_;
  discoplan_array array_{};
  std::int64_t size_ = 0;
  std::vector<float> floats_;
};

/// Raises `ValueError` where the columns aren't equally long.
void RequireEqual(std::initializer_list<std::pair<const char*, const Column*>> columns);

/// Memory that becomes a `memoryview` of items of a format, of one or more dimensions.
class NewArray {
 public:
  NewArray(Py_ssize_t bytes);
  void* Data() const { return data_; }
  Object View(const char* format, std::initializer_list<std::int64_t> shape = {});

 private:
  Object bytes_;
  void* data_;
};

/// Integers of 32 or 64 bits in memory.
class Offsets {
 public:
  Offsets(PyObject* object, const char* name);
  Offsets(const Offsets&) = delete;
  Offsets& operator=(const Offsets&) = delete;
  ~Offsets();

  std::int64_t Size() const { return size_; }
  const std::int32_t* Narrow() const { return narrow_; }
  const std::int64_t* Wide() const { return wide_; }

 private:
  Py_buffer buffer_{};
  std::int64_t size_ = 0;
  const std::int32_t* narrow_ = nullptr;
  const std::int64_t* wide_ = nullptr;
};

}  // namespace discoplan::python
