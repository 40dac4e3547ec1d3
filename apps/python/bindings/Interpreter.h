#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <pybind11/pybind11.h>

#include "Interrupts.h"

/// What every file of the module needs of the interpreter: texts, references that any thread may drop, and
/// its lock.
namespace vlclientui::python {

namespace py = pybind11;

/// A text of the library. Bytes that are no UTF-8, as names of files may have, go through Python as they do
/// in os.fsdecode, and come back as they were.
struct Text {
  std::string utf8;
};

/// What Python accepts as a path: a text or any os.PathLike.
struct PathText {
  std::string native;
};

/// A Python object held by the library. Copies and the last drop need no lock; the object is let go under it.
using Reference = std::shared_ptr<PyObject>;

/// The calling thread holds the lock.
[[nodiscard]] Reference referenceTo(py::handle object);
/// The calling thread holds the lock.
[[nodiscard]] inline py::handle objectOf(const Reference& reference) { return reference.get(); }

/// Takes the interpreter's lock, on any thread, and gives it back. Nests. A thread that asks for it while the
/// interpreter ends stands still from then on: the process is about to end, and nothing may be unwound for
/// that. Inside a call of the main thread signals are Python's own matter meanwhile.
class Locked {
 public:
  Locked();
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
  ~Locked();

 private:
  InPython inPython_;
  PyGILState_STATE state_;
};

/// Gives the lock away while it lives, as Locked takes it.
class Unlocked {
 public:
  Unlocked();
  Unlocked(const Unlocked&) = delete;
  Unlocked& operator=(const Unlocked&) = delete;
  ~Unlocked();

 private:
  InLibrary inLibrary_;
  PyThreadState* state_;
};

/// What is raised while the library runs and belongs to the caller: what a person's function raises, and what
/// interrupts the program. It waits on its thread until the call that is under way returns to Python; what
/// interrupts gives that call up besides. With the lock.
void keepForCaller(py::error_already_set&& raised);
/// @throws what waits for the caller.
void raiseWhatWaits();

/// Runs a call into the library without the interpreter's lock, so that it can be interrupted. What waits for
/// the caller then is raised, rather than what the call itself throws.
template <class Call>
auto released(Call&& call) {
  using Result = decltype(call());
  const Interruptible interruptible;
  const auto raiseForCaller = [&] {
    interruptible.lookForSignals();
    raiseWhatWaits();
  };
  const auto callUnlocked = [&]() -> Result {
    const Unlocked unlocked;
    return call();
  };
  try {
    if constexpr (std::is_void_v<Result>) {
      callUnlocked();
      raiseForCaller();
    } else {
      auto result = callUnlocked();
      raiseForCaller();
      return result;
    }
  } catch (...) {
    raiseForCaller();
    throw;
  }
}

/// A class that another file bound, to be given more members. Classes are bound before: see Module.cpp.
template <class Bound>
Bound boundClass(const py::module_& module, const char* name) {
  return static_cast<Bound>(module.attr(name));
}

/// The truth value of an object. @throws py::error_already_set when it has none.
[[nodiscard]] bool isTrue(py::handle object);

/// Failures of the library become `vlclientui.RuntimeFailure`.
void translateFailures();
/// Fails as the contracts do, with the description of what was raised. What interrupts the program waits for
/// the caller besides. The calling thread holds the lock. @throws RuntimeFailure always.
[[noreturn]] void failAs(py::error_already_set& raised, const std::string& where);

}  // namespace vlclientui::python

namespace pybind11::detail {

template <>
struct type_caster<vlclientui::python::Text> {
  PYBIND11_TYPE_CASTER(vlclientui::python::Text, const_name("str"));

  bool load(handle source, bool convert);
  static handle cast(const vlclientui::python::Text& text, return_value_policy policy, handle parent);
};

template <>
struct type_caster<vlclientui::python::PathText> {
  PYBIND11_TYPE_CASTER(vlclientui::python::PathText, const_name("str | os.PathLike[str]"));

  bool load(handle source, bool convert);
  static handle cast(const vlclientui::python::PathText& path, return_value_policy policy, handle parent);
};

}  // namespace pybind11::detail
