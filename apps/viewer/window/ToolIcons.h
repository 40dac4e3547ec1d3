#pragma once

#include <QIcon>

/// Pictures of the tool bar, drawn with the painter.
namespace vlclientui::viewer {

/// A globe.
[[nodiscard]] QIcon worldIcon();
/// A dashed rectangle.
[[nodiscard]] QIcon rectangleIcon();
/// Sliders.
[[nodiscard]] QIcon propertiesIcon();
/// The mark of the viewpoint, as the map shows it.
[[nodiscard]] QIcon viewPointIcon();
/// A written sheet.
[[nodiscard]] QIcon metadataIcon();

}  // namespace vlclientui::viewer
