#include "Bindings.h"
#include "Cycles.h"
#include "Objects.h"
#include "export/ExportDialogInterfaces.h"

namespace vlclientui::python {
namespace {

using Dialog = IExportImageDialog;

bool init(const InterfaceView<Dialog>& self, const Text& configuration, const py::object& client,
          const py::object& service) {
  Given givenToAsk = givenClient(client);
  Given given = givenService(service);
  const auto object = self.use();
  const bool done = released([&] {
    return object->IExportImageDialog_Init(configuration.utf8, givenToAsk.object, given.object) !=
           boolean16False;
  });
  self.whole().keep("client", std::move(givenToAsk));
  self.whole().keep("service", std::move(given));
  return done;
}

}  // namespace

void bindExport(py::module_& module) {
  InterfaceClass<Dialog>(module, "IExportImageDialog",
                         "Exports an area of a service: Init, show, read the outcome.",
                         collected<InterfaceView<Dialog>>())
      .def("IExportImageDialog_Init", &init, py::arg("dialogConfigXml"), py::arg("clientObject").none(true),
           py::arg("imageService").none(true),
           "Takes the service.\n\n"
           "Args:\n    dialogConfigXml: accepted and ignored.\n    clientObject: as of the selection's Init, "
           "or None.\n"
           "    imageService: of this library, or any object with the members of one; or None.\n"
           "Returns:\n    bool: False for a failure.")
      .def("iExportImageDialog_ShowModalDialog", operation(&Dialog::iExportImageDialog_ShowModalDialog),
           "Shows the window.\n\nReturns:\n    bool: False always.\n"
           "Raises:\n    RuntimeFailure: when the service fails while its documents are read.\n"
           "    What the function that acts in the window raises.")
      .def("iExportImageDialog_ShowModalDialogEx", operation(&Dialog::iExportImageDialog_ShowModalDialogEx),
           py::arg("exportDialogPropertiesXml"),
           "As iExportImageDialog_ShowModalDialog, with extents of the host.\n\n"
           "Args:\n    exportDialogPropertiesXml: a document with //Vorlane/Client/ExportImageDialog, or "
           "empty.")
      .def("iExportImageDialog_ShowEmbeddedForm", operation(&Dialog::iExportImageDialog_ShowEmbeddedForm),
           py::arg("parentWindowHandle"), "Not supported: returns False.")
      .def("iExportImageDialog_GetUpdatedProperties",
           operation(&Dialog::iExportImageDialog_GetUpdatedProperties),
           "The outcome.\n\nReturns:\n    str: the GetImage element; empty before any show and after Cancel.")
      .def("iExportImageDialog_Status", operation(&Dialog::iExportImageDialog_Status), "Always empty.");
}

}  // namespace vlclientui::python
