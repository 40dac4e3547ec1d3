#include "StacCatalogue.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <vector>

#include <cpl_error.h>
#include <cpl_json.h>
#include <cpl_minixml.h>
#include <ogr_spatialref.h>

#include "../TiffFile.h"
#include "TextFile.h"

namespace vlclientui::samples {
namespace {

namespace fs = std::filesystem;

constexpr const char* version = "1.0.0";
constexpr const char* imagesLink = "images";
constexpr const char* catalogFile = "catalog.json";
constexpr const char* collectionFile = "collection.json";
constexpr int pointsOnEdge = 21;

/// West, south, east, north in degrees.
using Box = std::array<double, 4>;

/// One raster of a mosaic.
struct Item {
  std::string id;
  std::string image;  ///< below the catalogue
  std::map<std::string, std::string> attributes;
  int epsg = 0;
  int columns = 0, rows = 0, bands = 0;
  std::array<double, 6> grid{};
  Box degrees{};
};

struct Collection {
  fs::path folder;  ///< below the catalogue, with its own name
  std::string title, region, sensor;
  std::vector<Item> items;
};

Box degreesOf(const OGRSpatialReference& system, const Item& item) {
  OGRSpatialReference degrees;
  degrees.SetWellKnownGeogCS("WGS84");
  degrees.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  const std::unique_ptr<OGRCoordinateTransformation> way(
      OGRCreateCoordinateTransformation(&system, &degrees));
  Box box{};
  const double east = item.grid[0] + item.grid[1] * item.columns;
  const double south = item.grid[3] + item.grid[5] * item.rows;
  const bool isDone = way && way->TransformBounds(item.grid[0], south, east, item.grid[3], &box[0], &box[1],
                                                  &box[2], &box[3], pointsOnEdge) != 0;
  if (!isDone) throw SampleFailure(item.image + " has no place in degrees");
  return box;
}

void readImage(Item& item, const fs::path& catalogue) {
  const DatasetPtr raster(GDALDataset::Open((catalogue / item.image).c_str(), GDAL_OF_RASTER));
  if (!raster || raster->GetGeoTransform(item.grid.data()) != CE_None || raster->GetSpatialRef() == nullptr) {
    throw SampleFailure(item.image + ": " + CPLGetLastErrorMsg());
  }
  OGRSpatialReference system(*raster->GetSpatialRef());
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  const char* const code = system.GetAuthorityCode(nullptr);
  item.epsg = code == nullptr ? 0 : std::stoi(code);
  item.columns = raster->GetRasterXSize();
  item.rows = raster->GetRasterYSize();
  item.bands = raster->GetRasterCount();
  item.degrees = degreesOf(system, item);
}

Item readItem(const CPLXMLNode& source, const fs::path& definition, const fs::path& catalogue) {
  Item item;
  const fs::path file = CPLGetXMLValue(&source, "File", "");
  item.id = file.stem().string();
  item.image = fs::relative(definition.parent_path() / file, catalogue).generic_string();
  const CPLXMLNode* attribute = CPLGetXMLNode(&source, "Attributes");
  for (attribute = attribute == nullptr ? nullptr : attribute->psChild; attribute != nullptr;
       attribute = attribute->psNext) {
    item.attributes[attribute->pszValue] = CPLGetXMLValue(attribute, nullptr, "");
  }
  readImage(item, catalogue);
  return item;
}

Collection readCollection(const fs::path& definition, const fs::path& catalogue) {
  const CPLXMLTreeCloser document(CPLParseXMLFile(definition.c_str()));
  const CPLXMLNode* told = CPLGetXMLNode(document.get(), "=Vorlane.MosaicDefinition");
  const CPLXMLNode* sources = told == nullptr ? nullptr : CPLGetXMLNode(told, "Sources");
  if (sources == nullptr) throw SampleFailure(definition.string() + " is no definition of a mosaic");
  fs::path place = fs::relative(definition, catalogue);
  Collection collection;
  collection.folder = place.replace_extension();
  collection.title = CPLGetXMLValue(told, "Title", "");
  collection.region = CPLGetXMLValue(told, "Region", "");
  collection.sensor = CPLGetXMLValue(told, "PixelSource", "");
  for (const CPLXMLNode* source = sources->psChild; source != nullptr; source = source->psNext) {
    collection.items.push_back(readItem(*source, definition, catalogue));
  }
  return collection;
}

void writeDocument(const fs::path& path, const CPLJSONObject& document) {
  fs::create_directories(path.parent_path());
  writeText(path, document.Format(CPLJSONObject::PrettyFormat::Pretty));
}

CPLJSONArray numbers(const std::vector<double>& values) {
  CPLJSONArray array;
  for (const double value : values) array.Add(value);
  return array;
}

CPLJSONObject link(const std::string& relation, const std::string& address) {
  CPLJSONObject object;
  object.Add("rel", relation);
  object.Add("href", address);
  object.Add("type", "application/json");
  return object;
}

std::string upFrom(const fs::path& folder) {
  std::string up;
  for (auto step = folder.begin(); step != folder.end(); ++step) up += "../";
  return up;
}

CPLJSONObject geometryOf(const Box& box) {
  CPLJSONArray ring;
  for (const auto& [x, y] : {std::pair(box[0], box[1]), std::pair(box[2], box[1]), std::pair(box[2], box[3]),
                             std::pair(box[0], box[3]), std::pair(box[0], box[1])}) {
    ring.Add(numbers({x, y}));
  }
  CPLJSONArray rings;
  rings.Add(ring);
  CPLJSONObject geometry;
  geometry.Add("type", "Polygon");
  geometry.Add("coordinates", rings);
  return geometry;
}

CPLJSONObject propertiesOf(const Item& item) {
  const auto& attributes = item.attributes;
  CPLJSONObject properties;
  properties.Add("datetime", attributes.at("AcquisitionDate") + "T10:00:00Z");
  properties.Add("eo:cloud_cover", std::stod(attributes.at("CloudCover")));
  if (attributes.contains("Camera")) properties.Add("platform", attributes.at("Camera"));
  if (attributes.contains("SunElevation")) {
    properties.Add("view:sun_elevation", std::stod(attributes.at("SunElevation")));
  }
  properties.Add("proj:epsg", item.epsg);
  properties.Add("proj:shape", numbers({static_cast<double>(item.rows), static_cast<double>(item.columns)}));
  const auto& g = item.grid;
  properties.Add("proj:transform", numbers({g[1], g[2], g[0], g[4], g[5], g[3]}));
  return properties;
}

CPLJSONObject assetOf(const std::string& address) {
  CPLJSONArray roles;
  roles.Add("visual");
  CPLJSONObject asset;
  asset.Add("href", address);
  asset.Add("type", "image/tiff; application=geotiff; profile=cloud-optimized");
  asset.Add("title", "Image");
  asset.Add("roles", roles);
  return asset;
}

CPLJSONObject documentOf(const char* type, const std::string& id) {
  CPLJSONObject document;
  document.Add("type", type);
  document.Add("stac_version", version);
  document.Add("id", id);
  return document;
}

void writeItem(const fs::path& folder, const Collection& collection, const Item& item) {
  CPLJSONObject document = documentOf("Feature", item.id);
  document.Add("collection", collection.folder.filename().string());
  document.Add("bbox", numbers({item.degrees.begin(), item.degrees.end()}));
  document.Add("geometry", geometryOf(item.degrees));
  document.Add("properties", propertiesOf(item));
  CPLJSONObject assets;
  assets.Add("visual", assetOf(upFrom(collection.folder) + imagesLink + "/" + item.image));
  document.Add("assets", assets);
  CPLJSONArray links;
  links.Add(link("collection", collectionFile));
  links.Add(link("root", upFrom(collection.folder) + catalogFile));
  document.Add("links", links);
  writeDocument(folder / collection.folder / (item.id + ".json"), document);
}

Box around(const std::vector<Item>& items) {
  Box all = items.front().degrees;
  for (const Item& item : items) {
    const Box& box = item.degrees;
    all = {std::min(all[0], box[0]), std::min(all[1], box[1]), std::max(all[2], box[2]),
           std::max(all[3], box[3])};
  }
  return all;
}

template <class Value>
CPLJSONArray listOf(const Value& value) {
  CPLJSONArray list;
  list.Add(value);
  return list;
}

CPLJSONObject extentOf(const std::vector<Item>& items) {
  std::string first = items.front().attributes.at("AcquisitionDate");
  std::string last = first;
  for (const Item& item : items) {
    first = std::min(first, item.attributes.at("AcquisitionDate"));
    last = std::max(last, item.attributes.at("AcquisitionDate"));
  }
  const Box box = around(items);
  CPLJSONObject spatial;
  spatial.Add("bbox", listOf(numbers({box.begin(), box.end()})));
  CPLJSONArray interval;
  interval.Add(first + "T10:00:00Z");
  interval.Add(last + "T10:00:00Z");
  CPLJSONObject temporal;
  temporal.Add("interval", listOf(interval));
  CPLJSONObject extent;
  extent.Add("spatial", spatial);
  extent.Add("temporal", temporal);
  return extent;
}

void writeCollection(const fs::path& folder, const Collection& collection) {
  CPLJSONObject document = documentOf("Collection", collection.folder.filename().string());
  document.Add("title", collection.title);
  document.Add("description", collection.title + ", as items of a catalogue");
  document.Add("license", "proprietary");
  CPLJSONArray keywords;
  keywords.Add(collection.region);
  document.Add("keywords", keywords);
  document.Add("extent", extentOf(collection.items));
  CPLJSONObject summaries;
  summaries.Add("platform", listOf(collection.sensor));
  summaries.Add("proj:epsg", listOf(collection.items.front().epsg));
  document.Add("summaries", summaries);
  CPLJSONArray links;
  links.Add(link("root", upFrom(collection.folder) + catalogFile));
  for (const Item& item : collection.items) links.Add(link("item", item.id + ".json"));
  document.Add("links", links);
  writeDocument(folder / collection.folder / collectionFile, document);
}

// What stands in each folder: catalogues and collections, by their documents.
using Children = std::map<fs::path, std::vector<std::string>>;

void addTo(Children& children, const fs::path& collection) {
  fs::path child = collection;
  std::string document = collectionFile;
  for (;;) {
    std::vector<std::string>& siblings = children[child.parent_path()];
    const std::string address = (child.filename() / document).generic_string();
    if (std::ranges::find(siblings, address) == siblings.end()) siblings.push_back(address);
    if (!child.has_parent_path()) return;
    child = child.parent_path();
    document = catalogFile;
  }
}

void writeCatalogue(const fs::path& folder, const fs::path& place, const std::vector<std::string>& children) {
  const std::string id = place.empty() ? "samples" : place.filename().string();
  CPLJSONObject document = documentOf("Catalog", id);
  document.Add("description", "Mosaics of the sample catalogue");
  CPLJSONArray links;
  links.Add(link("root", upFrom(place) + catalogFile));
  for (const std::string& child : children) links.Add(link("child", child));
  document.Add("links", links);
  writeDocument(folder / place / catalogFile, document);
}

}  // namespace

void writeStacCatalogue(const fs::path& folder, const fs::path& catalogue) {
  std::vector<fs::path> definitions;
  for (const auto& entry : fs::recursive_directory_iterator(catalogue)) {
    if (entry.path().extension() == ".VLDef") definitions.push_back(entry.path());
  }
  std::ranges::sort(definitions);
  Children children;
  for (const fs::path& definition : definitions) {
    const Collection collection = readCollection(definition, catalogue);
    addTo(children, collection.folder);
    writeCollection(folder, collection);
    for (const Item& item : collection.items) writeItem(folder, collection, item);
  }
  for (const auto& [place, addresses] : children) writeCatalogue(folder, place, addresses);
  fs::create_directory_symlink(catalogue, folder / imagesLink);
}

}  // namespace vlclientui::samples
