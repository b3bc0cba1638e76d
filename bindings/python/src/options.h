// SPDX-License-Identifier: MIT
#pragma once

/// Structs of options from dictionaries, field by field.

#include <cstddef>
#include <deque>
#include <span>

#include "bindings/python/src/python.h"

namespace discoplan::python {

struct Field {
  enum class Type { Whole, Number, Text, FourNumbers };

  const char* name;
  Type type;
  std::size_t offset;
};

std::span<const Field> FieldsOf(const discoplan_wafer_options*);
std::span<const Field> FieldsOf(const discoplan_read_options*);
std::span<const Field> FieldsOf(const discoplan_plot_options*);

/// Keeps the texts that the struct refers to.
template <class T>
class Options {
 public:
  /// Of a dictionary, or of None. Raises `TypeError` for a key that is no field.
  explicit Options(PyObject* dictionary) {
    options_.size = sizeof(T);
    if (dictionary == Py_None) return;
    PyObject* key = nullptr;
    PyObject* value = nullptr;
    for (Py_ssize_t at = 0; PyDict_Next(dictionary, &at, &key, &value) != 0;) {
      Fill(FieldsOf(&options_), key, value, reinterpret_cast<std::byte*>(&options_), texts_);
    }
  }
  const T* Get() const { return &options_; }

 private:
  T options_{};
  std::deque<std::string> texts_;
};

void Fill(std::span<const Field> fields, PyObject* key, PyObject* value, std::byte* options,
          std::deque<std::string>& texts);

}  // namespace discoplan::python
