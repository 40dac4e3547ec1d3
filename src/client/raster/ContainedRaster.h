#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vlclientui::client {

/// A raster in a container: in a file of a format that holds several, or in an archive. Its path goes on
/// behind that of the container as if this were a folder: "/data/climate.nc/temperature",
/// "/data/maps.zip/north/a.tif".
struct ContainedRaster {
  std::string inner;  ///< the path within the container; "/" between steps, none of them "." or ".."
  std::string name;   ///< what the raster library opens
};

struct ContainerContent {
  std::vector<ContainedRaster> rasters;  ///< of an archive all its files, whatever they are
  std::string problem;                   ///< for a person: why some or all are left out; else empty
};

/// The file in which a raster lies; empty for one that is a file itself, or nowhere.
[[nodiscard]] std::filesystem::path containerOf(const std::filesystem::path& raster);

/// The file on the disk that holds a raster: its container, or itself.
[[nodiscard]] std::filesystem::path fileOnDisk(const std::filesystem::path& raster);

/// Path of a raster within its container, empty for a file of its own.
[[nodiscard]] std::string innerPathOf(const std::filesystem::path& raster);

/// Named as an archive; what it holds may be a raster all the same.
[[nodiscard]] bool isNamedAsArchive(const std::filesystem::path& file);

/// Named as one and with a directory at its end. A file on the disk, not one in a container.
[[nodiscard]] bool isArchive(const std::filesystem::path& file);

/// The files of an archive but those that are encrypted, which are told. Only its directory is read. One of
/// too many files, or that unpacks to a multiple of its size that no raster has, has a problem instead.
[[nodiscard]] ContainerContent archiveContent(const std::filesystem::path& archive);

}  // namespace vlclientui::client
