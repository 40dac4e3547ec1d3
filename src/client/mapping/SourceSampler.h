#pragma once

#include <optional>

#include "client/mapping/PixelPatch.h"
#include "client/mapping/RasterPlacing.h"
#include "client/mapping/SampleTile.h"
#include "client/mapping/SourceBands.h"
#include "client/raster/OutputGrid.h"
#include "client/raster/Resampling.h"

namespace vlclientui::client {

/// How much is read for a picture.
enum class Pass {
  Coarse,  ///< as Quick, and where very many sources lie only a few of them
  Quick,   ///< where much would have to be read, only some blocks of it
  Fine,
};

/// One source and how its pixels are taken.
struct SampledSource {
  const OpenRaster& raster;
  const RasterPlacing& placing;
  const SourceBands& bands;
  std::optional<Resampling> wish;  ///< of the service's properties
  Pass pass = Pass::Fine;
};

/// What came of sampling a source.
struct SamplingEnd {
  ReadingEnd end = ReadingEnd::Whole;
  bool isQuick = false;  ///< from some blocks only; a fine pass gives more
};

/// Lays a source below what the tile holds already.
[[nodiscard]] SamplingEnd sampleSource(const SampledSource& source, const OutputGrid& grid, SampleTile& tile);

}  // namespace vlclientui::client
