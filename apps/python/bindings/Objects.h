#pragma once

#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "PythonClient.h"
#include "Session.h"
#include "contracts/Boolean16.h"
#include "contracts/Object.h"

/// The public objects of the library and their interfaces, as Python holds them.
namespace vlclientui::python {

/// An object that a host gives to a dialog, and what of Python stands behind it.
struct Given {
  ObjectPtr object;                       ///< null for None
  std::shared_ptr<PythonObject> written;  ///< in Python; null for one of the library
  py::object bound = py::reinterpret_borrow<py::object>(py::handle());  ///< one of the library
};

/// None, a client of this library, or any object with the member.
[[nodiscard]] Given givenClient(const py::object& client);
/// None, a service of this library, or any object with the members of one.
[[nodiscard]] Given givenService(const py::object& service);
/// None, an object with OnServicePropertiesChanged, or a function.
[[nodiscard]] Given givenCallback(const py::object& callback);

/// A whole object that the class factory made, and what it was given.
class PublicObject : public Held<Object> {
 public:
  using Held::Held;

  /// Keeps what was given in a place, instead of what was there.
  void keep(const std::string& place, Given given) { given_.insert_or_assign(place, std::move(given)); }
  [[nodiscard]] std::vector<py::handle> heldObjects() const;
  void forgetObjects();

 private:
  std::map<std::string, Given> given_;
};

/// One interface of a public object.
template <class Interface>
class InterfaceView : public Held<Interface> {
 public:
  InterfaceView(const PublicObject& whole, py::object wholeObject)
      : Held<Interface>(whole.session(), queryInterface<Interface>(whole.use())),
        whole_(std::move(wholeObject)) {}

  [[nodiscard]] PublicObject& whole() const { return whole_.cast<PublicObject&>(); }
  [[nodiscard]] std::vector<py::handle> heldObjects() const { return {whole_}; }
  void forgetObjects() { whole_ = py::none(); }

 private:
  py::object whole_;
};

inline bool toPython(Boolean16 value) { return value != boolean16False; }
inline std::int32_t toPython(std::int32_t value) { return value; }
inline Text toPython(std::string value) { return {std::move(value)}; }

template <class Argument>
using FromPython = std::conditional_t<std::is_same_v<std::decay_t<Argument>, std::string>, Text,
                                      std::conditional_t<std::is_enum_v<Argument>, std::int32_t, Argument>>;

inline const std::string& toLibrary(const Text& text) { return text.utf8; }
template <class Enumeration = std::int32_t>
std::int32_t toLibrary(std::int32_t number) {
  return number;
}

/// An operation of an interface, as a function for Python: without the lock, on the session's thread alone.
template <class Interface, class Result, class... Arguments>
auto operation(Result (Interface::*member)(Arguments...)) {
  return [member](const InterfaceView<Interface>& self, FromPython<Arguments>... arguments) {
    const std::shared_ptr<Interface> object = self.use();
    const auto call = [&]() -> Result {
      return (object.get()->*member)(static_cast<std::decay_t<Arguments>>(toLibrary(arguments))...);
    };
    if constexpr (std::is_void_v<Result>) {
      released(call);
    } else {
      return toPython(released(call));
    }
  };
}

/// The class for one interface, made from a PublicObject by `query`.
template <class Interface>
using InterfaceClass = py::class_<InterfaceView<Interface>>;

}  // namespace vlclientui::python
