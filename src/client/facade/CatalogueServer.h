#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/facade/Thumbnail.h"
#include "client/raster/LeftOut.h"
#include "client/raster/RasterFacts.h"

#pragma GCC visibility push(default)
namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

class ServerKind;
struct CatalogueContent;
struct CatalogueEntry;
struct MetadataSection;

/// Settings from the host.
struct CatalogueSettings {
  /// Served as "127.0.0.1" and "localhost".
  std::filesystem::path embeddedFolder;
  /// Translates a path with drive and backslashes to a native one; others come back unchanged. Throws
  /// RuntimeFailure for an illegal path. May be empty.
  std::function<std::string(const std::string&)> toNativePath;
};

/// How the texts that name servers are understood, before any kind of server is asked.
struct ServerTexts {
  /// A server text or reference as it may be shown and kept. What it takes away is used for requests.
  std::function<std::string(const std::string&)> withoutSecrets;
  /// The address that a server text stands for; others come back as they are.
  std::function<std::string(const std::string&)> addressOf;
  /// The same for what follows "ImageService://".
  std::function<std::string(const std::string&)> addressOfReference;
};

/// The folder in the environment variable VLCLIENTUI_CATALOGUE, otherwise the given one.
[[nodiscard]] std::filesystem::path embeddedCatalogueFolder(const std::filesystem::path& otherwise);

/// Answers requests for services: asks the kinds of servers what a text means and what is there, and tells
/// how it looks. One object serves any number of clients of both generations, on any thread.
class CatalogueServer {
 public:
  /// @param xml must outlive this object. @param settings of the host.
  CatalogueServer(const XmlService& xml, CatalogueSettings settings);
  CatalogueServer(const CatalogueServer&) = delete;
  CatalogueServer& operator=(const CatalogueServer&) = delete;
  ~CatalogueServer();

  /// One more kind of server, asked after folders. To be added before the first request.
  void addKind(std::unique_ptr<ServerKind> kind);

  /// To be told before the first request. Without it texts stay what they are.
  void understand(ServerTexts texts);
  /// A server text or reference as it may be shown, logged and kept.
  [[nodiscard]] std::string withoutSecrets(const std::string& text) const;

  /// @returns the server info document; empty for a server that does not answer: a folder that is not
  /// there, or a text that names none. A folder without rasters answers with no services.
  /// @throws RuntimeFailure when the request is no document.
  [[nodiscard]] std::string serverInfo(const std::string& requestXml);

  /// The folder that a server text leads to; nothing where it leads to none, or to a server of another kind.
  [[nodiscard]] std::optional<std::filesystem::path> folderOf(const std::string& serverText) const;
  /// The facts of a server's services by their whole names; none for a server without an answer.
  [[nodiscard]] std::map<std::string, RasterFacts> factsByName(const std::string& serverText);
  /// The facts of one service. @param reference as for `locate`.
  /// @throws RuntimeFailure when there is no such service, or none of it can be read.
  [[nodiscard]] RasterFacts factsOf(const std::string& reference);
  /// A server's services with the files behind them; nothing for a server without an answer.
  [[nodiscard]] std::optional<CatalogueContent> content(const std::string& serverText);

  /// What the last answer left out, with reasons.
  [[nodiscard]] std::vector<LeftOut> problems() const;

  /// The raster or mosaic behind "ImageService://server/name", "VLDef://file" or a file path; nothing when it
  /// does not exist.
  [[nodiscard]] std::optional<CatalogueEntry> locate(const std::string& reference);

  /// Facts from the files' headers, in order; remembered until the files change.
  [[nodiscard]] std::vector<RasterResult> readFacts(const std::vector<std::filesystem::path>& files);

  /// Metadata of the files, in order; never null, and the same object for an unchanged file.
  [[nodiscard]] std::vector<std::shared_ptr<const std::vector<MetadataSection>>> readMetadata(
      const std::vector<std::filesystem::path>& files);

  /// A native path for that of a person or document; empty for an illegal one.
  [[nodiscard]] std::string nativePath(const std::string& path) const;

  /// A picture of the whole service that fits into the given size with its proportions. Reads no more pixels
  /// than needed; a large mosaic without overviews takes a while, so do not call it on the user-interface
  /// thread. Empty when the reference leads nowhere or cannot be read.
  /// @param reference as for `locate`. @param width,height in pixels, at least 1.
  [[nodiscard]] Thumbnail renderThumbnail(const std::string& reference, int width, int height);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
