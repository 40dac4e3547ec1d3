#pragma once

#include <filesystem>
#include <string>

#include "client/raster/OutputGrid.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// What a `GetImage` document asks for.
struct GetImageRequest {
  OutputGrid grid;
  std::string format;          ///< "Tiff", "JPEG", "JPEG2000", "PNG" in any case
  std::string compression;     ///< of Tiff: empty, "JPEG", "LZ77" in any case
  int tileSize = 0;            ///< pixels a side, a multiple of 16; 0 for none
  int quality = 100;           ///< 0 to 100
  std::string fileName;        ///< as it stands in the document
  std::filesystem::path file;  ///< the same on this machine; set by whoever knows how to translate
  bool createsWorldFile = false;
  bool exportsMetadata = false;
  std::string metadata;  ///< goes beside the image then; set by whoever knows the service
};

/// Reads the document whole before anything is done. Numbers have "." and may lack digits before or behind.
/// @throws RuntimeFailure that names the element and what it should hold.
[[nodiscard]] GetImageRequest readGetImageRequest(const std::string& document, const XmlService& xml);

}  // namespace vlclientui::client
