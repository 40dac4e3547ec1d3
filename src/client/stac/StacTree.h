#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/raster/LeftOut.h"
#include "client/stac/StacFetcher.h"

namespace vlclientui::client {

/// An item, and the address that its own addresses are seen from.
struct StacFound {
  StacItem item;
  std::shared_ptr<const std::string> base;  ///< never null
};

/// A mosaic that a catalogue offers: a collection, or what else holds items.
struct StacService {
  std::vector<std::string> folders;  ///< ids of the catalogues that it stands in, without the server's own
  StacDocument about;                ///< its collection; its links say where items are
  std::string address;               ///< of that document
  std::string pages;                 ///< where items are listed in pages; empty where documents link to them
  std::vector<StacFound> held;       ///< items that the document itself holds
  std::vector<LeftOut> problems;     ///< of those
};

struct StacTree {
  std::vector<StacService> services;
  std::vector<LeftOut> problems;
};

/// All mosaics below an address: of a catalogue, collection, item, file of items, or search. Items of
/// collections are not fetched. What lies below a collection is its own. A part that cannot be had is left
/// out and told; a wait that was given up gives a problem.
/// @param root the document at the address, where it is at hand.
[[nodiscard]] OrStacProblem<StacTree> readStacTree(Transport& transport, const std::string& address,
                                                   const StacLimits& limits = {},
                                                   std::optional<HttpAnswer> root = {});

}  // namespace vlclientui::client
