#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// Facts under one heading. Names are valid element names; texts are UTF-8 and never empty.
struct MetadataSection {
  std::string name;
  std::vector<std::pair<std::string, std::string>> items;
};

/// What a raster file says about itself, in sections; those without items are left out.
///
/// "File": format, size, structure. "Bands": a line for each band, with the statistics that the file holds.
/// "Tags": the ordinary metadata. "Exif": the camera's. "Xmp": the editor's, one item for each property.
/// "Domains": all further domains of the raster library, named by domain and key.
using FileMetadata = std::vector<MetadataSection>;

/// Opens the file read-only; statistics are never computed. Safe on any thread, as long as the XML service
/// is. A file that cannot be opened has no sections.
[[nodiscard]] FileMetadata readFileMetadata(const std::filesystem::path& file, const XmlService& xml);

/// A text as the name of an element: what XML does not allow becomes "_". Never empty.
[[nodiscard]] std::string elementName(const std::string& text);

/// Appends each section as an element with its items inside.
void writeMetadata(std::string& out, const FileMetadata& metadata);

}  // namespace vlclientui::client
