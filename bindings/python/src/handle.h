// SPDX-License-Identifier: MIT
#pragma once

/// A handle of the library as an object of Python, which frees it.

#include "bindings/python/src/python.h"

namespace discoplan::python {

/// Adds the type to the module.
void AddHandleType(PyObject* module);

Object NewHandle(void* handle);
/// Raises `TypeError` for another object.
void* HandleOf(PyObject* object);
template <class T>
T* HandleAs(PyObject* object) {
  return static_cast<T*>(HandleOf(object));
}

/// Who hears the events of the control that the handle is; nobody for none.
void SetListener(PyObject* handle, PyObject* listener);

}  // namespace discoplan::python
