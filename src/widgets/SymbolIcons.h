#pragma once

#include <QIcon>

namespace vlclientui::widgets {

/// Pictures drawn with the painter, sharp at every size.
[[nodiscard]] QIcon folderIcon();
/// A small picture of hills under a sky: a service of images.
[[nodiscard]] QIcon serviceIcon();

}  // namespace vlclientui::widgets
