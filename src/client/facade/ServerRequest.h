#pragma once

#include <string>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// The server that a server info request names, ends trimmed; empty when it names none.
/// @throws RuntimeFailure when the request is no well-formed document.
[[nodiscard]] std::string serverOfRequest(const std::string& requestXml, const XmlService& xml);

}  // namespace vlclientui::client
