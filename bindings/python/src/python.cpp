// SPDX-License-Identifier: MIT
#include "bindings/python/src/python.h"

namespace discoplan::python {

void Check(discoplan_status status) {
  static PyObject* const* const kErrors[] = {nullptr,
                                             &PyExc_ValueError,
                                             &PyExc_ValueError,
                                             &PyExc_ValueError,
                                             &PyExc_FileNotFoundError,
                                             &PyExc_OSError,
                                             &PyExc_TypeError,
                                             &PyExc_AttributeError,
                                             &PyExc_MemoryError,
                                             &PyExc_RuntimeError};
  if (PyErr_Occurred() != nullptr) throw PythonError();  // an event's handler
  if (status == DISCOPLAN_OK) return;
  Raise(*kErrors[status], discoplan_error());
}

std::string TypeNameOf(PyObject* object) {
  const Object name(PyType_GetName(Py_TYPE(object)));
  return TextOf(name.Get());
}

std::string TextOf(PyObject* object) {
  if (PyUnicode_Check(object) == 0) {
    Raise(PyExc_TypeError, "a text is wanted, not " + TypeNameOf(object));
  }
  Py_ssize_t size = 0;
  const char* text = PyUnicode_AsUTF8AndSize(object, &size);
  if (text == nullptr) throw PythonError();
  if (std::char_traits<char>::length(text) != static_cast<std::size_t>(size)) {
    Raise(PyExc_ValueError, "a text holds a zero character");
  }
  return {text, static_cast<std::size_t>(size)};
}

bool IsNumber(PyObject* object) {
  if (PyFloat_CheckExact(object) != 0 || PyLong_CheckExact(object) != 0) return true;
  return PyNumber_Check(object) != 0 && PySequence_Check(object) == 0;
}

double NumberOf(PyObject* object) {
  const double number = PyFloat_AsDouble(object);
  if (number == -1 && PyErr_Occurred() != nullptr) throw PythonError();
  return number;
}

std::int64_t WholeOf(PyObject* object) {
  const long long number = PyLong_AsLongLong(object);
  if (number == -1 && PyErr_Occurred() != nullptr) throw PythonError();
  return number;
}

Object TextObject(const char* utf8) {
  return Object(PyUnicode_DecodeUTF8(
      utf8, static_cast<Py_ssize_t>(std::char_traits<char>::length(utf8)), "replace"));
}

}  // namespace discoplan::python
