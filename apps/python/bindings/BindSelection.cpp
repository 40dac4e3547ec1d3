#include "Bindings.h"
#include "Cycles.h"
#include "Objects.h"
#include "selection/ImageServicesDialogInterfaces.h"

namespace vlclientui::python {
namespace {

template <class Interface>
bool init(const InterfaceView<Interface>& self, const Text& configuration, const py::object& client) {
  Given given = givenClient(client);
  const auto object = self.use();
  const bool done =
      released([&] { return object->Init(configuration.utf8, given.object) != boolean16False; });
  self.whole().keep("client", std::move(given));
  return done;
}

/// Both generations have the same operations.
template <class Interface>
void bindDialog(py::module_& module, const char* name, const char* words) {
  InterfaceClass<Interface>(module, name, words, collected<InterfaceView<Interface>>())
      .def("Init", &init<Interface>, py::arg("dialogConfigXml"), py::arg("Client").none(true),
           "Takes the client that is asked for services.\n\n"
           "Args:\n    dialogConfigXml: accepted and ignored.\n"
           "    Client: of this library, or any object with GetServerInfo(request) -> str; or None.\n"
           "Returns:\n    bool: False when it failed; Status may tell why.")
      .def("ShowDialog", operation(&Interface::ShowDialog),
           "Shows the window and returns when it has closed.\n\nReturns:\n    bool: False when it could not "
           "be shown.\n"
           "Raises:\n    What the function that acts in the window raises.")
      .def("ShowDialogEx", operation(&Interface::ShowDialogEx), py::arg("Xml"),
           "As ShowDialog, with the extent of a view.\n\n"
           "Args:\n    Xml: an AddImageServiceDialog document; empty for none.")
      .def("GetSelectedServices", operation(&Interface::GetSelectedServices),
           "The document of the selected services.\n\nReturns:\n    str: empty before any show and after "
           "Cancel.")
      .def("Status", operation(&Interface::Status),
           "The last failure of the class on this thread.\n\nReturns:\n    str: never cleared by a success.");
}

}  // namespace

void bindSelection(py::module_& module) {
  bindDialog<IImageServicesDialog>(module, "IImageServicesDialog",
                                   "Picks image services of a server, older generation: Init, show, read.");
  bindDialog<IOVLImageServicesDialog>(
      module, "IOVLImageServicesDialog",
      "Picks image services of a server, newer generation: Init, show, read.");
}

}  // namespace vlclientui::python
