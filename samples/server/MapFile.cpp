#include "MapFile.h"

#include <set>
#include <sstream>

#include <ogr_geometry.h>

#include "../TiffFile.h"
#include "TextFile.h"
#include "TileIndex.h"

namespace vlclientui::samples {
namespace {

namespace fs = std::filesystem;

constexpr int mostPixels = 8192;  // across or down, of one answer

std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (const char each : text) out += each == '"' ? '\'' : each;
  return out + '"';
}

std::string item(const std::string& name, const std::string& value) {
  return "      " + quoted(name) + " " + quoted(value) + "\n";
}

std::string joined(const std::vector<std::string>& words, const char* between) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
  return text;
}

std::string number(double value) {
  std::ostringstream text;
  text.precision(15);
  text << value;
  return text.str();
}

// Unsigned 16-bit values fit the signed pixels of this server only in part.
std::string imageMode(GDALDataType type) {
  switch (type) {
    case GDT_Byte:
      return "BYTE";
    case GDT_Int16:
      return "INT16";
    default:
      return "FLOAT32";
  }
}

// The server fills with 0 what has no data, unless the format tells another value; so each value has a
// format.
std::string formatOf(const Coverage& coverage) {
  const std::string format = "GEOTIFF_" + imageMode(coverage.type);
  return coverage.noData ? format + "_NULL_" + number(*coverage.noData) : format;
}

std::string format(const std::string& name, const std::string& mode, const std::string& option) {
  return "  OUTPUTFORMAT\n    NAME " + quoted(name) +
         "\n    DRIVER \"GDAL/GTiff\"\n    MIMETYPE \"image/tiff\"\n" +
         "    EXTENSION \"tif\"\n    IMAGEMODE " + mode + "\n" +
         (option.empty() ? "" : "    FORMATOPTION " + quoted(option) + "\n") + "  END\n";
}

// A byte format comes first, as on many servers: who asks for "image/tiff" and no more gets that one.
std::string formats(const std::vector<Coverage>& coverages) {
  std::string text;
  for (const char* mode : {"BYTE", "INT16", "FLOAT32", "RGB"})
    text += format(std::string("GEOTIFF_") + mode, mode, "");
  text += format("GEOTIFF_RGBA", "RGBA", "");
  std::set<std::string> told;
  for (const Coverage& each : coverages) {
    if (!each.noData || !told.insert(formatOf(each)).second) continue;
    text += format(formatOf(each), imageMode(each.type), "NULLVALUE=" + number(*each.noData));
  }
  return text;
}

std::string projection(int epsg) {
  return "    PROJECTION\n      \"init=epsg:" + std::to_string(epsg) + "\"\n    END\n";
}

std::string head(const fs::path& catalogue) {
  return "MAP\n  NAME \"Samples\"\n  EXTENT -180 -90 180 90\n  SIZE 256 256\n  MAXSIZE " +
         std::to_string(mostPixels) + "\n  SHAPEPATH " + quoted(catalogue.string()) + "\n" +
         "  PROJECTION\n    \"init=epsg:4326\"\n  END\n  WEB\n    METADATA\n" +
         item("ows_enable_request", "*") + item("ows_title", "Sample catalogue") +
         item("ows_abstract", "The services that VLClientUI makes for itself") +
         item("ows_srs", "EPSG:4326 EPSG:32632 EPSG:3857") + item("ows_keywordlist", "samples,raster") +
         item("wcs_label", "Sample catalogue") +
         item("wcs_description", "The services that VLClientUI makes for itself") + "    END\n  END\n";
}

std::string place(const Coverage& coverage) {
  const auto& [west, south, east, north] = coverage.extent;
  return item("wcs_srs", "EPSG:" + std::to_string(coverage.epsg)) +
         item("wcs_extent", number(west) + " " + number(south) + " " + number(east) + " " + number(north)) +
         item("wcs_size", std::to_string(coverage.width) + " " + std::to_string(coverage.height)) +
         item("wcs_resolution", number(coverage.cellSize) + " " + number(coverage.cellSize));
}

std::string values(const Coverage& coverage) {
  std::vector<std::string> offered = {formatOf(coverage)};
  if (coverage.isPicture) offered.insert(offered.end(), {"GEOTIFF_RGB", "GEOTIFF_RGBA"});
  std::string text = item("wcs_formats", joined(offered, " ")) + item("wcs_native_format", "image/tiff") +
                     item("wcs_imagemode", imageMode(coverage.type)) +
                     item("wcs_bandcount", std::to_string(coverage.bands.size())) +
                     item("wcs_band_names", joined(coverage.bands, " ")) +
                     item("wcs_rangeset_name", "bands") + item("wcs_rangeset_label", "Bands");
  if (!coverage.noData) return text;
  return text + item("wcs_rangeset_nullvalue", number(*coverage.noData)) +
         item("wcs_nilvalues", number(*coverage.noData)) + item("wcs_nilvalues_reasons", "unknown");
}

std::string data(const fs::path& folder, const Coverage& coverage) {
  if (!coverage.isMosaic()) return "    DATA " + quoted(coverage.files.front()) + "\n";
  return "    TILEINDEX " + quoted((folder / (coverage.name + ".shp")).string()) + "\n    TILEITEM " +
         quoted(tileItem) + "\n";
}

std::string layer(const fs::path& folder, const Coverage& coverage) {
  return "  LAYER\n    NAME " + quoted(coverage.name) + "\n    TYPE RASTER\n    STATUS ON\n" +
         data(folder, coverage) + projection(coverage.epsg) + "    METADATA\n" +
         item("ows_title", coverage.title) + item("wcs_label", coverage.title) +
         item("wcs_description", coverage.description) +
         item("wcs_keywordlist", joined(coverage.keywords, ",")) + place(coverage) + values(coverage) +
         "    END\n  END\n";
}

std::string configuration(const fs::path& map) {
  return "CONFIG\n  ENV\n    MS_MAPFILE " + quoted(map.string()) +
         "\n    MS_MAP_PATTERN \".\"\n  END\n  MAPS\n    samples " + quoted(map.string()) + "\n  END\nEND\n";
}

}  // namespace

void writeMapFile(const fs::path& folder, const fs::path& catalogue, const std::vector<Coverage>& coverages) {
  std::string text = head(catalogue) + formats(coverages);
  for (const Coverage& each : coverages) {
    if (each.isMosaic()) writeTileIndex(folder / (each.name + ".shp"), catalogue, each);
    text += layer(folder, each);
  }
  writeText(folder / "samples.map", text + "END\n");
  writeText(folder / "mapserver.conf", configuration(folder / "samples.map"));
}

}  // namespace vlclientui::samples
