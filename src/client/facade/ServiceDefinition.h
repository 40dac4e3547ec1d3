#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// The number of a definition key: 1 "ClientXADef", 2 "ClientXFDef", 3 "ServiceMetadataXADef",
/// 4 "ServiceMetadataXFDef". @throws RuntimeFailure for any other key.
[[nodiscard]] std::int32_t definitionKind(const std::string& key);

/// What of the definitions depends on the service.
struct DefinitionFacts {
  bool isMosaic = true;
  std::vector<std::string> attributeNames = {};  ///< of the sources
};

/// Cuts a page's definition out of the files in the folder, below the wrapper `XADef` or `XFDef`. A service
/// that is no mosaic offers the mosaic method "None" alone; the names of attributes are listed.
/// @throws RuntimeFailure when the kind is unknown, or the files hold no such page.
[[nodiscard]] std::string serviceDefinition(std::int32_t kind, const std::filesystem::path& folder,
                                            const DefinitionFacts& facts, const XmlService& xml);

}  // namespace vlclientui::client
