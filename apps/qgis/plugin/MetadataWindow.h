#pragma once

#include <functional>
#include <memory>
#include <string>

#include "viewer/services/PickedService.h"

class QWidget;

namespace vlclientui::qgis {

/// The metadata page in a modal window of its own; returns once that is closed.
/// @param locked told of a properties document that locks the mosaic to a raster.
/// @throws RuntimeFailure when it cannot be shown.
void showMetadata(const host::ComposedHost& host, const std::shared_ptr<viewer::PickedService>& service,
                  const QString& title, const std::function<void(const std::string& properties)>& locked,
                  QWidget* parent);

}  // namespace vlclientui::qgis
