#include <pybind11/stl.h>

#include "Bindings.h"
#include "Cycles.h"
#include "Objects.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "export/ExportDialogInterfaces.h"
#include "frame/LiveObjects.h"
#include "frame/PublicClasses.h"
#include "library/ClassFactory.h"
#include "properties/ServicePropertiesInterfaces.h"
#include "selection/ImageServicesDialogInterfaces.h"

namespace vlclientui::python {
namespace {

PublicObject createIn(const SessionPtr& session, const Text& nameOrIdentity) {
  session->use();
  return {session, released([&] { return createObject(nameOrIdentity.utf8); })};
}

/// The view of one interface, or nothing when it has another name.
template <class Interface>
py::object viewIf(const py::object& whole, const std::string& name) {
  if (name != Interface::interfaceName) return py::none();
  const auto& object = whole.cast<const PublicObject&>();
  if (!queryInterface<Interface>(object.use())) return py::none();
  return py::cast(InterfaceView<Interface>(object, whole));
}

template <class... Interfaces>
py::object viewOf(const py::object& whole, const std::string& name) {
  py::object found = py::none();
  static_cast<void>(((found = viewIf<Interfaces>(whole, name), !found.is_none()) || ...));
  return found;
}

py::object query(const py::object& whole, const Text& name) {
  py::object found =
      viewOf<IImageServicesDialog, IOVLImageServicesDialog, IServicePropertiesDialog,
             IOVLServicePropertiesDialog, IOVLServicePropertiesDialog2, IExportImageDialog>(whole, name.utf8);
  if (!found.is_none()) return found;
  throw RuntimeFailure("The object has no interface " + name.utf8, FailureKind::TypeMismatch);
}

py::list publicClassList() {
  py::list classes;
  for (const PublicClass& each : publicClasses()) {
    py::list interfaces;
    for (const auto& name : each.furtherInterfaces) {
      if (!name.empty()) interfaces.append(py::str(std::string(name)));
    }
    classes.append(py::make_tuple(py::str(std::string(each.name)), py::str(std::string(each.classIdentity)),
                                  py::tuple(interfaces)));
  }
  return classes;
}

/// Hears silent ends while it is entered.
class Silence {
 public:
  Silence() = default;
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  void enter() {
    if (listener_) throw RuntimeFailure("This is entered already");
    thread_ = std::this_thread::get_id();
    listener_ =
        std::make_unique<SilenceListener>([ends = ends_](const SilentEnd& end) { ends->push_back(end); });
  }
  void exit() {
    if (std::this_thread::get_id() != thread_) throw RuntimeFailure("Another thread entered this");
    listener_.reset();
  }
  ~Silence() {
    // Only its own thread may end it.
    if (std::this_thread::get_id() != thread_) static_cast<void>(listener_.release());
  }
  [[nodiscard]] std::vector<std::pair<Text, Text>> ends() const {
    std::vector<std::pair<Text, Text>> told;
    for (const SilentEnd& end : *ends_) told.push_back({{end.routine}, {end.reason}});
    return told;
  }

 private:
  std::shared_ptr<std::vector<SilentEnd>> ends_ = std::make_shared<std::vector<SilentEnd>>();
  std::unique_ptr<SilenceListener> listener_;
  std::thread::id thread_;  ///< that entered
};

}  // namespace

void bindFrame(py::module_& module) {
  py::class_<PublicObject>(module, "PublicObject", "An object of the library, with its interfaces.",
                           collected<PublicObject>())
      .def_property_readonly(
          "type_name", [](const PublicObject& self) { return Text{self.use()->typeName()}; },
          "str: the name of its class.")
      .def("query", &query, py::arg("interface"),
           "One of its interfaces.\n\nArgs:\n    interface: its name, such as IOVLImageServicesDialog.\n"
           "Raises:\n    RuntimeFailure: when the object has none of that name.");
  boundClass<py::class_<Session, SessionPtr>>(module, "Session")
      .def("create", &createIn, py::arg("class_name"),
           "Makes an object of a public class.\n\n"
           "Args:\n    class_name: its name, or its identity in braces.\n"
           "Returns:\n    PublicObject: its interfaces are found by query.\n"
           "Raises:\n    RuntimeFailure: for a class that hosts cannot create.");
  module.def(
      "public_classes", &publicClassList,
      "The public classes.\n\nReturns:\n    list: name, identity and names of the interfaces of each.");
  module.def("live_object_count", &liveObjectCount, "How many objects of the library live, on all threads.");
  py::class_<Silence>(
      module, "Silence",
      "Hears, inside a `with`, of routines of this thread that end without a word to the person.")
      .def(py::init<>())
      .def("__enter__",
           [](const py::object& self) {
             self.cast<Silence&>().enter();
             return self;
           })
      .def("__exit__", [](Silence& self, const py::args&) { self.exit(); })
      .def_property_readonly("ends", &Silence::ends, "list[tuple[str, str]]: routine and reason of each.");
}

}  // namespace vlclientui::python
