#pragma once

#include <optional>
#include <vector>

#include "client/stac/StacTree.h"

namespace vlclientui::client {

struct StacItems {
  std::vector<StacFound> items;  ///< in the order of the catalogue
  std::vector<LeftOut> problems;
  bool isWhole = true;  ///< else there are more than the limit allows, and an area may be asked for
};

/// The items of a mosaic, fetched page by page or document by document. Of a served collection that tells it
/// has more than the limit only the first page is fetched, since the rest is asked for by area.
[[nodiscard]] OrStacProblem<StacItems> readStacItems(Transport& transport, const StacService& service,
                                                     const StacLimits& limits = {});

/// Those in an area, by a question of their own; none where documents are no service that takes questions.
/// @param geographic WGS 84 degrees.
[[nodiscard]] OrStacProblem<StacItems> readStacItemsWithin(Transport& transport, const StacService& service,
                                                           const Bounds& geographic,
                                                           const StacLimits& limits = {});

}  // namespace vlclientui::client
