#include "Interpreter.h"

#include <memory>
#include <utility>

#include <cxxabi.h>
#include <unistd.h>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/Visit.h"

namespace vlclientui::python {
namespace {

constexpr std::pair<FailureKind, const char*> kindNames[] = {
    {FailureKind::General, "General"},           {FailureKind::TypeMismatch, "TypeMismatch"},
    {FailureKind::Overflow, "Overflow"},         {FailureKind::MissingObject, "MissingObject"},
    {FailureKind::InvalidIndex, "InvalidIndex"}, {FailureKind::DivisionByZero, "DivisionByZero"},
};

const char* nameOf(FailureKind kind) {
  for (const auto& [known, name] : kindNames) {
    if (known == kind) return name;
  }
  return "General";
}

FailureKind kindOf(py::handle raised) {
  const py::object kind = py::getattr(raised, "kind", py::none());
  for (const auto& [known, name] : kindNames) {
    if (py::isinstance<py::str>(kind) && kind.cast<std::string>() == name) return known;
  }
  return FailureKind::General;
}

/// Kept until the process ends: the interpreter may be gone before the library is.
py::handle failureClass() {
  static PyObject* const found =
      py::module_::import("vlclientui._failures").attr("RuntimeFailure").cast<py::object>().release().ptr();
  return found;
}

/// What waits for the caller on one thread. It may outlive the interpreter, which then can take nothing back.
struct Waiting {
  ~Waiting() {
    if (Py_IsInitialized() == 0) static_cast<void>(raised.release());
  }

  std::unique_ptr<py::error_already_set> raised;
};

std::unique_ptr<py::error_already_set>& waiting() {
  static thread_local Waiting ofThread;
  return ofThread.raised;
}

std::string shownText(py::handle object) {
  return py::cast<Text>(py::reinterpret_steal<py::object>(PyObject_Str(object.ptr()))).utf8;
}

/// What str() gives; the name of the class where that is nothing, or fails itself.
std::string descriptionOf(const py::error_already_set& raised) {
  try {
    const std::string text = raised.value() ? shownText(raised.value()) : std::string();
    if (!text.empty()) return text;
  } catch (const py::error_already_set&) {
    PyErr_Clear();
  } catch (const py::cast_error&) {
    PyErr_Clear();
  }
  return py::cast<Text>(raised.type().attr("__name__")).utf8;
}

/// So that a developer finds the line: most failures end without a word in the library.
void log(const py::error_already_set& raised, const std::string& where) {
  try {
    const py::object logger = py::module_::import("logging").attr("getLogger")("vlclientui");
    const py::tuple info = py::make_tuple(raised.type(), raised.value() ? raised.value() : py::none(),
                                          raised.trace() ? raised.trace() : py::none());
    logger.attr("debug")("%s raised", Text{where}, py::arg("exc_info") = info);
  } catch (py::error_already_set& failure) {
    failure.discard_as_unraisable("the log of vlclientui");
  }
}

void raiseFailure(const RuntimeFailure& failure) {
  const py::handle type = failureClass();
  const py::object raised = type(Text{failure.description()}, nameOf(failure.kind()));
  PyErr_SetObject(type.ptr(), raised.ptr());
}

/// The interpreter ends threads that ask for its lock while it goes, by unwinding them. No destructor of the
/// library would live through that.
template <class Take>
auto taking(Take&& take) {
  try {
    return take();
  } catch (const abi::__forced_unwind&) {
    for (;;) pause();
  }
}

}  // namespace

Locked::Locked() : state_(taking([] { return PyGILState_Ensure(); })) {}

Locked::~Locked() {
  inPython_.end();
  PyGILState_Release(state_);
}

Unlocked::Unlocked() : state_(PyEval_SaveThread()) {}

Unlocked::~Unlocked() {
  taking([this] { PyEval_RestoreThread(state_); });
}

Reference referenceTo(py::handle object) {
  return {object.inc_ref().ptr(), [](PyObject* held) {
            // Without an interpreter nothing is left that it could be given back to.
            if (Py_IsInitialized() == 0) return;
            const Locked lock;
            Py_XDECREF(held);
          }};
}

bool isTrue(py::handle object) {
  const int truth = PyObject_IsTrue(object.ptr());
  if (truth < 0) throw py::error_already_set();
  return truth != 0;
}

void keepForCaller(py::error_already_set&& raised) {
  if (!raised.matches(PyExc_Exception)) Interruptible::giveUp();
  if (!waiting()) waiting() = std::make_unique<py::error_already_set>(std::move(raised));
}

void raiseWhatWaits() {
  if (!waiting()) return;
  py::error_already_set raised = std::move(*waiting());
  waiting().reset();
  throw raised;  // NOLINT(misc-throw-by-value-catch-by-reference): by value, out of the store
}

void translateFailures() {
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(thrown);
    } catch (const RuntimeFailure& failure) {
      raiseFailure(failure);
    } catch (const WindowGone&) {
      raiseFailure(RuntimeFailure("The window has gone", FailureKind::MissingObject));
    }
  });
}

void failAs(py::error_already_set& raised, const std::string& where) {
  log(raised, where);
  const RuntimeFailure failure(descriptionOf(raised), kindOf(raised.value()));
  if (!raised.matches(PyExc_Exception)) keepForCaller(std::move(raised));
  throw failure;
}

}  // namespace vlclientui::python

namespace pybind11::detail {

namespace {

/// Nothing for what UTF-8 cannot say.
bool encode(handle source, std::string& bytes) {
  const auto encoded =
      reinterpret_steal<object>(PyUnicode_AsEncodedString(source.ptr(), "utf-8", "surrogateescape"));
  if (!encoded) {
    PyErr_Clear();
    return false;
  }
  bytes.assign(PyBytes_AS_STRING(encoded.ptr()), static_cast<std::size_t>(PyBytes_GET_SIZE(encoded.ptr())));
  return true;
}

handle decode(const std::string& bytes) {
  PyObject* const text =
      PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogateescape");
  if (text == nullptr) throw error_already_set();
  return text;
}

}  // namespace

bool type_caster<vlclientui::python::Text>::load(handle source, bool /*convert*/) {
  return source && PyUnicode_Check(source.ptr()) != 0 && encode(source, value.utf8);
}

handle type_caster<vlclientui::python::Text>::cast(const vlclientui::python::Text& text,
                                                   return_value_policy /*policy*/, handle /*parent*/) {
  return decode(text.utf8);
}

bool type_caster<vlclientui::python::PathText>::load(handle source, bool /*convert*/) {
  if (!source || PyBytes_Check(source.ptr()) != 0) return false;
  const auto path = reinterpret_steal<object>(PyOS_FSPath(source.ptr()));
  if (!path) PyErr_Clear();
  return path && PyUnicode_Check(path.ptr()) != 0 && encode(path, value.native);
}

handle type_caster<vlclientui::python::PathText>::cast(const vlclientui::python::PathText& path,
                                                       return_value_policy /*policy*/, handle /*parent*/) {
  return decode(path.native);
}

}  // namespace pybind11::detail
