#pragma once

#include <optional>
#include <string>

#include "client/catalogue/Catalogue.h"

namespace vlclientui::client {

/// One kind of server: what a server text leads to, what is listed there, and which rasters a service is made
/// from. A raster comes under the name by which the raster library opens it, wherever it lies; mosaics,
/// drawing, exports and documents know nothing more of it.
///
/// Implementers: several threads may ask at a time, and no member throws for a server that does not answer.
class ServerKind {
 public:
  virtual ~ServerKind() = default;

  /// All services of a server. @param server as a person or a document names it, blanks at its ends included.
  /// @returns nothing where the text leads to no server of this kind, or to one that does not answer.
  [[nodiscard]] virtual std::optional<CatalogueContent> list(const std::string& server) = 0;

  /// One service, found with as little reading as it takes.
  /// @param serverAndName what follows "ImageService://"; where the server ends, its kind knows.
  /// @returns nothing where there is no such service, or its server is of another kind.
  [[nodiscard]] virtual std::optional<CatalogueEntry> find(const std::string& serverAndName) = 0;
};

}  // namespace vlclientui::client
