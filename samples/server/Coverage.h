#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gdal_priv.h>

namespace vlclientui::samples {

/// One service of the catalogue as a server tells it. Coordinates are outer edges of cells, in the raster's
/// own system with the first axis to the east.
struct Coverage {
  std::string name;                ///< path below the catalogue, a dot between folders
  std::vector<std::string> files;  ///< below the catalogue; several make a mosaic
  std::string title, description;
  std::vector<std::string> keywords;
  std::vector<std::string> bands;  ///< names
  std::array<double, 4> extent{};  ///< west, south, east, north
  int width = 0;
  int height = 0;
  double cellSize = 0;
  int epsg = 0;
  GDALDataType type = GDT_Byte;
  std::optional<double> noData;
  bool isPicture = false;  ///< red, green and blue in eight bits

  [[nodiscard]] bool isMosaic() const { return files.size() > 1; }
};

/// Every service of the catalogue, by name. Every failure is a SampleFailure.
[[nodiscard]] std::vector<Coverage> readCoverages(const std::filesystem::path& catalogue);

}  // namespace vlclientui::samples
