#include "client/stac/StacFacts.h"

#include <algorithm>
#include <array>
#include <utility>

#include <gdal.h>
#include <ogr_spatialref.h>

#include "client/raster/DatesText.h"
#include "client/raster/GdalScope.h"
#include "client/raster/SystemTexts.h"
#include "client/raster/Text.h"
#include "client/stac/AssetChoice.h"
#include "client/transport/Secrets.h"

namespace vlclientui::client {
namespace {

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : ", ") + text;
  return all;
}

std::string datesOf(const StacDocument& collection) {
  return collection.interval ? datesText(collection.interval->from, collection.interval->to) : std::string();
}

// The raster library's word for a type of values.
std::string pixelTypeOf(const std::string& dataType) {
  static constexpr std::array<std::pair<std::string_view, std::string_view>, 10> words = {{
      {"uint8", "Byte"},
      {"uint16", "UInt16"},
      {"int16", "Int16"},
      {"uint32", "UInt32"},
      {"int32", "Int32"},
      {"float32", "Float32"},
      {"float64", "Float64"},
      {"cint16", "CInt16"},
      {"cfloat32", "CFloat32"},
      {"cfloat64", "CFloat64"},
  }};
  const auto* found =
      std::ranges::find(words, dataType, &std::pair<std::string_view, std::string_view>::first);
  return found == words.end() ? std::string() : std::string(found->second);
}

void takeBands(RasterFacts& facts, const std::vector<StacBand>& bands) {
  if (bands.empty()) return;
  facts.bandCount = static_cast<int>(bands.size());
  facts.pixelUnit = bands.front().unit;
  facts.pixelType = pixelTypeOf(bands.front().dataType);
  if (facts.pixelType.empty()) return;
  facts.bitDepth = GDALGetDataTypeSizeBits(GDALGetDataTypeByName(facts.pixelType.c_str()));
}

void takeSystem(RasterFacts& facts, const std::string& text) {
  constexpr std::array<const char*, 3> options = {"ALLOW_NETWORK_ACCESS=NO", "ALLOW_FILE_ACCESS=NO", nullptr};
  if (text.empty()) return;
  const GdalScope scope;
  OGRSpatialReference system;
  if (system.SetFromUserInput(text.c_str(), options.data()) == OGRERR_NONE) setSystem(facts, system);
}

}  // namespace

std::string collectionRegion(const StacDocument& collection) {
  const std::string place = collection.extent ? regionText(*collection.extent) : std::string();
  const std::string dates = datesOf(collection);
  return place.empty() || dates.empty() ? place + dates : place + ", " + dates;
}

std::string collectionSource(const StacDocument& collection) { return joined(collection.sources); }

RasterFacts collectionFacts(const StacDocument& collection) {
  RasterFacts facts;
  facts.title = collection.title.empty() ? collection.id : collection.title;
  facts.region = collectionRegion(collection);
  facts.pixelSource = collectionSource(collection);
  facts.geographicEnvelope = collection.extent;
  takeSystem(facts, collection.system);
  if (const StacAsset* asset = chosenAsset(collection.itemAssets)) takeBands(facts, asset->kind->bands);
  return facts;
}

FileMetadata collectionMetadata(const StacDocument& collection, const std::string& address) {
  MetadataSection section{"Collection", {}};
  const auto tell = [&](const char* name, const std::string& text) {
    if (!text.empty()) section.items.emplace_back(name, text);
  };
  tell("Id", collection.id);
  tell("Description", collection.description);
  tell("Keywords", joined(collection.keywords));
  tell("Dates", datesOf(collection));
  tell("License", collection.license);
  tell("Address", withoutSecrets(address));
  return {std::move(section)};
}

}  // namespace vlclientui::client
