#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "client/catalogue/ToldRaster.h"
#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// Why a document cannot be used, or is not used whole.
struct StacProblem {
  std::string text;  ///< for a person; never empty
  bool mayPass =
      false;  ///< it may be had later: the server does not answer just now, or the wait was given up
};

template <class Value>
using OrStacProblem = std::variant<Value, StacProblem>;

/// Where a document leads.
struct StacLink {
  std::string relation;  ///< "child", "item", "items", "next", "search", "data" and so on
  std::string address;   ///< as told, maybe relative
  std::string type;
  bool isPosted = false;    ///< asked for by POST
  std::string body;         ///< of a POST: JSON as it was told; empty for none
  bool mergesBody = false;  ///< the body only tells what changes of the one before
};

/// One band as items and collections tell it.
struct StacBand {
  std::string dataType;  ///< "uint8", "int16", "float32"
  std::string unit;

  bool operator==(const StacBand&) const = default;
};

/// What the files of one key mostly have in common in all items of a collection.
struct StacAssetKind {
  std::string key;
  std::string type = {};  ///< media type
  std::vector<std::string> roles = {};
  std::vector<StacBand> bands = {};

  bool operator==(const StacAssetKind&) const = default;
};

/// A file of an item, or what a collection tells of such files. Very many are held, mostly of few kinds.
struct StacAsset {
  std::shared_ptr<const StacAssetKind> kind;  ///< never null; those that a reader gives are shared
  std::string address = {};  ///< as told, maybe relative; empty in a collection's description of its items
  /// What the asset tells itself, beside what its item tells; null for nothing, as with most.
  std::shared_ptr<const ToldRaster> raster = nullptr;

  [[nodiscard]] const std::string& key() const { return kind->key; }
};

/// Whether an asset is read as pixels at all: an image, and no picture of one.
[[nodiscard]] bool isRasterAsset(const StacAsset& asset);

struct StacItem {
  std::string id;
  std::string collection;
  ToldRaster raster;                                            ///< what holds for all its assets
  std::vector<std::pair<std::string, std::string>> attributes;  ///< scalar properties, the date first
  std::vector<StacAsset> assets;                                ///< those with pixels, in their order
  std::vector<StacLink> links;                                  ///< of an item that is a document of its own
};

/// From one date on to another one; either may be empty for open.
struct StacInterval {
  std::string from;
  std::string to;
};

enum class StacKind {
  Catalogue,
  Collection,
  Item,
  Items,        ///< a page of items, or a file of some
  Collections,  ///< a page of collections
};

/// A document of a catalogue, whatever it is.
struct StacDocument {
  StacKind kind = StacKind::Catalogue;
  std::string id;
  std::string title;
  std::string description;
  std::string license;
  std::vector<std::string> keywords;
  std::optional<Bounds> extent;  ///< WGS 84 degrees
  std::optional<StacInterval> interval;
  std::vector<std::string> sources;    ///< platforms or instruments, from the summaries
  std::string system;                  ///< of the summaries, where it is one
  std::vector<StacAsset> itemAssets;   ///< what a collection tells of its items' files
  std::vector<StacLink> links;         ///< without those that lead out of the catalogue
  std::vector<StacItem> items;         ///< of a page, or the one item
  std::vector<StacDocument> children;  ///< collections of a page
  std::optional<std::size_t> matched;  ///< items of all pages together, where that is told
  std::size_t dropped = 0;             ///< items that had no shape of one

  /// The first link of that relation; null where there is none.
  [[nodiscard]] const StacLink* link(std::string_view relation) const;
};

}  // namespace vlclientui::client
