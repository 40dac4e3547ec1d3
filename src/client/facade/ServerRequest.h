#pragma once

#include <string>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// The server in a server info request, ends trimmed; may be empty.
/// @throws RuntimeFailure when the request does not parse.
[[nodiscard]] std::string serverOfRequest(const std::string& requestXml, const XmlService& xml);

}  // namespace vlclientui::client
