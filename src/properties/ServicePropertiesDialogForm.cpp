#include "properties/ServicePropertiesDialogForm.h"

namespace vlclientui {

ServicePropertiesDialogForm::ServicePropertiesDialogForm(Toolkit& toolkit)
    : Form(toolkit, "ServicePropertiesDialogForm") {
  setCaption("Service Properties");
}

std::int32_t ServicePropertiesDialogForm::ShowMe() {
  showModal();
  return 0;
}

std::shared_ptr<void> ServicePropertiesDialogForm::buildControls() { return nullptr; }

}  // namespace vlclientui
