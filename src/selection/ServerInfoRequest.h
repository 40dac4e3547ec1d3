#pragma once

#include <optional>
#include <string>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The metadata level that the service browser asks for.
inline constexpr int serviceListLevel = 1;

/// The request for a server's services: the whole template of VLClient.XADef with server and level set. When
/// the template is not XML, shows a message and gives nothing.
/// @throws RuntimeFailure when the template lacks the elements, or an adapter fails.
[[nodiscard]] std::optional<std::string> BuildServerInfoRequest(const std::string& server, int level);

/// Shows that the form engine gave a template that is not XML.
void showInvalidTemplateMessage();

}  // namespace vlclientui
#pragma GCC visibility pop
