// SPDX-License-Identifier: MIT
#include "bindings/python/src/controls.h"

#include <algorithm>
#include <deque>
#include <list>
#include <vector>

#include "bindings/python/src/buffers.h"
#include "bindings/python/src/handle.h"

namespace discoplan::python {
namespace {

/// Values for the library, with what they refer to.
class Values {
 public:
  discoplan_value ValueOf(PyObject* object) {
    discoplan_value value{};
    value.type = DISCOPLAN_EMPTY;
    if (object == Py_None) return value;
    if (PyBool_Check(object)) {
      value.type = DISCOPLAN_BOOLEAN;
      value.number = object == Py_True ? 1 : 0;
    } else if (PyUnicode_Check(object)) {
      value.type = DISCOPLAN_TEXT;
      value.text = texts_.emplace_back(TextOf(object)).c_str();
    } else if (PyFloat_Check(object) != 0 || PyLong_Check(object) != 0 ||
               PySequence_Check(object) == 0) {
      value.type = DISCOPLAN_DOUBLE;
      value.number = NumberOf(object);
    } else {
      Column& column = columns_.emplace_back(object, "the array");
      value.type = DISCOPLAN_NUMBERS;
      value.lower = 1;
      value.numbers = column.Floats();
      value.count = column.Size();
    }
    return value;
  }

 private:
  std::deque<std::string> texts_;
  std::list<Column> columns_;
};

Object ObjectOf(const discoplan_value& value) {
  switch (value.type) {
    case DISCOPLAN_EMPTY:
      return Object::Borrowed(Py_None);
    case DISCOPLAN_TEXT:
      return TextObject(value.text);
    case DISCOPLAN_FLOAT:
    case DISCOPLAN_DOUBLE:
      return Object(PyFloat_FromDouble(value.number));
    case DISCOPLAN_NUMBERS: {
      NewArray made(static_cast<Py_ssize_t>(value.count) * static_cast<Py_ssize_t>(sizeof(float)));
      std::copy(value.numbers, value.numbers + value.count, static_cast<float*>(made.Data()));
      return made.View("f");
    }
    default:
      return Object(PyLong_FromDouble(value.number));
  }
}

discoplan_control* ControlOf(PyObject* object) { return HandleAs<discoplan_control>(object); }

Object None() { return Object::Borrowed(Py_None); }

std::int32_t Small(PyObject* object) {
  const std::int64_t number = WholeOf(object);
  if (number != static_cast<std::int32_t>(number)) {
    Raise(PyExc_ValueError, "a whole number needs more than 32 bits");
  }
  return static_cast<std::int32_t>(number);
}

}  // namespace

Object NewControl(Arguments args) {
  const std::string name = TextOf(args[0]);
  const std::int32_t width = Small(args[1]), height = Small(args[2]);
  discoplan_control* control = nullptr;
  Check(discoplan_control_new(name.c_str(), width, height, &control));
  return NewHandle(control);
}

Object ControlResize(Arguments args) {
  discoplan_control* const control = ControlOf(args[0]);
  const std::int32_t width = Small(args[1]), height = Small(args[2]);
  Unlocked([&] { return discoplan_control_resize(control, width, height); });
  return None();
}

Object ControlGet(Arguments args) {
  discoplan_control* const control = ControlOf(args[0]);
  const std::string name = TextOf(args[1]);
  discoplan_value value{};
  Unlocked([&] { return discoplan_control_get(control, name.c_str(), &value); });
  return ObjectOf(value);
}

Object ControlSet(Arguments args) {
  discoplan_control* const control = ControlOf(args[0]);
  const std::string name = TextOf(args[1]);
  Values values;
  const discoplan_value value = values.ValueOf(args[2]);
  Unlocked([&] { return discoplan_control_set(control, name.c_str(), &value); });
  return None();
}

Object ControlCall(Arguments args) {
  discoplan_control* const control = ControlOf(args[0]);
  const std::string name = TextOf(args[1]);
  Values values;
  const Py_ssize_t count = PyTuple_Size(args[2]);
  if (count < 0) throw PythonError();
  std::vector<discoplan_value> arguments;
  for (Py_ssize_t i = 0; i < count; ++i) {
    arguments.push_back(values.ValueOf(PyTuple_GetItem(args[2], i)));
  }
  discoplan_value result{};
  Unlocked([&] {
    return discoplan_control_call(control, name.c_str(), arguments.data(), count, &result);
  });
  Object all(PyTuple_New(count + 1));
  PyTuple_SetItem(all.Get(), 0, ObjectOf(result).Give());
  for (Py_ssize_t i = 0; i < count; ++i) {
    PyTuple_SetItem(all.Get(), i + 1, ObjectOf(arguments[static_cast<std::size_t>(i)]).Give());
  }
  return all;
}

Object ControlListen(Arguments args) {
  SetListener(args[0], args[1]);
  return None();
}

Object ControlMouse(Arguments args) {
  discoplan_control* const control = ControlOf(args[0]);
  const std::string child = args[1] != Py_None ? TextOf(args[1]) : "", event = TextOf(args[2]);
  const std::int32_t button = Small(args[3]), shift = Small(args[4]);
  const auto x = static_cast<float>(NumberOf(args[5])), y = static_cast<float>(NumberOf(args[6]));
  Unlocked([&] {
    return discoplan_control_mouse(control, child.empty() ? nullptr : child.c_str(), event.c_str(),
                                   button, shift, x, y);
  });
  return None();
}

Object ControlPicture(Arguments args) {
  discoplan_control* const control = ControlOf(args[0]);
  discoplan_picture* picture = nullptr;
  Unlocked([&] { return discoplan_control_picture(control, &picture); });
  return NewHandle(picture);
}

Object ControlPrint(Arguments args) {
  discoplan_control* const control = ControlOf(args[0]);
  const double width = NumberOf(args[1]), height = NumberOf(args[2]);
  discoplan_picture* picture = nullptr;
  Unlocked([&] { return discoplan_control_print(control, width, height, &picture); });
  return NewHandle(picture);
}

}  // namespace discoplan::python
