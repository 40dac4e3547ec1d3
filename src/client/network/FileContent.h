#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vlclientui::client {

/// What a file is, as far as its first bytes tell.
enum class FileContent {
  Image,   ///< of a format whose files stand for themselves
  Mosaic,  ///< a virtual raster, which names other files
  Other
};

/// Bytes that contentOf wants to see.
inline constexpr std::size_t contentBytes = 1024;

[[nodiscard]] FileContent contentOf(std::string_view start);
/// Whether bytes begin as those of a TIFF, of more than 4 GiB as well.
[[nodiscard]] bool isTiff(std::string_view bytes);

/// Whether a path ends as images that are read from the web, or as virtual rasters.
[[nodiscard]] bool isNamedAsImage(std::string_view path);
/// Whether a file of that name may be a virtual raster: all but those that are named as other images.
[[nodiscard]] bool mayBeMosaic(std::string_view path);
/// Whether a path ends as definitions of mosaics.
[[nodiscard]] bool isNamedAsDefinition(std::string_view path);
/// Whether files of that name only stand beside images: side-car metadata, world files, overviews and masks.
[[nodiscard]] bool isBesideImages(std::string_view name);
/// Of these: whether they are texts, which no raster is opened from; all but overviews and masks.
[[nodiscard]] bool isTextBesideImages(std::string_view name);

}  // namespace vlclientui::client
