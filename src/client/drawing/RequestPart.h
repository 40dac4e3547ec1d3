#pragma once

#include <string>
#include <vector>

#include "client/raster/NorthUpRaster.h"
#include "client/raster/OutputGrid.h"
#include "client/raster/Resampling.h"

namespace vlclientui::client {

/// The bands of a request: those of the service's first source.
struct RequestBands {
  int count = 0;
  std::vector<int> colors;  ///< numbers of all bands but transparency
  int alpha = 0;            ///< number of the band for transparency; 0 without one
  GDALDataType type = GDT_Byte;
  NoDataValues noData;  ///< of the color bands
};

/// Without no-data values, which depend on the parts.
[[nodiscard]] RequestBands requestBandsOf(GDALDataset& model);

/// A source that takes part, and what its virtual bands need to know; its file is closed again.
struct RequestPart {
  std::string name;
  std::string plainName;
  int columns = 0;
  int rows = 0;
  std::vector<int> colors;
  int alpha = 0;
  bool hasPalette = false;
  int blockWidth = 0;
  int blockHeight = 0;
  std::string type;
  Bounds extent;
  bool isTurned = false;
  bool hasHoles = false;
  NoDataValues noData;
  GridPlace place;
  Resampling resampling = Resampling::Nearest;
};

[[nodiscard]] RequestPart requestPartOf(const NorthUpRaster& raster, const OutputGrid& grid,
                                        const std::optional<Resampling>& wish);

/// Whether a gray or palette source stands for three colors.
[[nodiscard]] bool isSpread(const RequestPart& part, const RequestBands& bands);

/// A part's source element for a band of the virtual raster; empty when it gives nothing.
[[nodiscard]] std::string sourceElement(const RequestPart& part, const RequestBands& bands, int band);

/// A part's source element for the mask: 255 where it has data.
[[nodiscard]] std::string maskElement(const RequestPart& part);

/// Whether values of the single band mark the part's holes and nothing else, because no pixel with data can
/// have that value.
[[nodiscard]] bool tellsHolesByValue(const RequestPart& part, const RequestBands& bands);

/// The same for a part that overlaps no other, so its holes may keep their values.
[[nodiscard]] std::string loneSourceElement(const RequestPart& part, const RequestBands& bands, int band);

}  // namespace vlclientui::client
