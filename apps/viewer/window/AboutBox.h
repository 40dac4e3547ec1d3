#pragma once

#include "host/Installation.h"

class QWidget;

namespace vlclientui::viewer {

/// Tells what program this is, and of which catalogue.
void showAbout(const host::Installation& installation, QWidget& parent);

}  // namespace vlclientui::viewer
