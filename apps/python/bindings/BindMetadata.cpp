#include "Bindings.h"
#include "Pages.h"
#include "Windows.h"

namespace vlclientui::python {

void bindMetadata(py::module_& module) {
  boundClass<py::class_<PublicObject>>(module, "PublicObject")
      .def_property_readonly(
          "metadata_page",
          [](const PublicObject& self) {
            return Window(self.session(), propertiesDialogOf(self).metadataPage());
          },
          "Window: of a ServicePropertiesDialog, once ShowPropertyPage has shown it: a tree of nodes beside "
          "the form engine's Page. Raises\n"
          "RuntimeFailure for an object of another class.");
}

}  // namespace vlclientui::python
