#pragma once

#include <chrono>
#include <string>

#include "client/drawing/Drawing.h"
#include "client/facade/SourcePassages.h"

namespace vlclientui::client {

/// The element `Origin` of an exported image: where its pixels come from, how they were made, and what it
/// took. It holds no secret. docs/export.md has its shape.
/// @param began when the export did.
[[nodiscard]] std::string originElement(const DrawnImage& image, const SourcePassages& passages,
                                        std::chrono::system_clock::time_point began);

}  // namespace vlclientui::client
