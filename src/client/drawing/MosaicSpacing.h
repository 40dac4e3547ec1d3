#pragma once

#include <vector>

#include "client/drawing/ImageSource.h"

namespace vlclientui::client {

/// Distance from one source to the next, in the service's coordinates; both above 0.
struct Spacing {
  double across = 0;
  double down = 0;
};

/// The mean distance from each source's center to that of its neighbor in a direction: the nearest center
/// that lies more across than down from it, or more down than across. Centers closer than a twentieth of the
/// mean source size are the same place. Without neighbors in a direction, the mean size.
/// @param sources at least one.
[[nodiscard]] Spacing averageSpacing(const std::vector<ImageSource>& sources);

}  // namespace vlclientui::client
