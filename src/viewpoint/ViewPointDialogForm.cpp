#include "viewpoint/ViewPointDialogForm.h"

namespace vlclientui {

ViewPointDialogForm::ViewPointDialogForm(Toolkit& toolkit) : ViewPointSteering(toolkit, dialogRules()) {}

}  // namespace vlclientui
