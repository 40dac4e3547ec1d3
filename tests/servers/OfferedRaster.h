#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace vlclientui::test {

/// A raster file that a MapServer of a test is to offer as a coverage.
struct OfferedRaster {
  std::string name;            ///< of the coverage
  std::filesystem::path file;  ///< north up
  int epsg = 32632;
  std::array<double, 4> extent{};  ///< west, south, east, north
  int width = 0;
  int height = 0;
  int bands = 1;
  std::string mode = "BYTE";  ///< BYTE, INT16, FLOAT32 or, for three bands of bytes, RGB
  std::string dates = {};     ///< with commas between; empty for none
};

/// Writes a folder that MapServer serves. @param mostPixels across or down, of one answer.
void offerRasters(const std::filesystem::path& folder, const std::vector<OfferedRaster>& rasters,
                  int mostPixels = 8192);

}  // namespace vlclientui::test
