#pragma once

#include <string>
#include <string_view>

#include "contracts/XmlDocument.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
/// The service properties document: its paths, and what is merged into it for the host.
namespace vlclientui {

namespace propertiesPath {
inline constexpr std::string_view group = "//Vorlane/ImageServiceProperties";
inline constexpr std::string_view mosaicMethod = "//Vorlane/ImageServiceProperties/MosaicMethod";
inline constexpr std::string_view lockImageId = "//Vorlane/ImageServiceProperties/LockImageID";
}  // namespace propertiesPath

/// @returns whether the document has such a node.
bool writeTextIfPresent(const XmlDocument& document, std::string_view path, std::string_view text);

/// The document with the viewpoint written into ViewPointY and ViewPointX, even with empty texts. A missing
/// element becomes the last child of the properties, Y before X; a document without properties stays without.
/// A text that does not parse gives an empty one.
[[nodiscard]] std::string withViewPoint(const std::string& propertiesXml, const std::string& x,
                                        const std::string& y);

}  // namespace vlclientui
#pragma GCC visibility pop
