#include "Bindings.h"
#include "Pages.h"
#include "Windows.h"
#include "host/HandedOver.h"

namespace vlclientui::python {
namespace {

py::dict handedOver() {
  currentSession()->use();
  const host::HandedOver held = host::handedOver();
  py::dict told;
  told["lock_image_id"] = Text{held.lockImageId};
  told["viewpoint_x"] = Text{held.viewPointX};
  told["viewpoint_y"] = Text{held.viewPointY};
  return told;
}

void handOver(const Text& lockImageId, const Text& viewPointX, const Text& viewPointY) {
  currentSession()->use();
  const host::HandedOver held = host::handedOver();
  held.lockImageId = lockImageId.utf8;
  held.viewPointX = viewPointX.utf8;
  held.viewPointY = viewPointY.utf8;
}

}  // namespace

void bindViewpoint(py::module_& module) {
  boundClass<py::class_<PublicObject>>(module, "PublicObject")
      .def_property_readonly(
          "viewpoint_page",
          [](const PublicObject& self) {
            return Window(self.session(), propertiesDialogOf(self).viewPointPage());
          },
          "Window: of a ServicePropertiesDialog, once ShowPropertyPage has shown it: its boxes and its nine "
          "buttons. Raises\n"
          "RuntimeFailure for an object of another class.");
  module.def("handed_over", &handedOver,
             "What the pages of this thread hand to each other until a save takes it.\n\n"
             "Returns:\n    dict: lock_image_id, viewpoint_x and viewpoint_y, as texts; empty for none.\n"
             "Raises:\n    RuntimeFailure: without a session.");
  module.def("hand_over", &handOver, py::kw_only(), py::arg("lock_image_id") = Text{},
             py::arg("viewpoint_x") = Text{}, py::arg("viewpoint_y") = Text{},
             "Replaces what handed_over tells, as a host does that shows several services in turn.\n\n"
             "Raises:\n    RuntimeFailure: without a session.");
}

}  // namespace vlclientui::python
