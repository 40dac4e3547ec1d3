#pragma once

#include <filesystem>

namespace vlclientui::samples {

/// Writes the mosaics of the catalogue as a static catalogue of STAC: a collection for each, an item for each
/// of its rasters, folders as catalogues. The rasters themselves are reached by a link, "images". A failure
/// is a SampleFailure.
void writeStacCatalogue(const std::filesystem::path& folder, const std::filesystem::path& catalogue);

}  // namespace vlclientui::samples
