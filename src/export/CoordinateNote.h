#pragma once

#include <string>

#include "contracts/XmlDocument.h"

namespace vlclientui {

/// The unit of the coordinates of a coordinate system in well-known text, as it names it; empty for none.
/// Of a compound system that of the horizontal coordinates.
[[nodiscard]] std::string unitOfSystem(const std::string& wellKnownText);

/// What a reader of coordinates has to know: the coordinate system and its unit, as the service info document
/// tells them. Tells also that the document names none.
[[nodiscard]] std::string coordinateNote(const XmlDocument& serviceInfo);

}  // namespace vlclientui
