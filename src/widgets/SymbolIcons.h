#pragma once

#include <QIcon>

namespace vlclientui::widgets {

/// Pictures drawn with the painter, sharp at every size.
[[nodiscard]] QIcon folderIcon();
/// A small picture of hills under a sky: a service of images.
[[nodiscard]] QIcon serviceIcon();

/// Name of the property by which a layout gives a button its picture; for a node of a tree its key follows,
/// after "_".
inline constexpr const char* symbolProperty = "symbol";

/// The picture of that name: "service", "image", "process", "sources", "lock", "centre", or an arrow: "up",
/// "upRight", "right", "downRight", "down", "downLeft", "left", "upLeft". Arrows and center have the color
/// of button texts, highlighted while the button is checked. No picture for any other name.
[[nodiscard]] QIcon symbolIcon(const QString& name);

}  // namespace vlclientui::widgets
