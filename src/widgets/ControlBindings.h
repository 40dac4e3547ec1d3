#pragma once

#include "widgets/ControlBinding.h"

namespace vlclientui::widgets {

/// Whether a widget can show controls of that kind: a line edit shows a text box, a push or tool button a
/// button.
[[nodiscard]] bool widgetSuits(ControlKind kind, const QWidget& widget);

/// Makes the binding of the control's kind and brings the widget to the control's state.
/// @pre widgetSuits(control.kind(), widget)
ControlBinding& bindControl(FormBinder& binder, Control& control, QWidget& widget);

}  // namespace vlclientui::widgets
