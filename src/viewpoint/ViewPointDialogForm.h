#pragma once

#include "viewpoint/ViewPointSteering.h"

namespace vlclientui {

/// The modal window that steers the viewpoint, with an OK button. Only OK makes the decimal separator of what
/// was published ".".
class ViewPointDialogForm : public ViewPointSteering {
 public:
  explicit ViewPointDialogForm(Toolkit& toolkit);
};

}  // namespace vlclientui
