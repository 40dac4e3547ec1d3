#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// A rectangle in coordinates that its owner knows. xMin <= xMax and yMin <= yMax, always finite.
struct Bounds {
  /// Left edge.
  double xMin = 0;
  /// Lower edge.
  double yMin = 0;
  /// Right edge.
  double xMax = 0;
  /// Upper edge.
  double yMax = 0;

  /// Whether all four edges are equal.
  bool operator==(const Bounds&) const = default;
};

/// The smallest rectangle around both.
[[nodiscard]] Bounds unite(const Bounds& one, const Bounds& other);
/// Whether they have an area in common, not only an edge.
[[nodiscard]] constexpr bool overlap(const Bounds& one, const Bounds& other) {
  return one.xMin < other.xMax && other.xMin < one.xMax && one.yMin < other.yMax && other.yMin < one.yMax;
}
/// What regionText tells of a rectangle around nearly all of the earth.
inline constexpr auto worldRegion = "World";
/// A readable place for a rectangle in WGS 84 degrees: its center, "46.5 N 8.1 E", or worldRegion.
[[nodiscard]] std::string regionText(const Bounds& geographic);

/// Codes of the server info document.
enum class ColorSpace {
  Gray = 0,      ///< shades of gray, and one band of whatever values
  Rgb = 1,       ///< red, green, blue
  Cmyk = 2,      ///< cyan, magenta, yellow, black
  YCbCr = 3,     ///< brightness and two differences of color, digital
  Yuv = 4,       ///< brightness and two differences of color, analog
  Lhs = 5,       ///< lightness, hue, saturation
  Ycck = 6,      ///< YCbCr of three inks, and black
  Palette = 7,   ///< numbers of a table of colors
  Unknown = 255  ///< the raster does not tell
};

/// What a catalogue says about one raster. Texts are UTF-8; empty means unknown.
struct RasterFacts {
  std::string title;        ///< never empty: the file's own title or the file's name
  std::string region;       ///< for a person: the producer's words, or the center as "46.5 N 8.1 E"
  std::string pixelUnit;    ///< unit of the values: "m", "DN", "class"
  std::string pixelSource;  ///< sensor or product that the values come from
  /// As the server info document tells it.
  ColorSpace colorSpace = ColorSpace::Unknown;
  std::string pixelType;  ///< "Byte", "UInt16", "Int16", "Float32", "CInt16" and so on
  int bitDepth = 0;       ///< bits of one sample in use
  /// All bands, transparency included.
  int bandCount = 0;
  int colorBands = 0;         ///< all but transparency
  bool hasLabels = false;     ///< palette or complex: no value lies between two others
  bool mayHaveHoles = false;  ///< some pixels may hold no data, or the rectangle's corners may be empty
  std::int64_t columns = 0;   ///< of the pixels lying north up, as they are drawn and exported
  /// Likewise, down.
  std::int64_t rows = 0;
  std::int64_t fileColumns = 0;  ///< as stored, before turning; of a mosaic the first source's
  /// Likewise, down.
  std::int64_t fileRows = 0;
  double pixelSize = 0;                      ///< across, north up, in units of the coordinate system; above 0
  double pixelHeight = 0;                    ///< the same down
  Bounds envelope;                           ///< in the raster's own coordinates
  std::optional<Bounds> geographicEnvelope;  ///< WGS 84 degrees within [-180, 180] and [-90, 90]
  std::string srsName;                       ///< "WGS 84 / UTM zone 32N"
  std::string srsId;                         ///< "EPSG:32632"; empty for a system without a code
  std::string srsWkt;                        ///< the whole definition; empty for none
  /// Of an image with several pages, by the paths that lead to them; all else is of the first one.
  std::vector<std::filesystem::path> pages = {};
  std::string pagesProblem = {};  ///< for a person: why some have no path; else empty
};

/// What stands in a container.
enum class ContentKind {
  Files,  ///< of an archive, whatever they are
  Parts,  ///< rasters of one file
};

/// Why a file gives no facts.
struct RasterProblem {
  bool isRaster = true;  ///< false for a file that holds no raster, which is no problem to report
  std::string reason;    ///< for a person
  /// Of a container, by the paths that lead into it; then `isRaster` tells whether something is left out.
  std::vector<std::filesystem::path> contents = {};
  /// What the contents are.
  ContentKind kind = ContentKind::Parts;
};

/// The facts of a file, or why there are none.
using RasterResult = std::variant<RasterFacts, RasterProblem>;

}  // namespace vlclientui::client
#pragma GCC visibility pop
