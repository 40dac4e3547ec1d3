#pragma once

#include "contracts/Plexa.h"
#include "host/Compose.h"

class QWidget;

/// Windows of a host on the toolkit of composeDesktopPlatform.
namespace vlclientui::host {

/// The number to pass where a dialog asks for a window of the host, such as ShowPropertyPage. The page then
/// stands in the widget as a child and may be put into a layout of it. The number is the widget's alone, also
/// after the widget has gone. @throws RuntimeFailure for a platform of another toolkit.
[[nodiscard]] WindowHandle windowHandleOf(const ComposedHost& host, QWidget& widget);

}  // namespace vlclientui::host
