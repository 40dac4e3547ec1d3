#pragma once

#include <QKeyEvent>
#include <optional>

#include "contracts/controls/Control.h"

namespace vlclientui::widgets {

/// A key press in the numbers that the rules know. Nothing for Tab, which only moves the focus. A key
/// without a number of its own is 255.
[[nodiscard]] std::optional<KeyEvent> keyEventOf(const QKeyEvent& event);

}  // namespace vlclientui::widgets
