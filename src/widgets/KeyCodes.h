#pragma once

#include <QKeyEvent>
#include <optional>

#include "contracts/controls/Control.h"

namespace vlclientui::widgets {

/// A key press in the library's key codes. Nothing for Tab, which only moves the focus; 255 for a key without
/// a code.
[[nodiscard]] std::optional<KeyEvent> keyEventOf(const QKeyEvent& event);

}  // namespace vlclientui::widgets
