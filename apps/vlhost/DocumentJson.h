#pragma once

#include <string>

#include "contracts/XmlDocument.h"

namespace vlclientui::vlhost {

/// How a document is printed.
enum class DocumentOutput { Xml, Json };

/// An XML document as JSON, with a line end behind it: each element as an object with its `name`, its
/// `attributes` where it has any, and either a `text` or `children`.
/// @throws RuntimeFailure for a text that is no document.
[[nodiscard]] std::string documentJson(const std::string& document, const XmlService& xml);

}  // namespace vlclientui::vlhost
