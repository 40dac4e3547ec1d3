#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "client/mapping/SampleTile.h"
#include "client/mapping/Stretch.h"

namespace vlclientui::client {

/// Colors of classes by their numbers: red, green, blue, alpha.
using ClassColors = std::vector<std::array<std::uint8_t, 4>>;

/// What values look like. @param classes of a palette. @param scale pixels of the service for one of the
/// tile, which relief depends on; above 0.
/// @returns four bytes for each pixel: red, green, blue, alpha (not premultiplied).
[[nodiscard]] std::vector<std::uint8_t> coloredTile(const SampleTile& tile, const Stretch& stretch,
                                                    const ClassColors& classes, double scale);

/// The color at a share (0 to 1) of a ramp, as for a legend: red, green, blue.
[[nodiscard]] std::array<std::uint8_t, 3> rampColor(Ramp ramp, double share);

}  // namespace vlclientui::client
