#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// The number of a definition key: 1 "ClientXADef", 2 "ClientXFDef", 3 "ServiceMetadataXADef",
/// 4 "ServiceMetadataXFDef". @throws RuntimeFailure for any other key.
[[nodiscard]] std::int32_t definitionKind(const std::string& key);

/// Cuts a page's definition out of the files in the folder, below the wrapper `XADef` or `XFDef`.
/// @throws RuntimeFailure when the kind is unknown, or the files hold no such page.
[[nodiscard]] std::string serviceDefinition(std::int32_t kind, const std::filesystem::path& folder,
                                            const XmlService& xml);

}  // namespace vlclientui::client
