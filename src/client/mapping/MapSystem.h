#pragma once

#include <optional>
#include <string>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// The coordinate system of a map. Its x runs to the east, or to the right at a pole.
struct MapSystem {
  std::string wkt;           ///< the whole definition; empty for plain pixels of services without a system
  std::string name;          ///< for a person: "WGS 84 / UTM zone 32N"
  std::string id;            ///< "EPSG:32632"; empty for a system without a code
  bool isInDegrees = false;  ///< or in another unit of angles
  double metersPerUnit = 1;  ///< of coordinates; in degrees that of the equator

  /// Whether both have the same definition, letter by letter.
  bool operator==(const MapSystem& other) const { return wkt == other.wkt; }
};

/// Codes that a person may choose without knowing them.
inline constexpr auto degreesCode = "EPSG:4326";
/// The system of most web maps.
inline constexpr auto webMercatorCode = "EPSG:3857";

/// @param text a code such as "EPSG:2056", or a definition. No file and no address is read.
/// @returns nothing when the text names no system of the earth's surface.
[[nodiscard]] std::optional<MapSystem> mapSystemOf(const std::string& text);

}  // namespace vlclientui::client
#pragma GCC visibility pop
