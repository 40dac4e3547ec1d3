#pragma once

#include <vector>

#include "client/drawing/ImageSource.h"

namespace vlclientui::client {

/// How far one source lies from the next, in the service's coordinates; both above 0.
struct Spacing {
  double across = 0;
  double down = 0;
};

/// The mean distance from the centre of each source to that of its neighbour: the nearest centre that lies
/// more across than down (or more down than across) from it. Centres nearer than a twentieth of the mean
/// size of the sources are the same place. Where no source has a neighbour that way, the mean size.
/// @param sources at least one.
[[nodiscard]] Spacing averageSpacing(const std::vector<ImageSource>& sources);

}  // namespace vlclientui::client
