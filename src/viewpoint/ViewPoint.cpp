#include "viewpoint/ViewPoint.h"

namespace vlclientui {

ViewPoint::ViewPoint(Toolkit& toolkit)
    : ViewPointSteering(toolkit, pageRules([this] { ViewPointChanged.raise(); })) {}

}  // namespace vlclientui
