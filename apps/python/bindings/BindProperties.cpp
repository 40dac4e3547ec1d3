#include "Bindings.h"
#include "Cycles.h"
#include "Objects.h"
#include "Pages.h"
#include "Windows.h"
#include "contracts/RuntimeFailure.h"
#include "properties/ServicePropertiesInterfaces.h"

namespace vlclientui::python {
namespace {

template <class Interface>
bool init(const InterfaceView<Interface>& self, const Text& configuration, const py::object& client,
          const py::object& service) {
  Given givenToBoth = givenClient(client);
  Given given = givenService(service);
  const auto object = self.use();
  const bool done = released(
      [&] { return object->Init(configuration.utf8, givenToBoth.object, given.object) != boolean16False; });
  self.whole().keep("client", std::move(givenToBoth));
  self.whole().keep("service", std::move(given));
  return done;
}

template <class Interface>
bool showPage(const InterfaceView<Interface>& self, std::int32_t page, WindowHandle parent) {
  const auto object = self.use();
  return released(
      [&] { return object->ShowPropertyPage(static_cast<PropertyPageId>(page), parent) != boolean16False; });
}

template <class Interface>
void bindShows(InterfaceClass<Interface>& dialog) {
  dialog
      .def("ShowPropertiesModalDialog", operation(&Interface::ShowPropertiesModalDialog),
           "Shows properties and metadata in one window.\n\n"
           "Returns:\n    int: 1 after OK, 0 otherwise, -1 for a failure that Status tells.\n"
           "Raises:\n    What the function that acts in the window raises.")
      .def("ShowViewPointModalDialog", operation(&Interface::ShowViewPointModalDialog),
           "Shows the window of the viewpoint.\n\nReturns:\n    bool: True once it has closed.\n"
           "Raises:\n    What the function that acts in the window raises.")
      .def("ShowPropertyPage", &showPage<Interface>, py::arg("pageId"), py::arg("parentHandle"),
           "Puts a page into a window of the host.\n\n"
           "Args:\n    pageId: a PropertyPageId; any other number does nothing.\n"
           "    parentHandle: of Session.add_host_window, or of a widget.\n"
           "Returns:\n    bool: False for a failure that Status tells.")
      .def("IsPropertyPageAvailable", operation(&Interface::IsPropertyPageAvailable), py::arg("pageId"),
           "Always True.")
      .def("Close", operation(&Interface::Close), py::arg("pageId"),
           "Takes a page out of its window, without saving.");
}

template <class Interface>
void bindOperations(InterfaceClass<Interface>& dialog) {
  dialog
      .def("Init", &init<Interface>, py::arg("dialogConfigXml"), py::arg("clientObject").none(true),
           py::arg("imageServiceObject").none(true),
           "Takes the service.\n\n"
           "Args:\n    dialogConfigXml: a document, or the name of a file with one; may be empty.\n"
           "    clientObject: as of the selection's Init, or None.\n"
           "    imageServiceObject: of this library, or any object with the members of one; or None.\n"
           "Returns:\n    bool: False for a failure that Status tells, or a message box: no definitions of "
           "attributes.")
      .def("GetUpdatedProperties", operation(&Interface::GetUpdatedProperties),
           "Saves the properties page.\n\nReturns:\n    str: the service properties document.")
      .def("Refresh", operation(&Interface::Refresh), "Fetches the documents again. Returns False always.")
      .def("Status", operation(&Interface::Status),
           "The last failure of the class on this thread.\n\nReturns:\n    str: never cleared by a success.")
      .def("DialogProperties", operation(&Interface::DialogProperties), py::arg("xml"),
           "Stored, otherwise unused.")
      .def("HasChanged", operation(&Interface::HasChanged),
           "Whether the page shows other properties than the service has.");
}

void bindNewer(InterfaceClass<IOVLServicePropertiesDialog>& dialog) {
  using Newer = IOVLServicePropertiesDialog;
  dialog
      .def("GetPropertyPageHandle", operation(&Newer::GetPropertyPageHandle), py::arg("pageId"),
           "The window of a page, for a host that places it itself.\n\nReturns:\n    int: 0 for an unknown "
           "page.")
      .def("serviceInfoXml", operation(&Newer::serviceInfoXml), py::arg("xml"),
           "The service info document, without a service object.")
      .def("MetaDataXml", operation(&Newer::MetaDataXml), py::arg("xml"),
           "The metadata document of the service, without a service object.")
      .def("ImageMetaDataXml", operation(&Newer::ImageMetaDataXml), py::arg("xml"),
           "The image metadata document, without a service object.")
      .def("ServicePropertiesXml", operation(&Newer::ServicePropertiesXml), py::arg("xml"),
           "The service properties document, without a service object.");
}

void setCallback(const InterfaceView<IOVLServicePropertiesDialog2>& self, const py::object& callback) {
  Given given = givenCallback(callback);
  const auto object = self.use();
  released([&] { object->SetCallback(given.object); });
  self.whole().keep("callback", std::move(given));
}

void bindExtension(py::module_& module) {
  using Extension = IOVLServicePropertiesDialog2;
  InterfaceClass<Extension>(module, "IOVLServicePropertiesDialog2",
                            "What a host without a service object sets, and how it hears of a lock.",
                            collected<InterfaceView<Extension>>())
      .def("SetProperty", operation(&Extension::SetProperty), py::arg("key"), py::arg("value"),
           "Sets a definition.\n\nArgs:\n    key: ClientXADef, ClientXFDef, ServiceMetadataXADef and so on.\n"
           "    value: the definition as text.")
      .def("SetCallback", &setCallback, py::arg("callback").none(true),
           "Hears of a lock to a raster.\n\n"
           "Args:\n    callback: a function of the service properties document, an object with\n"
           "        OnServicePropertiesChanged(xml), or None.");
}

}  // namespace

ServicePropertiesDialog& propertiesDialogOf(const PublicObject& object) {
  auto* const dialog = dynamic_cast<ServicePropertiesDialog*>(object.use().get());
  if (dialog == nullptr) {
    throw RuntimeFailure("The object is a " + object.object()->typeName() + " and has no pages",
                         FailureKind::TypeMismatch);
  }
  return *dialog;
}

void bindProperties(py::module_& module) {
  InterfaceClass<IServicePropertiesDialog> older(
      module, "IServicePropertiesDialog", "Shows and changes the properties of a service, older generation.",
      collected<InterfaceView<IServicePropertiesDialog>>());
  bindOperations(older);
  bindShows(older);
  InterfaceClass<IOVLServicePropertiesDialog> newer(
      module, "IOVLServicePropertiesDialog",
      "Shows and changes the properties of a service, newer generation.",
      collected<InterfaceView<IOVLServicePropertiesDialog>>());
  bindOperations(newer);
  bindShows(newer);
  bindNewer(newer);
  bindExtension(module);
  boundClass<py::class_<PublicObject>>(module, "PublicObject")
      .def_property_readonly(
          "properties_page",
          [](const PublicObject& self) {
            return Window(self.session(), propertiesDialogOf(self).propertiesPage());
          },
          "Window: of a ServicePropertiesDialog, once ShowPropertyPage has shown it: the form engine's Page "
          "in it. Raises\n"
          "RuntimeFailure for an object of another class.");
}

}  // namespace vlclientui::python
