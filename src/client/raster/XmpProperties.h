#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// The properties of an XMP packet as names and texts, in document order: "dc:title" and its text. A list is
/// one text with ", " between its entries. Empty for a text that is no packet.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> readXmpProperties(const std::string& packet,
                                                                                 const XmlService& xml);

}  // namespace vlclientui::client
