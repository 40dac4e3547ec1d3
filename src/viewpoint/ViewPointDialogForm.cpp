#include "viewpoint/ViewPointDialogForm.h"

namespace vlclientui {

ViewPointDialogForm::ViewPointDialogForm(Toolkit& toolkit) : Form(toolkit, "ViewPointDialogForm") {
  setCaption("ViewPoint");
}

void ViewPointDialogForm::RefReshViewpoints() {}

std::shared_ptr<void> ViewPointDialogForm::buildControls() { return nullptr; }

}  // namespace vlclientui
