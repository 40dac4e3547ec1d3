#include "client/raster/RasterReader.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include "client/raster/ContainedRaster.h"
#include "client/raster/GdalScope.h"
#include "client/raster/GeoTransform.h"
#include "client/raster/GeographicBounds.h"
#include "client/raster/RasterFacts.h"
#include "client/raster/RasterHoles.h"
#include "client/raster/Subdatasets.h"
#include "client/raster/SystemTexts.h"
#include "client/raster/Text.h"
#include "client/raster/Transformation.h"

namespace vlclientui::client {
namespace {

bool sameWord(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](char a, char b) {
    return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
  });
}

// The first line of the first of these metadata items that has a text: producers put whole reports into the
// image description.
std::string firstItem(GDALMajorObject& object, std::initializer_list<const char*> names) {
  for (const char* name : names) {
    const char* value = object.GetMetadataItem(name);
    if (value == nullptr) continue;
    const std::string line = trimmed(firstLine(utf8FromAny(value)));
    if (!line.empty()) return line;
  }
  return {};
}

// Parts of a file have names without extensions, some of them mere numbers.
std::string nameForPeople(const std::filesystem::path& file) {
  const std::filesystem::path container = containerOf(file);
  const bool isPart = !container.empty() && !libraryName(file).starts_with("/vsi");
  if (!isPart) return utf8FromAny(file.stem().string());
  const std::string part = file.filename().string();
  const bool isNumber = part.find_first_not_of("0123456789") == std::string::npos;
  return utf8FromAny(isNumber ? container.stem().string() + ' ' + part : part);
}

std::string titleOf(GDALDataset& dataset, const std::filesystem::path& file, const std::string& calledAs) {
  std::string title = firstItem(dataset, {"TITLE", "TIFFTAG_DOCUMENTNAME", "TIFFTAG_IMAGEDESCRIPTION"});
  if (!title.empty()) return title;
  return calledAs.empty() ? nameForPeople(file) : calledAs;
}

std::string pixelSourceOf(GDALDataset& dataset) {
  std::string source = firstItem(dataset, {"SENSOR", "SATELLITEID", "SOURCE", "PRODUCT"});
  if (!source.empty() || dataset.GetDriver() == nullptr) return source;
  return firstItem(*dataset.GetDriver(), {GDAL_DMD_LONGNAME});
}

std::string pixelUnitOf(GDALDataset& dataset) {
  GDALRasterBand& band = *dataset.GetRasterBand(1);
  std::string unit = trimmed(utf8FromAny(band.GetUnitType()));
  if (unit.empty()) unit = firstItem(band, {"UNITS", "units"});
  if (sameWord(unit, "metre") || sameWord(unit, "meter") || sameWord(unit, "metres")) return "m";
  if (!unit.empty()) return unit;
  return band.GetColorInterpretation() == GCI_PaletteIndex ? "class" : "DN";
}

// A producer's own word wins, since band interpretations do not always say what pixels mean.
std::optional<ColorSpace> declaredColorSpace(GDALDataset& dataset) {
  static constexpr std::array<std::pair<std::string_view, ColorSpace>, 10> words = {{
      {"Grayscale", ColorSpace::Gray},
      {"Gray", ColorSpace::Gray},
      {"RGB", ColorSpace::Rgb},
      {"CMYK", ColorSpace::Cmyk},
      {"YCbCr", ColorSpace::YCbCr},
      {"YUV", ColorSpace::Yuv},
      {"LHS", ColorSpace::Lhs},
      {"HLS", ColorSpace::Lhs},
      {"YCCK", ColorSpace::Ycck},
      {"Palette", ColorSpace::Palette},
  }};
  const std::string declared = firstItem(dataset, {"COLOR_SPACE", "COLORSPACE"});
  const auto* found = std::find_if(words.begin(), words.end(),
                                   [&](const auto& entry) { return sameWord(entry.first, declared); });
  if (found == words.end()) return std::nullopt;
  return found->second;
}

bool startsWith(GDALDataset& dataset, std::initializer_list<GDALColorInterp> bands) {
  if (dataset.GetRasterCount() < static_cast<int>(bands.size())) return false;
  int number = 1;
  return std::all_of(bands.begin(), bands.end(), [&](GDALColorInterp wanted) {
    return dataset.GetRasterBand(number++)->GetColorInterpretation() == wanted;
  });
}

bool isOneBandWithOrWithoutAlpha(GDALDataset& dataset) {
  const int count = dataset.GetRasterCount();
  return count == 1 || (count == 2 && dataset.GetRasterBand(2)->GetColorInterpretation() == GCI_AlphaBand);
}

ColorSpace colorSpaceOf(GDALDataset& dataset) {
  if (const auto declared = declaredColorSpace(dataset)) return *declared;
  if (startsWith(dataset, {GCI_PaletteIndex})) return ColorSpace::Palette;
  if (startsWith(dataset, {GCI_RedBand, GCI_GreenBand, GCI_BlueBand})) return ColorSpace::Rgb;
  if (startsWith(dataset, {GCI_CyanBand, GCI_MagentaBand, GCI_YellowBand, GCI_BlackBand})) {
    return ColorSpace::Cmyk;
  }
  if (startsWith(dataset, {GCI_YCbCr_YBand, GCI_YCbCr_CbBand, GCI_YCbCr_CrBand})) return ColorSpace::YCbCr;
  if (startsWith(dataset, {GCI_LightnessBand, GCI_HueBand, GCI_SaturationBand})) return ColorSpace::Lhs;
  if (startsWith(dataset, {GCI_HueBand, GCI_SaturationBand, GCI_LightnessBand})) return ColorSpace::Lhs;
  return isOneBandWithOrWithoutAlpha(dataset) ? ColorSpace::Gray : ColorSpace::Unknown;
}

int bitDepthOf(GDALRasterBand& band) {
  const char* bits = band.GetMetadataItem("NBITS", "IMAGE_STRUCTURE");
  const int narrowed = bits != nullptr ? std::atoi(bits) : 0;
  return narrowed > 0 ? narrowed : GDALGetDataTypeSizeBits(band.GetRasterDataType());
}

// Without a transform, ground control points are used; without those, pixel coordinates.
GeoTransform geoTransformOf(GDALDataset& dataset) {
  GeoTransform found{};
  if (readGeoTransform(dataset, found)) return found;
  const int count = dataset.GetGCPCount();
  const bool fits = count > 2 && GDALGCPsToGeoTransform(count, dataset.GetGCPs(), found.data(), TRUE) != 0;
  const bool isPlaced =
      fits && isUsable(found) && placesRaster(found, dataset.GetRasterXSize(), dataset.GetRasterYSize());
  if (isPlaced) return found;
  return {0, 1, 0, static_cast<double>(dataset.GetRasterYSize()), 0, -1};
}

void readSystem(RasterFacts& facts, GDALDataset& dataset, GeographicBounds& geographic) {
  const OGRSpatialReference* system = dataset.GetSpatialRef();
  if (system == nullptr || system->IsEmpty()) system = dataset.GetGCPSpatialRef();
  if (system == nullptr || system->IsEmpty()) return;
  setSystem(facts, *system);
  facts.geographicEnvelope = geographic.of(facts.envelope, *system, facts.srsWkt);
}

void readPlace(RasterFacts& facts, GDALDataset& dataset, GeographicBounds& geographic) {
  const GeoTransform transform = geoTransformOf(dataset);
  facts.fileColumns = dataset.GetRasterXSize();
  facts.fileRows = dataset.GetRasterYSize();
  facts.envelope = envelopeOf(transform, facts.fileColumns, facts.fileRows);
  const PixelSize pixel = northUpPixelSize(transform, facts.fileColumns, facts.fileRows);
  facts.pixelSize = pixel.across;
  facts.pixelHeight = pixel.down;
  facts.columns = pixelCount(facts.envelope.xMax - facts.envelope.xMin, pixel.across);
  facts.rows = pixelCount(facts.envelope.yMax - facts.envelope.yMin, pixel.down);
  readSystem(facts, dataset, geographic);
}

// The middle of a box that goes all around, past the antimeridian or a pole, is not that of the raster.
std::string regionOf(const RasterFacts& facts) {
  constexpr double wholeTurn = 360;
  const Bounds& box = *facts.geographicEnvelope;
  const std::string text = regionText(box);
  if (box.xMax - box.xMin < wholeTurn || text == worldRegion) return text;
  OGRSpatialReference system;
  if (system.importFromWkt(facts.srsWkt.c_str()) != OGRERR_NONE) return text;
  double x = (facts.envelope.xMin + facts.envelope.xMax) / 2;
  double y = (facts.envelope.yMin + facts.envelope.yMax) / 2;
  const auto way = transformation(system, wgs84());
  if (!way || way->Transform(1, &x, &y) == FALSE) return text;
  x = std::remainder(x, wholeTurn);
  return regionText({x, y, x, y});
}

// A raster that is not north up has empty corners.
bool hasEmptyCorners(GDALDataset& dataset) {
  GeoTransform transform{};
  if (!readGeoTransform(dataset, transform)) return dataset.GetGCPCount() > 2;
  return !isNorthUp(transform);
}

void readPixels(RasterFacts& facts, GDALDataset& dataset) {
  GDALRasterBand& band = *dataset.GetRasterBand(1);
  facts.colorSpace = colorSpaceOf(dataset);
  facts.pixelType = GDALGetDataTypeName(band.GetRasterDataType());
  facts.bitDepth = bitDepthOf(band);
  facts.bandCount = dataset.GetRasterCount();
  facts.hasLabels = band.GetColorTable() != nullptr || GDALDataTypeIsComplex(band.GetRasterDataType()) != 0;
  facts.colorBands = static_cast<int>(colorBandsOf(dataset).size());
  facts.mayHaveHoles = hasHoles(dataset) || hasEmptyCorners(dataset);
  facts.pixelUnit = pixelUnitOf(dataset);
}

RasterFacts factsOf(GDALDataset& dataset, const std::string& title, GeographicBounds& geographic) {
  RasterFacts facts;
  facts.title = title;
  facts.pixelSource = pixelSourceOf(dataset);
  readPixels(facts, dataset);
  readPlace(facts, dataset, geographic);
  facts.region = firstItem(dataset, {"REGION", "GEOGRAPHIC_REGION", "AREA"});
  if (facts.region.empty() && facts.geographicEnvelope) facts.region = regionOf(facts);
  return facts;
}

// Its name promises a raster, so failing to open it is worth reporting.
bool hasRasterExtension(const std::filesystem::path& file) {
  static constexpr std::array<std::string_view, 21> extensions = {
      ".tif", ".tiff", ".gtiff", ".vrt", ".png", ".jpg", ".jpeg", ".jp2", ".j2k", ".img", ".gtx",
      ".asc", ".bil",  ".bsq",   ".bip", ".dem", ".hgt", ".nc",   ".ecw", ".sid", ".webp"};
  return std::find(extensions.begin(), extensions.end(), lowered(file.extension().string())) !=
         extensions.end();
}

bool isClaimedByAFormat(const std::string& name) {
  return GDALIdentifyDriverEx(name.c_str(), GDAL_OF_RASTER, nullptr, nullptr) != nullptr;
}

// Others of vectors read what their documents name, servers too, and hold no rasters anyway.
constexpr auto containersOfTables =
    std::to_array<const char*>({"GPKG", "SQLite", "MBTiles", "netCDF", "HDF5", "PDF", "CSV", nullptr});

// Formats of containers may hold no raster at all: tables of a map, rows of numbers.
bool isWholeWithoutRasters(const std::string& name) {
  const auto opensAs = [&](unsigned kind, const char* const* drivers) {
    return DatasetPtr(GDALDataset::FromHandle(
               GDALOpenEx(name.c_str(), kind | GDAL_OF_READONLY, drivers, nullptr, nullptr))) != nullptr;
  };
  return opensAs(GDAL_OF_VECTOR, containersOfTables.data()) || opensAs(GDAL_OF_MULTIDIM_RASTER, nullptr);
}

// Formats of numbers in columns claim many a text that is none of theirs.
bool isPlainText(const std::filesystem::path& file) { return lowered(file.extension().string()) == ".txt"; }

// Of an archive the library tells the place in its own source.
std::string reasonOf(const GdalScope& scope) {
  const std::string reason = scope.firstFailure("the file cannot be opened as a raster");
  return reason.starts_with("In file ") ? "its archive is damaged, or packed in a way that cannot be read"
                                        : utf8FromAny(reason);
}

RasterProblem problemOf(const std::filesystem::path& file, const GdalScope& scope) {
  const std::string reason = reasonOf(scope);
  const std::string name = libraryName(file);
  const bool isClaimed = isClaimedByAFormat(name);
  if (isClaimed && isWholeWithoutRasters(name)) return {false, "the file holds no rasters"};
  if (!isNamedAsArchive(file)) return {!isPlainText(file) && (isClaimed || hasRasterExtension(file)), reason};
  const bool isInContainer = !containerOf(file).empty();
  return {true, isInContainer ? "archives in archives are not opened"
                              : "the archive has no directory; it is damaged or cut off"};
}

// Neither overviews nor masks are pages. A page itself names its siblings too.
void addPages(RasterFacts& facts, GDALDataset& dataset, const std::filesystem::path& file) {
  constexpr const char* pagePrefix = "GTIFF_DIR:";
  const GDALDriver* const driver = dataset.GetDriver();
  if (driver == nullptr || std::string_view(driver->GetDescription()) != "GTiff") return;
  const std::string name = libraryName(file);
  if (name.starts_with(pagePrefix)) return;
  const ContainerContent content = subdatasetsOf(dataset, name);
  for (const ContainedRaster& page : content.rasters) facts.pages.push_back(file / page.inner);
  facts.pagesProblem = content.problem;
}

RasterProblem containerProblem(const ContainerContent& content, const std::filesystem::path& file,
                               ContentKind kind) {
  RasterProblem problem{!content.problem.empty(), content.problem};
  for (const ContainedRaster& raster : content.rasters) problem.contents.push_back(file / raster.inner);
  problem.kind = kind;
  if (!problem.reason.empty()) return problem;
  problem.reason = content.rasters.empty() ? "the file holds no rasters" : "the file is a folder of rasters";
  return problem;
}

}  // namespace

RasterResult readRasterFacts(const std::filesystem::path& file, GeographicBounds& geographic,
                             const std::string& calledAs) {
  const GdalScope scope;
  if (containerOf(file).empty() && isArchive(file)) {
    return containerProblem(archiveContent(file), file, ContentKind::Files);
  }
  const DatasetPtr dataset = openRasterAt(file);
  if (!dataset) return problemOf(file, scope);
  if (dataset->GetRasterCount() == 0) {
    return containerProblem(subdatasetsOf(*dataset, libraryName(file)), file, ContentKind::Parts);
  }
  RasterResult result = factsOf(*dataset, titleOf(*dataset, file, calledAs), geographic);
  if (auto* facts = std::get_if<RasterFacts>(&result)) addPages(*facts, *dataset, file);
  return result;
}

RasterResult readRasterFacts(const std::filesystem::path& file) {
  GeographicBounds geographic;
  return readRasterFacts(file, geographic);
}

}  // namespace vlclientui::client
