#pragma once

#include <cstdint>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui::client {

struct CatalogueEntry;

/// A small picture. Rows from the top, four bytes per pixel: red, green, blue, alpha (not premultiplied).
struct Thumbnail {
  /// Columns; 0 for an empty picture.
  int width = 0;
  /// Rows; 0 for an empty picture.
  int height = 0;
  std::vector<std::uint8_t> rgba;  ///< width * height * 4 bytes

  /// Whether there is no picture.
  [[nodiscard]] bool isEmpty() const { return rgba.empty(); }
};

/// Draws a raster, or a mosaic's sources in order, later ones on top. Elevations become tinted relief;
/// palettes keep their colors; several bands appear in natural color when the file says which they are;
/// values beyond a byte are stretched between their 2nd and 98th percentile. Pixels without data are
/// transparent.
/// @param entry what the catalogue tells of it. @param width,height the space to fit into, in pixels, at
/// least 1.
/// @returns an empty picture when nothing can be read. Safe on any thread.
[[nodiscard]] Thumbnail renderThumbnail(const CatalogueEntry& entry, int width, int height);

}  // namespace vlclientui::client
#pragma GCC visibility pop
