#pragma once

#include <QWidget>

#include "contracts/controls/Control.h"

namespace vlclientui::widgets {

class ControlBinding;
class FormBinder;

/// Whether the widget can stand for a frame, a tab strip, a tree or a report list.
[[nodiscard]] bool pageWidgetSuits(ControlKind kind, const QWidget& widget);

/// @pre pageWidgetSuits. The binding is a child of the binder.
[[nodiscard]] ControlBinding& makePageBinding(FormBinder& binder, Control& control, QWidget& widget);

}  // namespace vlclientui::widgets
