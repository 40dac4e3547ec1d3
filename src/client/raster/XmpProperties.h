#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// The properties of an XMP packet in document order, by name ("dc:title") and text. A list becomes one text,
/// its entries joined by ", ". Empty for any other text.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> readXmpProperties(const std::string& packet,
                                                                                 const XmlService& xml);

}  // namespace vlclientui::client
