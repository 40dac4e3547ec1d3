#pragma once

#include <QImage>

#include "client/mapping/ServicePicture.h"

namespace vlclientui::viewer {

/// Null for an empty picture.
[[nodiscard]] QImage toImage(const client::ServicePicture& picture);

}  // namespace vlclientui::viewer
