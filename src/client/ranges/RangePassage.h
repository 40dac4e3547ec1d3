#pragma once

#include <memory>
#include <string>

#include "client/network/CoverageRequests.h"
#include "client/ranges/FileAhead.h"

namespace vlclientui::client {

/// What fetches a window of an image of the web ahead of whoever reads it at its own size, from the top on,
/// for as long as it is held. Begins with the first read.
/// @param name of this room. @param window in pixels of the file.
/// @returns null for images of which nobody can tell which bytes of the file hold which pixels.
[[nodiscard]] std::shared_ptr<FileAhead> rangePassage(const std::string& name, const PixelWindow& window);

}  // namespace vlclientui::client
