// SPDX-License-Identifier: MIT
#include "bindings/python/src/handle.h"

namespace discoplan::python {
namespace {

struct HandleObject {
  PyObject_HEAD void* handle;
  PyObject* listener;
};

PyTypeObject* handle_type = nullptr;

HandleObject* As(PyObject* self) { return reinterpret_cast<HandleObject*>(self); }

int Traverse(PyObject* self, visitproc visit, void* arg) {
  Py_VISIT(Py_TYPE(self));
  Py_VISIT(As(self)->listener);
  return 0;
}

int Clear(PyObject* self) {
  Py_CLEAR(As(self)->listener);
  return 0;
}

void Free(PyObject* self) {
  PyObject_GC_UnTrack(self);
  discoplan_free(As(self)->handle);
  Clear(self);
  PyTypeObject* const type = Py_TYPE(self);
  PyObject_GC_Del(self);
  Py_DECREF(type);
}

/// The object of an argument of an event.
Object ArgumentObject(const discoplan_value& value) {
  if (value.type == DISCOPLAN_TEXT) return TextObject(value.text);
  if (value.type == DISCOPLAN_FLOAT || value.type == DISCOPLAN_DOUBLE) {
    return Object(PyFloat_FromDouble(value.number));
  }
  return Object(PyLong_FromDouble(value.number));
}

/// What a handler raises stays set, and the call that brought the event about raises it.
void Hear(void* context, const char* event, const discoplan_value* arguments, int64_t count) {
  const PyGILState_STATE state = PyGILState_Ensure();
  try {
    const Object listener = Object::Borrowed(As(static_cast<PyObject*>(context))->listener);
    Object all(PyTuple_New(count + 1));
    PyTuple_SetItem(all.Get(), 0, TextObject(event).Give());
    for (int64_t i = 0; i < count; ++i) {
      PyTuple_SetItem(all.Get(), i + 1, ArgumentObject(arguments[i]).Give());
    }
    if (PyErr_Occurred() == nullptr) Object(PyObject_CallObject(listener.Get(), all.Get()));
  } catch (const PythonError&) {
  }
  PyGILState_Release(state);
}

}  // namespace

void AddHandleType(PyObject* module) {
  static PyType_Slot slots[] = {{Py_tp_dealloc, reinterpret_cast<void*>(Free)},
                                {Py_tp_traverse, reinterpret_cast<void*>(Traverse)},
                                {Py_tp_clear, reinterpret_cast<void*>(Clear)},
                                {0, nullptr}};
  static PyType_Spec spec = {
      "discoplan._core.Handle", sizeof(HandleObject), 0,
      Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
  Object type(PyType_FromSpec(&spec));
  handle_type = reinterpret_cast<PyTypeObject*>(type.Get());
  if (PyModule_AddObjectRef(module, "Handle", type.Get()) < 0) throw PythonError();
  type.Give();  // kept for the process
}

Object NewHandle(void* handle) {
  HandleObject* const made = PyObject_GC_New(HandleObject, handle_type);
  if (made == nullptr) {
    discoplan_free(handle);
    throw PythonError();
  }
  made->handle = handle;
  made->listener = nullptr;
  PyObject_GC_Track(made);
  return Object(reinterpret_cast<PyObject*>(made));
}

void* HandleOf(PyObject* object) {
  if (Py_TYPE(object) != handle_type) Raise(PyExc_TypeError, "takes a handle");
  return As(object)->handle;
}

void SetListener(PyObject* handle, PyObject* listener) {
  auto* const control = HandleAs<discoplan_control>(handle);
  const bool hears = listener != Py_None;
  if (hears && PyCallable_Check(listener) == 0) Raise(PyExc_TypeError, "a listener is called");
  if (hears) Py_INCREF(listener);
  PyObject* const old = std::exchange(As(handle)->listener, hears ? listener : nullptr);
  Unlocked([&] { return discoplan_control_listen(control, hears ? Hear : nullptr, handle); });
  Py_XDECREF(old);
}

}  // namespace discoplan::python
