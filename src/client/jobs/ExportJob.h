#pragma once

#include <filesystem>
#include <string>

#include "client/raster/RasterFacts.h"
#include "documents/ExportFormats.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// A whole export as plain values: what is exported, which part, on which grid, and as which file. Made twice
/// of unchanged rasters it gives the same file, byte for byte.
struct ExportJob {
  std::string reference;   ///< that the service is opened by; a path is absolute
  std::string properties;  ///< a service properties document; empty for the service's own
  /// Of the extent: a code as "EPSG:32632", a name or a whole definition. Empty: whichever the service has.
  std::string system;
  Bounds extent;  ///< outer edges; wider and higher than 0
  /// Pixels across, at least 1 in a job that can be run.
  int columns = 0;
  /// Pixels down, likewise.
  int rows = 0;
  /// Which kind of file is written.
  FileFormat format = FileFormat::Tiff;
  /// Of a TIFF; None for all others.
  Compression compression = Compression::None;
  int tileSize = 0;   ///< pixels a side, a multiple of 16 up to 16,384; 0 for none
  int quality = 100;  ///< 0 to 100; counts where pixels are compressed with loss
  /// Whether a world file is written beside the image.
  bool createsWorldFile = false;
  /// Whether the metadata are written beside the image.
  bool exportsMetadata = false;
  std::filesystem::path file;  ///< native and absolute; written under exactly this name

  /// Whether both would write the same file from the same rasters.
  bool operator==(const ExportJob&) const = default;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
