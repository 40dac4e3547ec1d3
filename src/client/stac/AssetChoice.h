#pragma once

#include <string>
#include <vector>

#include "client/stac/StacDocuments.h"

namespace vlclientui::client {

/// Which file of an item is shown where nobody says otherwise: true colors first ("visual" as role or key),
/// then data, then any image; of equals a cloud-optimized TIFF before another TIFF before other images, then
/// the one that is told first. Null where there is none.
[[nodiscard]] const StacAsset* chosenAsset(const std::vector<StacAsset>& assets);

/// The one of that key; null where there is none.
[[nodiscard]] const StacAsset* assetOf(const std::vector<StacAsset>& assets, const std::string& key);

/// Where the file of an asset is to be had: seen from the document that tells of it. A problem for what is no
/// web address: storage of a cloud ("s3://"), a path of another machine.
[[nodiscard]] OrStacProblem<std::string> assetAddress(const std::string& base, const StacAsset& asset);

}  // namespace vlclientui::client
