#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Interpreter.h"

namespace vlclientui::python {

/// A Python object whose members are called by their names, as the contracts ask. Every call takes the
/// interpreter's lock. What a member raises, a member that is missing and a value of the wrong type are
/// failures.
class NamedCalls {
 public:
  /// The calling thread holds the lock.
  explicit NamedCalls(py::handle object);

  /// The attribute `type_name`, else the name of the class. As it was when this was made.
  [[nodiscard]] const std::string& typeName() const { return typeName_; }
  [[nodiscard]] std::string callForText(const char* member, const std::string& argument) const;
  [[nodiscard]] std::string callForText(const char* member, std::int32_t argument) const;
  [[nodiscard]] bool callForTruth(const char* member) const;
  [[nodiscard]] bool callForTruth(const char* member, const std::string& argument) const;
  void call(const char* member, const std::string& argument) const;
  /// A property; a method without arguments does as well.
  [[nodiscard]] std::string readText(const char* member) const;
  /// Writes a property; where the member is a method, calls it.
  void write(const char* member, const std::string& value) const;

  /// For the collector of cycles. Null once it was forgotten.
  [[nodiscard]] py::handle object() const { return objectOf(object_); }
  /// Lets the object go; later calls fail.
  void forget() { object_.reset(); }

 private:
  template <class Call>
  auto calling(const char* member, Call&& call) const;
  [[nodiscard]] py::object member(const char* name) const;
  [[nodiscard]] std::string textFrom(const py::object& value, const char* member) const;
  [[nodiscard]] bool truthFrom(const py::object& value, const char* member) const;
  [[noreturn]] void failWrongType(const py::object& value, const char* member, const char* due) const;

  Reference object_;
  std::string typeName_;
};

}  // namespace vlclientui::python
