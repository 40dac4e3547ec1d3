#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace vlclientui::client {

/// Larger ones are not read.
inline constexpr std::size_t mostMosaicBytes = std::size_t{16} << 20U;

/// Why a virtual raster is not opened, for a person.
struct MosaicRefusal {
  std::string text;
};

/// A virtual raster as it may be opened.
struct OpenableMosaic {
  std::string text;
  std::size_t sources = 0;  ///< that it names, however often
  /// Those of them that may be virtual rasters themselves, by their names of this room, however often.
  std::vector<std::string> mayBeMosaics;
};

/// A virtual raster of the web as it may be opened: each source under its name of this room. Whoever wrote it
/// is a stranger, so only what makes up a plain mosaic of rasters is let through: sources lie on the server
/// that it comes from, told relative to it or by their whole address. All else that would make the raster
/// library open, run or fetch something is refused.
/// @param address where the text comes from.
[[nodiscard]] std::variant<OpenableMosaic, MosaicRefusal> openableMosaic(const std::string& text,
                                                                         const std::string& address);

/// Why a virtual raster is not opened, as a sentence without secrets.
/// @param why without a stop at its end.
[[nodiscard]] std::string mosaicRefusal(const std::string& address, const std::string& why);

/// Side-car metadata of an image of the web (".aux.xml") without what is unknown or may lead to files.
/// @returns empty for what is no such metadata.
[[nodiscard]] std::string harmlessSideCar(const std::string& text);

}  // namespace vlclientui::client
