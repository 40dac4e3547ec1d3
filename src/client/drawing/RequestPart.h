#pragma once

#include <string>
#include <vector>

#include "client/raster/NorthUpRaster.h"
#include "client/raster/OutputGrid.h"
#include "client/raster/Resampling.h"

namespace vlclientui::client {

/// The bands of a request, which are those of the service's first source.
struct RequestBands {
  int count = 0;
  std::vector<int> colors;  ///< numbers of those that tell no transparency
  int alpha = 0;            ///< number of the one that does; 0 for none
  GDALDataType type = GDT_Byte;
  NoDataValues noData;  ///< of the colour bands
};

/// Without no-data values: those depend on the parts.
[[nodiscard]] RequestBands requestBandsOf(GDALDataset& model);

/// A source that takes part, with the facts that its virtual bands need; the file itself is closed again.
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

/// True when a grey or palette source stands for three colours.
[[nodiscard]] bool isSpread(const RequestPart& part, const RequestBands& bands);

/// What the part gives to a band of the request, as an element of a virtual raster; empty for nothing.
[[nodiscard]] std::string sourceElement(const RequestPart& part, const RequestBands& bands, int band);

/// What the part gives to the mask of the request: 255 where it has data.
[[nodiscard]] std::string maskElement(const RequestPart& part);

/// True when the values of the request's one band tell the holes of the part, and tell nothing else: no pixel
/// with data can have come to hold the value.
[[nodiscard]] bool tellsHolesByValue(const RequestPart& part, const RequestBands& bands);

/// The same of a part without others below or above, whose holes may stay as they are.
[[nodiscard]] std::string loneSourceElement(const RequestPart& part, const RequestBands& bands, int band);

}  // namespace vlclientui::client
