#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "client/raster/FileCache.h"
#include "client/raster/FileMetadata.h"
#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// What raster files tell, remembered as long as they do not change. Safe on any thread.
class RasterCache {
 public:
  /// Results in the order of the files; what is not known yet is read by several threads.
  [[nodiscard]] std::vector<RasterResult> read(const std::vector<std::filesystem::path>& files);
  /// The same for metadata, which takes longer and is asked for rarely. Never null; the same object as
  /// before for a file that did not change.
  [[nodiscard]] std::vector<std::shared_ptr<const FileMetadata>> readMetadata(
      const std::vector<std::filesystem::path>& files, const XmlService& xml);

 private:
  FileCache<RasterResult> facts_;
  FileCache<std::shared_ptr<const FileMetadata>> metadata_;
};

}  // namespace vlclientui::client
