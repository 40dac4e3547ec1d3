#pragma once

#include <cstddef>
#include <vector>

#include "client/drawing/DrawingProperties.h"
#include "client/drawing/ImageSource.h"

namespace vlclientui::client {

/// The sources that the properties let take part, bottom first, as indexes. Where two rank the same, the one
/// defined later lies on top. docs/mosaics.md has the rules in full.
///
/// LockRaster gives the one with that id, or all when there is none. ByAttribute puts the value closest to
/// the base on top (numbers and dates by distance; texts in their own order, the first on top) and what lacks
/// the attribute below. ClosestToViewpoint puts the nearest centre on top; without a viewpoint nothing
/// changes.
[[nodiscard]] std::vector<std::size_t> orderedSources(const std::vector<ImageSource>& sources,
                                                      const DrawingProperties& properties);

/// The source that a lock names: by its whole id, else by the part before the first ".", which is all that a
/// lock may tell of an id such as "12.0". @returns null when there is none.
[[nodiscard]] const ImageSource* lockedSource(const std::vector<ImageSource>& sources, const std::string& id);

}  // namespace vlclientui::client
