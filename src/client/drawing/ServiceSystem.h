#pragma once

#include <optional>
#include <string>

#include "client/drawing/ImageSource.h"

namespace vlclientui::client {

/// The service as it is in another coordinate system: where it lies, how large its pixels are, and where its
/// sources lie. Sources that cannot be brought there are left out.
/// @param systemText of Srs/Prj: a definition, or a code such as "EPSG:4326". The service's own system, or an
/// empty text, changes nothing. @returns nothing when the text names no system, the service has none itself,
/// or nothing of it can be brought there.
[[nodiscard]] std::optional<ImageServiceRecord> inSystem(const ImageServiceRecord& service,
                                                         const std::string& systemText);

}  // namespace vlclientui::client
