#pragma once

#include <cstddef>
#include <vector>

#include "client/drawing/DrawingProperties.h"
#include "client/drawing/ImageSource.h"

namespace vlclientui::client {

/// The sources that take part, bottom first, as indexes. Of equal ranks the one defined later is on top.
/// docs/mosaics.md has the details.
///
/// LockRaster gives the source with that id, or all when there is none. ByAttribute puts the value closest to
/// the base on top (numbers and dates by distance; texts in their order, the first on top), sources without
/// the attribute below. ClosestToViewpoint puts the nearest center on top; without a viewpoint the order
/// stays.
[[nodiscard]] std::vector<std::size_t> orderedSources(const std::vector<ImageSource>& sources,
                                                      const DrawingProperties& properties);

/// The source that a lock means: the one with that id, otherwise the one whose id equals it up to the first
/// ".", since a lock may hold only this part of an id such as "12.0". @returns null when there is none.
[[nodiscard]] const ImageSource* lockedSource(const std::vector<ImageSource>& sources, const std::string& id);

}  // namespace vlclientui::client
