#pragma once

#include "viewpoint/ViewPointSteering.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The modal window that steers the viewpoint, with an OK button. It publishes in the locale's separator;
/// only OK publishes with ".".
class ViewPointDialogForm : public ViewPointSteering {
 public:
  explicit ViewPointDialogForm(Toolkit& toolkit);
};

}  // namespace vlclientui
#pragma GCC visibility pop
