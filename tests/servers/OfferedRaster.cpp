#include "servers/OfferedRaster.h"

#include <fstream>
#include <sstream>

namespace vlclientui::test {
namespace {

std::string item(const std::string& name, const std::string& value) {
  return "\"" + name + "\" \"" + value + "\"\n";
}

std::string number(double value) {
  std::ostringstream text;
  text.precision(15);
  text << value;
  return text.str();
}

std::string formatOf(const std::string& mode) {
  return "OUTPUTFORMAT NAME \"GEOTIFF_" + mode +
         "\" DRIVER \"GDAL/GTiff\" MIMETYPE \"image/tiff\" EXTENSION \"tif\" IMAGEMODE " + mode + " END\n";
}

std::string layerOf(const OfferedRaster& raster) {
  const auto& [west, south, east, north] = raster.extent;
  const double cell = (east - west) / raster.width;
  std::string bands;
  for (int band = 1; band <= raster.bands; ++band)
    bands += (band > 1 ? " band" : "band") + std::to_string(band);
  return "LAYER NAME \"" + raster.name + "\" TYPE RASTER STATUS ON DATA \"" + raster.file.string() +
         "\" PROJECTION \"init=epsg:" + std::to_string(raster.epsg) + "\" END METADATA\n" +
         item("ows_title", raster.name) + item("wcs_label", raster.name) +
         item("wcs_srs", "EPSG:" + std::to_string(raster.epsg)) +
         item("wcs_extent", number(west) + " " + number(south) + " " + number(east) + " " + number(north)) +
         item("wcs_size", std::to_string(raster.width) + " " + std::to_string(raster.height)) +
         item("wcs_resolution", number(cell) + " " + number(cell)) +
         item("wcs_formats", "GEOTIFF_" + raster.mode) + item("wcs_native_format", "image/tiff") +
         item("wcs_imagemode", raster.mode == "RGB" ? "BYTE" : raster.mode) +
         item("wcs_bandcount", std::to_string(raster.bands)) + item("wcs_band_names", bands) +
         (raster.dates.empty() ? "" : item("wcs_timeposition", raster.dates) + item("wcs_timeitem", "time")) +
         item("wcs_rangeset_name", "bands") + item("wcs_rangeset_label", "Bands") + "END END\n";
}

}  // namespace

void offerRasters(const std::filesystem::path& folder, const std::vector<OfferedRaster>& rasters,
                  int mostPixels) {
  const std::filesystem::path map = folder / "samples.map";
  std::ofstream file(map);
  file << "MAP NAME \"Offered\" EXTENT -180 -90 180 90 SIZE 256 256 MAXSIZE " << mostPixels
       << " PROJECTION \"init=epsg:4326\" END WEB METADATA\n"
       << item("ows_enable_request", "*") << item("ows_title", "Offered")
       << item("ows_srs", "EPSG:4326 EPSG:32632") << item("wcs_label", "Offered") << "END END\n";
  for (const char* mode : {"BYTE", "INT16", "FLOAT32", "RGB"}) file << formatOf(mode);
  for (const OfferedRaster& raster : rasters) file << layerOf(raster);
  file << "END\n";
  std::ofstream(folder / "mapserver.conf")
      << "CONFIG ENV MS_MAPFILE \"" << map.string() << "\" MS_MAP_PATTERN \".\" END MAPS samples \""
      << map.string() << "\" END END\n";
}

}  // namespace vlclientui::test
