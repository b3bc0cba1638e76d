// SPDX-License-Identifier: MIT
#include "bindings/python/src/buffers.h"

#include <cmath>
#include <cstring>

namespace discoplan::python {
namespace {

/// The letter of a format in the machine's own order of bytes; 0 for any other.
char LetterOf(const Py_buffer& buffer) {
  const char* format = buffer.format != nullptr ? buffer.format : "B";
  if (*format == '@' || *format == '=' || *format == '<') ++format;
  return format[0] != '\0' && format[1] == '\0' ? format[0] : '\0';
}

/// What `discoplan._input.numbers` makes of an object.
Object Prepared(PyObject* object, const char* name) {
  const Object module(PyImport_ImportModule("discoplan._input"));
  return Object(PyObject_CallMethod(module.Get(), "numbers", "Os", object, name));
}

bool IsMasked(PyObject* object) { return PyObject_HasAttrString(object, "_mask") != 0; }

}  // namespace

Column::Column(PyObject* object, const char* name) {
  if (!IsMasked(object) && TakeBuffer(object, name)) return;
  prepared_ = Prepared(object, name);
  if (!TakeBuffer(prepared_.Get(), name)) {
    Raise(PyExc_TypeError, std::string(name) + " holds no numbers");
  }
}

bool Column::TakeBuffer(PyObject* object, const char* name) {
  if (PyObject_CheckBuffer(object) == 0) return false;
  if (PyObject_GetBuffer(object, &buffer_, PyBUF_FORMAT | PyBUF_STRIDES) != 0) {
    PyErr_Clear();  // such as an array of dates
    return false;
  }
  has_buffer_ = true;
  if (buffer_.ndim != 1) {
    const std::string text = std::string(name) + " has " + std::to_string(buffer_.ndim) +
                             " dimensions; give one, as by ravel()";
    Release();
    Raise(PyExc_ValueError, text);
  }
  const char letter = LetterOf(buffer_);
  if (letter != 'f' && letter != 'd') {
    Release();
    return false;
  }
  size_ = buffer_.shape[0];
  array_ = {.data = buffer_.buf,
            .stride = buffer_.strides != nullptr ? buffer_.strides[0] : buffer_.itemsize,  // ctypes
            .type = letter == 'f' ? DISCOPLAN_FLOAT32 : DISCOPLAN_FLOAT64,
            .reserved = 0};
  return true;
}

void Column::Release() {
  if (std::exchange(has_buffer_, false)) PyBuffer_Release(&buffer_);
}

const float* Column::Floats() {
  if (array_.type == DISCOPLAN_FLOAT32 && array_.stride == sizeof(float)) {
    return static_cast<const float*>(array_.data);
  }
  floats_.resize(static_cast<std::size_t>(size_));
  const auto* at = static_cast<const char*>(array_.data);
  for (float& number : floats_) {
    double wide = 0;
    if (array_.type == DISCOPLAN_FLOAT32) {
      std::memcpy(&number, at, sizeof number);
    } else {
      std::memcpy(&wide, at, sizeof wide);
      number = static_cast<float>(wide);
      if (std::isfinite(wide) && !std::isfinite(number)) {
        Raise(PyExc_ValueError, "a number doesn't fit a 32-bit float");
      }
    }
    at += array_.stride;
  }
  return floats_.data();
}

void RequireEqual(std::initializer_list<std::pair<const char*, const Column*>> columns) {
  const auto& [first_name, first] = *columns.begin();
  for (const auto& [name, column] : columns) {
    if (column->Size() == first->Size()) continue;
    Raise(PyExc_ValueError, std::string(first_name) + " has " + std::to_string(first->Size()) +
                                " numbers, " + name + " has " + std::to_string(column->Size()));
  }
}

NewArray::NewArray(Py_ssize_t bytes)
    : bytes_(PyByteArray_FromStringAndSize(nullptr, bytes)),
      data_(PyByteArray_AsString(bytes_.Get())) {}

Object NewArray::View(const char* format, std::initializer_list<std::int64_t> shape) {
  Object view(PyMemoryView_FromObject(bytes_.Get()));
  if (shape.size() == 0) return Object(PyObject_CallMethod(view.Get(), "cast", "s", format));
  Object sizes(PyTuple_New(static_cast<Py_ssize_t>(shape.size())));
  Py_ssize_t i = 0;
  for (const std::int64_t size : shape) {
    PyTuple_SetItem(sizes.Get(), i++, Object(PyLong_FromLongLong(size)).Give());
  }
  return Object(PyObject_CallMethod(view.Get(), "cast", "sO", format, sizes.Get()));
}

Offsets::Offsets(PyObject* object, const char* name) {
  if (PyObject_GetBuffer(object, &buffer_, PyBUF_FORMAT | PyBUF_ND) != 0) throw PythonError();
  const char letter = LetterOf(buffer_);
  const bool is_whole = letter != '\0' && std::strchr("ilqILQ", letter) != nullptr;
  if (buffer_.ndim != 1 || !is_whole || (buffer_.itemsize != 4 && buffer_.itemsize != 8)) {
    PyBuffer_Release(&buffer_);
    Raise(PyExc_TypeError, std::string(name) + " takes integers of 32 or 64 bits side by side");
  }
  size_ = buffer_.shape[0];
  if (buffer_.itemsize == 4) narrow_ = static_cast<const std::int32_t*>(buffer_.buf);
  if (buffer_.itemsize == 8) wide_ = static_cast<const std::int64_t*>(buffer_.buf);
}

Offsets::~Offsets() { PyBuffer_Release(&buffer_); }

}  // namespace discoplan::python
