#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "client/raster/OutputGrid.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// The content of a `GetImage` document.
struct GetImageRequest {
  OutputGrid grid;
  std::string format;          ///< "Tiff", "JPEG", "JPEG2000", "PNG" in any case
  std::string compression;     ///< of Tiff: empty, "JPEG", "LZ77" in any case
  int tileSize = 0;            ///< pixels a side, a multiple of 16; 0 for none
  int quality = 100;           ///< 0 to 100
  std::string fileName;        ///< as written in the document
  std::filesystem::path file;  ///< the same as a native path; set by whoever can translate it
  bool createsWorldFile = false;
  bool exportsMetadata = false;
  /// Tells what to write beside the image once it is there; set by whoever knows the service.
  std::function<std::string()> metadata;
};

/// Reads and checks the whole document first. Numbers have "." and may lack digits before or after it.
/// @throws RuntimeFailure naming the element and what it should hold.
[[nodiscard]] GetImageRequest readGetImageRequest(const std::string& document, const XmlService& xml);

}  // namespace vlclientui::client
