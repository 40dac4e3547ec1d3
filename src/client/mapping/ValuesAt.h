#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "client/mapping/MapPoint.h"
#include "client/raster/RasterFacts.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

struct Drawing;

/// What one band of a raster holds in one pixel.
struct BandValue {
  int band = 1;           ///< its number in the raster, from 1
  std::string name;       ///< the raster's own words for it, else its color or "Band 2"; never empty
  std::string unit = {};  ///< "m"; empty for none
  /// As stored, of complex numbers the real part; nothing where the pixel holds no data.
  std::optional<double> value = {};
  std::optional<double> imaginary = {};  ///< of complex numbers
  /// Of a class: its name, if it has one, and the color that the raster keeps for it: red, green, blue,
  /// alpha.
  std::string className = {};
  /// Red, green, blue, alpha; nothing where the raster keeps none.
  std::optional<std::array<std::uint8_t, 4>> color = {};
};

/// What one raster of a service holds at a place.
struct SourceValues {
  /// Whether the pixel tells something.
  enum class Kind {
    Data,        ///< the bands tell what is there
    Hole,        ///< the pixel is masked, transparent, or without data in all bands
    Unreadable,  ///< `problem` tells why
  };

  std::string name;     ///< shown name
  std::string id = {};  ///< empty for none
  std::vector<std::pair<std::string, std::string>> attributes =
      {};  ///< that a definition or a catalogue told
  /// Whether the bands below hold something.
  Kind kind = Kind::Data;
  /// Whether the map shows this one there: the first one with data whose bands the service can show.
  bool isOnTop = false;
  std::int64_t column = 0;  ///< of the pixel, from 0 at the raster's left edge
  std::int64_t row = 0;     ///< and its upper edge
  /// One for each band of the raster; none of an unreadable one.
  std::vector<BandValue> bands = {};
  std::string problem = {};  ///< for a person
};

/// A place of a map.
struct AskedPlace {
  std::string wkt;  ///< the map's system; empty for plain pixels of services without a system
  MapPoint place;   ///< in its coordinates
};

/// As MapLayer::Source: how a service is drawn; with an area in the service's coordinates, with its sources
/// there.
using DrawingSource = std::function<std::shared_ptr<const Drawing>(const std::optional<Bounds>& area)>;

/// Reads the pixel of each raster of a service that lies under a place, through the service's own properties:
/// sources that these leave out are left out here. The pixel is that of the raster's own resolution whose
/// area holds the place. Takes as long as opening and reading those rasters does, so not for the thread of a
/// window; looks meanwhile whether the work of this thread was given up (waiting/Wait.h). Any thread.
/// @returns the topmost first, none where the service does not lie; nothing when it was given up.
/// @throws RuntimeFailure when the service itself cannot be drawn, as when its server does not answer.
[[nodiscard]] std::optional<std::vector<SourceValues>> valuesAt(const DrawingSource& source,
                                                                const AskedPlace& asked);

}  // namespace vlclientui::client
#pragma GCC visibility pop
