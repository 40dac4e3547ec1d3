#pragma once

#include "viewpoint/ViewPointSteering.h"

namespace vlclientui {

/// The modal window that steers the viewpoint, with an OK button. It publishes in the locale's separator;
/// only OK publishes with ".".
class ViewPointDialogForm : public ViewPointSteering {
 public:
  explicit ViewPointDialogForm(Toolkit& toolkit);
};

}  // namespace vlclientui
