#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "client/raster/GeoTransform.h"
#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// What a catalogue tells of a raster that nobody opened yet.
struct ToldRaster {
  std::optional<Bounds> geographic;       ///< WGS 84 degrees
  std::string system;                     ///< a code such as "EPSG:32632", or a definition; empty for unknown
  std::optional<GeoTransform> transform;  ///< of its pixels, in that system
  std::optional<Bounds> envelope;         ///< in that system
  std::int64_t columns = 0;               ///< 0 for unknown, like the rows
  std::int64_t rows = 0;

  /// Whether the place of its pixels is told, not only about where it lies.
  [[nodiscard]] bool isExact() const;
};

/// A raster of a mosaic that was opened, to judge its siblings by.
struct SampleRaster {
  RasterFacts facts;
  ToldRaster told;
};

/// The facts of rasters by what is told of them; what is not told is as with the sample. For one thread at a
/// time.
class ToldFacts {
 public:
  explicit ToldFacts(SampleRaster sample);
  ToldFacts(const ToldFacts&) = delete;
  ToldFacts& operator=(const ToldFacts&) = delete;
  ~ToldFacts();

  /// A place that is told in degrees alone becomes one around it, on the pixels of the sample.
  /// @param title of the raster. @returns nothing where nobody can tell where it lies.
  [[nodiscard]] std::optional<RasterFacts> of(const ToldRaster& told, const std::string& title);

 private:
  struct System;
  [[nodiscard]] const System& systemOf(const ToldRaster& told);

  SampleRaster sample_;
  std::map<std::string, std::unique_ptr<System>> systems_;  ///< by what is told of them
};

}  // namespace vlclientui::client
