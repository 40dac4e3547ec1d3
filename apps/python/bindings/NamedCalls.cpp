#include "NamedCalls.h"

#include "contracts/RuntimeFailure.h"

namespace vlclientui::python {
namespace {

std::string classNameOf(py::handle object) {
  return py::cast<Text>(py::type::handle_of(object).attr("__name__")).utf8;
}

std::string typeNameOf(py::handle object) {
  const py::object own = py::getattr(object, "type_name", py::none());
  return py::isinstance<py::str>(own) ? py::cast<Text>(own).utf8 : classNameOf(object);
}

bool isMethodOf(py::handle object, const char* member) {
  const py::object ofClass = py::getattr(py::type::handle_of(object), member, py::none());
  return !ofClass.is_none() && PyCallable_Check(ofClass.ptr()) != 0;
}

}  // namespace

NamedCalls::NamedCalls(py::handle object) : object_(referenceTo(object)), typeName_(typeNameOf(object)) {}

/// Whatever is raised inside becomes a failure, while the lock is still held.
template <class Call>
auto NamedCalls::calling(const char* member, Call&& call) const {
  const Reference kept = object_;
  if (!kept) failMissingObject(std::string("the Python object of ") + member);
  const Locked lock;
  try {
    return call(objectOf(kept));
  } catch (py::error_already_set& raised) {
    failAs(raised, typeName_ + "." + member);
  }
}

py::object NamedCalls::member(const char* name) const {
  const py::handle object = objectOf(object_);
  const bool isKnown = py::hasattr(py::type::handle_of(object), name);
  py::object found = isKnown ? object.attr(name).cast<py::object>() : py::getattr(object, name, py::object());
  if (!found) {
    throw RuntimeFailure(typeName_ + " has no member " + name, FailureKind::MissingObject);
  }
  return found;
}

void NamedCalls::failWrongType(const py::object& value, const char* member, const char* due) const {
  throw RuntimeFailure(
      std::string(member) + " of " + typeName_ + " gives " + classNameOf(value) + " where " + due + " is due",
      FailureKind::TypeMismatch);
}

std::string NamedCalls::textFrom(const py::object& value, const char* member) const {
  py::detail::make_caster<Text> caster;
  if (!caster.load(value, false)) failWrongType(value, member, "a text");
  return py::detail::cast_op<Text&>(caster).utf8;
}

bool NamedCalls::truthFrom(const py::object& value, const char* member) const {
  if (!py::isinstance<py::bool_>(value) && !py::isinstance<py::int_>(value)) {
    failWrongType(value, member, "a truth value");
  }
  return isTrue(value);
}

std::string NamedCalls::callForText(const char* member, const std::string& argument) const {
  return calling(member, [&](py::handle) { return textFrom(this->member(member)(Text{argument}), member); });
}

std::string NamedCalls::callForText(const char* member, std::int32_t argument) const {
  return calling(member, [&](py::handle) { return textFrom(this->member(member)(argument), member); });
}

bool NamedCalls::callForTruth(const char* member) const {
  return calling(member, [&](py::handle) { return truthFrom(this->member(member)(), member); });
}

bool NamedCalls::callForTruth(const char* member, const std::string& argument) const {
  return calling(member, [&](py::handle) { return truthFrom(this->member(member)(Text{argument}), member); });
}

void NamedCalls::call(const char* member, const std::string& argument) const {
  calling(member, [&](py::handle) { this->member(member)(Text{argument}); });
}

std::string NamedCalls::readText(const char* member) const {
  return calling(member, [&](py::handle) {
    const py::object value = this->member(member);
    return textFrom(PyCallable_Check(value.ptr()) != 0 ? value() : value, member);
  });
}

void NamedCalls::write(const char* member, const std::string& value) const {
  calling(member, [&](py::handle object) {
    if (isMethodOf(object, member)) {
      object.attr(member)(Text{value});
    } else if (py::hasattr(py::type::handle_of(object), member) || py::hasattr(object, member)) {
      object.attr(member) = py::cast(Text{value});
    } else {
      static_cast<void>(this->member(member));
    }
  });
}

}  // namespace vlclientui::python
