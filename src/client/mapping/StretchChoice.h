#pragma once

#include <optional>

#include "client/drawing/Drawing.h"
#include "client/mapping/RasterHandles.h"
#include "client/mapping/Stretch.h"

namespace vlclientui::client {

/// Decides how a service looks, from what its rasters tell of themselves and, beyond 8 bits, from a sample of
/// the whole service: 2 to 98 percent of its values, of heights 0.5 to 99.5. Reads for some hundredths of a
/// second, whatever the size of the service.
/// @returns nothing when the work of this thread was given up.
/// @throws RuntimeFailure when the service cannot be read.
[[nodiscard]] std::optional<Stretch> chosenStretch(const Drawing& drawing, RasterHandles& handles);

}  // namespace vlclientui::client
