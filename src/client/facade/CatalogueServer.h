#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "client/catalogue/Catalogue.h"
#include "client/catalogue/FolderServers.h"
#include "client/catalogue/ServerKind.h"
#include "client/facade/Thumbnail.h"
#include "client/raster/RasterCache.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// What a host tells the client once.
struct CatalogueSettings {
  /// Served as "127.0.0.1" and "localhost".
  std::filesystem::path embeddedFolder;
  /// From a path with drive and backslashes to one of this machine; others come back as they are.
  /// A RuntimeFailure for an illegal path. Empty where there is nothing to translate.
  std::function<std::string(const std::string&)> toNativePath;
};

/// The folder that the environment variable VLCLIENTUI_CATALOGUE names, else the given one.
[[nodiscard]] std::filesystem::path embeddedCatalogueFolder(const std::filesystem::path& otherwise);

/// Answers requests for services: asks the kinds of servers what a text means and what is there, and tells
/// how it looks. One object serves any number of clients of both generations, on any thread.
class CatalogueServer {
 public:
  /// @param xml must outlive this object.
  CatalogueServer(const XmlService& xml, CatalogueSettings settings);

  /// One more kind of server, asked after folders. To be added before the first request.
  void addKind(std::unique_ptr<ServerKind> kind);

  /// @returns the server info document; empty for a server that does not answer: a folder that is not
  /// there, or a text that names none. A folder without rasters answers with no services.
  /// @throws RuntimeFailure when the request is no document.
  [[nodiscard]] std::string serverInfo(const std::string& requestXml);

  /// The folder that a server text leads to; nothing where it leads to none, or to a server of another kind.
  [[nodiscard]] std::optional<std::filesystem::path> folderOf(const std::string& serverText) const;
  /// The services of a server, for hosts that need no document; nothing for a silent server.
  [[nodiscard]] std::optional<CatalogueContent> content(const std::string& serverText);

  /// What the last answer left out, and why.
  [[nodiscard]] std::vector<LeftOut> problems() const;

  /// The raster or mosaic behind "ImageService://server/name", "VLDef://file" or a file path; nothing
  /// when there is none.
  [[nodiscard]] std::optional<CatalogueEntry> locate(const std::string& reference);

  /// What the headers of the files tell, in their order; remembered as long as they do not change.
  [[nodiscard]] std::vector<RasterResult> readFacts(const std::vector<std::filesystem::path>& files);

  /// What the files tell of themselves, in their order; never null, the same object for an unchanged file.
  [[nodiscard]] std::vector<std::shared_ptr<const FileMetadata>> readMetadata(
      const std::vector<std::filesystem::path>& files);

  /// A path of a person or document as one of this machine; empty for an illegal one.
  [[nodiscard]] std::string nativePath(const std::string& path) const;

  /// A picture of the whole service that fits into the given size, proportions kept. Reads no more
  /// pixels than it needs; a large mosaic without overviews still takes its time, so call it off the
  /// user-interface thread. An empty picture when the reference leads nowhere or cannot be read.
  /// @param width,height in pixels, at least 1.
  [[nodiscard]] Thumbnail renderThumbnail(const std::string& reference, int width, int height);

 private:
  /// The first answer that a kind of server gives.
  template <class Answer>
  [[nodiscard]] Answer firstOf(Answer (ServerKind::*ask)(const std::string&), const std::string& text);
  [[nodiscard]] std::optional<CatalogueEntry> locateFile(const std::string& path) const;

  const XmlService& xml_;
  CatalogueSettings settings_;
  RasterCache cache_;
  FolderServers folders_;
  std::vector<std::unique_ptr<ServerKind>> otherKinds_;
  mutable std::mutex mutex_;
  std::vector<LeftOut> problems_;
};

}  // namespace vlclientui::client
