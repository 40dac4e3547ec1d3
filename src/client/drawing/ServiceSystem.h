#pragma once

#include <optional>
#include <string>

#include "client/drawing/ImageSource.h"

namespace vlclientui::client {

/// The service in another coordinate system: its place, its pixel size, and its sources' places. Sources that
/// cannot be transformed are left out.
/// @param systemText of Srs/Prj: a definition, or a code such as "EPSG:4326". An empty text, or the service's
/// own system, changes nothing. @returns nothing when the text names no system, when the service has none, or
/// when none of it can be transformed.
[[nodiscard]] std::optional<ImageServiceRecord> inSystem(const ImageServiceRecord& service,
                                                         const std::string& systemText);

}  // namespace vlclientui::client
