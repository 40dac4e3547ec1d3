// Input: any text, as a document of a catalogue. Whatever it is, nothing breaks; what is read lies within
// bounds that others count on.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "client/stac/AssetChoice.h"
#include "client/stac/StacFacts.h"
#include "client/stac/StacMosaic.h"
#include "client/stac/StacReader.h"

namespace {

using namespace vlclientui::client;

void require(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", property);
  std::abort();
}

void checkBox(const std::optional<Bounds>& box) {
  if (!box) return;
  require(box->xMin >= -180 && box->xMax <= 180 && box->xMin <= box->xMax,
          "degrees to the east are within a turn");
  require(box->yMin >= -90 && box->yMax <= 90 && box->yMin <= box->yMax,
          "degrees to the north are within poles");
}

void checkRaster(const ToldRaster& raster) {
  checkBox(raster.geographic);
  require((raster.columns > 0) == (raster.rows > 0), "a size has two sides");
  require(!raster.transform || isUsable(*raster.transform), "a transform spans an area");
}

void checkItem(const StacItem& item) {
  require(!item.id.empty(), "an item has an id");
  checkRaster(item.raster);
  for (const StacAsset& asset : item.assets) {
    if (asset.raster) checkRaster(*asset.raster);
    require(isRasterAsset(asset), "only images are kept");
    const auto address = assetAddress("https://example.org/a/b.json", asset);
    const auto* const found = std::get_if<std::string>(&address);
    require(found == nullptr || found->starts_with("http"), "an image leads to the web");
  }
}

void checkDocument(StacDocument& document) {
  checkBox(document.extent);
  require(!collectionFacts(document).title.empty() || document.id.empty(), "a collection has a title");
  require(!collectionMetadata(document, "https://example.org/").empty(),
          "a collection tells where it stands");
  std::vector<StacFound> items;
  const auto base = std::make_shared<const std::string>("https://example.org/");
  for (StacItem& item : document.items) {
    checkItem(item);
    items.push_back({std::move(item), base});
  }
  std::vector<LeftOut> problems;
  const auto sources = mosaicSources(items, {}, problems);
  require(sources.size() + problems.size() == items.size(), "each item is a source or told");
  for (StacDocument& child : document.children) checkDocument(child);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static StacReader reader;
  auto read = reader.read({reinterpret_cast<const char*>(data), size});
  if (const auto* problem = std::get_if<StacProblem>(&read)) {
    require(!problem->text.empty(), "a refusal has words");
  } else {
    checkDocument(std::get<StacDocument>(read));
  }
  return 0;
}
