#include "viewpoint/ViewPoint.h"

namespace vlclientui {

ViewPoint::ViewPoint(Toolkit& toolkit) : Form(toolkit, "ViewPoint") { setCaption("View Point"); }

void ViewPoint::RefReshViewpoints() {}

std::shared_ptr<void> ViewPoint::buildControls() { return nullptr; }

}  // namespace vlclientui
