#pragma once

#include <QIcon>

namespace vlclientui::viewer {

/// Three discs that overlap.
[[nodiscard]] QIcon colorsIcon();

}  // namespace vlclientui::viewer
