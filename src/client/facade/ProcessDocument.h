#pragma once

#include <string>
#include <vector>

#include "client/drawing/Drawing.h"
#include "client/drawing/SourceUse.h"

namespace vlclientui::client {

/// Appends an image's `ProcessMetadata`: how it was made. docs/mosaics.md has its content.
/// @param uses of all sources, in the service's order.
void writeImageProcess(std::string& out, const DrawnImage& image, const std::vector<SourceUse>& uses);

/// Appends the element `ProcessMetadata` of one source.
void writeSourceProcess(std::string& out, const DrawnImage& image, const ImageSource& source,
                        const SourceUse& use);

}  // namespace vlclientui::client
