#pragma once

#include <string>
#include <string_view>

#include "contracts/XmlDocument.h"

/// The service properties document: where its elements stand, and what is merged into it before a host gets
/// it.
namespace vlclientui {

namespace propertiesPath {
inline constexpr std::string_view group = "//Vorlane/ImageServiceProperties";
inline constexpr std::string_view mosaicMethod = "//Vorlane/ImageServiceProperties/MosaicMethod";
inline constexpr std::string_view lockImageId = "//Vorlane/ImageServiceProperties/LockImageID";
}  // namespace propertiesPath

/// @returns whether there is such a node to write to.
bool writeTextIfPresent(const XmlDocument& document, std::string_view path, std::string_view text);

/// The document with the viewpoint written into ViewPointY and ViewPointX, also when the texts are empty. A
/// missing element becomes the last child of the properties, Y before X; a document without properties gets
/// none. A text that is no document gives an empty one.
[[nodiscard]] std::string withViewPoint(const std::string& propertiesXml, const std::string& x,
                                        const std::string& y);

}  // namespace vlclientui
