#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "client/catalogue/ServerKind.h"
#include "client/raster/RasterCache.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// Folders as servers: the embedded one by its names, any other by its path.
class FolderServers final : public ServerKind {
 public:
  using NativePath = std::function<std::string(const std::string&)>;

  /// @param embedded served as "127.0.0.1" and "localhost".
  /// @param nativePath a path as a person or document writes it as one of this machine; empty for an illegal
  /// one. @param xml,cache must outlive this object.
  FolderServers(std::filesystem::path embedded, NativePath nativePath, const XmlService& xml,
                RasterCache& cache);

  [[nodiscard]] std::optional<CatalogueContent> list(const std::string& server) override;
  [[nodiscard]] std::optional<CatalogueEntry> find(const std::string& serverAndName) override;
  /// Nothing where the text leads to no folder that is there.
  [[nodiscard]] std::optional<std::filesystem::path> folderOf(const std::string& server) const;

 private:
  std::filesystem::path embedded_;
  NativePath nativePath_;
  const XmlService& xml_;
  RasterCache& cache_;
};

}  // namespace vlclientui::client
