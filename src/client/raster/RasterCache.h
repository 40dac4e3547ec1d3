#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "client/raster/FileCache.h"
#include "client/raster/FileMetadata.h"
#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// Facts about raster files, remembered as long as the files do not change. Safe on any thread.
class RasterCache {
 public:
  /// Results in the order of the files; unknown ones are read by several threads.
  [[nodiscard]] std::vector<RasterResult> read(const std::vector<std::filesystem::path>& files);
  /// The same for metadata, which takes longer and is needed rarely. Never null; an unchanged file gives the
  /// same object again.
  [[nodiscard]] std::vector<std::shared_ptr<const FileMetadata>> readMetadata(
      const std::vector<std::filesystem::path>& files, const XmlService& xml);

 private:
  FileCache<RasterResult> facts_;
  FileCache<std::shared_ptr<const FileMetadata>> metadata_;
};

}  // namespace vlclientui::client
