#pragma once

#include <string>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::viewer {

/// What a status document of the client says to a person; empty when it says nothing.
[[nodiscard]] std::string statusMessage(const XmlService& xml, const std::string& status);

}  // namespace vlclientui::viewer
