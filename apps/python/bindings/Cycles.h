#pragma once

#include "Interpreter.h"

/// Python's collector of cycles sees what objects of the library hold: a service in Python that holds the
/// dialog that it was given to goes with it.
namespace vlclientui::python {

/// Null for an instance whose making was not finished.
template <class Bound>
Bound* boundIn(PyObject* self) {
  auto* const instance = reinterpret_cast<py::detail::instance*>(self);
  return static_cast<Bound*>(instance->get_value_and_holder().value_ptr());
}

template <class Bound>
int traverse(PyObject* self, visitproc visit, void* arg) {
  if (const Bound* const bound = boundIn<Bound>(self)) {
    for (const py::handle held : bound->heldObjects()) Py_VISIT(held.ptr());
  }
  Py_VISIT(Py_TYPE(self));
  return 0;
}

template <class Bound>
int clear(PyObject* self) {
  if (Bound* const bound = boundIn<Bound>(self)) bound->forgetObjects();
  return 0;
}

/// To be given to the class when it is bound.
/// @tparam Bound has heldObjects(), which names each reference that it owns once, and forgetObjects().
template <class Bound>
py::custom_type_setup collected() {
  return py::custom_type_setup([](PyHeapTypeObject* heapType) {
    PyTypeObject& type = heapType->ht_type;
    type.tp_flags |= Py_TPFLAGS_HAVE_GC;
    type.tp_traverse = traverse<Bound>;
    type.tp_clear = clear<Bound>;
  });
}

}  // namespace vlclientui::python
