#pragma once

#include <QImage>

#include "client/facade/Thumbnail.h"

namespace vlclientui::viewer {

/// Null for an empty picture.
[[nodiscard]] QImage toImage(const client::Thumbnail& picture);

}  // namespace vlclientui::viewer
