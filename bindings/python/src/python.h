// SPDX-License-Identifier: MIT
#pragma once

/// Python's stable interface, as of 3.11, where it took in the buffers: one module for all later
/// versions. Errors of Python travel as `PythonError`, with the error itself set in Python.

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <string>
#include <utility>

#include "bindings/c/discoplan.h"

namespace discoplan::python {

/// Python's own error is set.
struct PythonError {};

/// A reference that is given back by itself.
class Object {
 public:
  Object() = default;
  /// Takes over a new reference; raises for null.
  explicit Object(PyObject* owned) : object_(owned) {
    if (object_ == nullptr) throw PythonError();
  }
  Object(Object&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Object& operator=(Object&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Object() { Py_XDECREF(object_); }

  static Object Borrowed(PyObject* object) {
    Py_XINCREF(object);
    return Object(object);
  }
  PyObject* Get() const { return object_; }
  PyObject* Give() { return std::exchange(object_, nullptr); }

 private:
  PyObject* object_ = nullptr;
};

[[noreturn]] inline void Raise(PyObject* type, const std::string& text) {
  PyErr_SetString(type, text.c_str());
  throw PythonError();
}

/// Raises Python's error for a status of the library, with the library's text.
void Check(discoplan_status status);

/// Runs `work`, which gives a status, while other threads may run Python.
template <class Work>
void Unlocked(Work&& work) {
  PyThreadState* const state = PyEval_SaveThread();
  const discoplan_status status = work();
  PyEval_RestoreThread(state);
  Check(status);
}

/// What `work` gives, or null with Python's error set.
template <class Work>
PyObject* Answered(Work&& work) noexcept {
  try {
    return work().Give();
  } catch (const PythonError&) {
    return nullptr;
  } catch (const std::bad_alloc&) {
    return PyErr_NoMemory();
  }
}

using Arguments = PyObject* const*;

/// Raises `TypeError` for another number of arguments.
inline void RequireCount(Py_ssize_t given, Py_ssize_t wanted) {
  if (given != wanted) {
    Raise(PyExc_TypeError,
          "takes " + std::to_string(wanted) + " arguments, not " + std::to_string(given));
  }
}

std::string TypeNameOf(PyObject* object);
std::string TextOf(PyObject* object);
/// One of Python's or of a library's own, such as numpy's; no array, whatever its size.
bool IsNumber(PyObject* object);
double NumberOf(PyObject* object);
std::int64_t WholeOf(PyObject* object);
Object TextObject(const char* utf8);

}  // namespace discoplan::python
