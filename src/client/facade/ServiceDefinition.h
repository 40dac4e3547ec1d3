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

/// The facts of a service that its definitions depend on.
struct DefinitionFacts {
  bool isMosaic = true;
  std::vector<std::string> attributeNames = {};  ///< of the sources
  std::vector<std::string> choices = {};         ///< what may be shown of each source; empty for no choice
};

/// Cuts a page's definition out of the files in the folder, below the wrapper `XADef` or `XFDef`. For a
/// service other than a mosaic the only mosaic method is "None"; the names of attributes are listed, and so
/// is what may be shown of each source; without such a choice there is no field for it.
/// @throws RuntimeFailure for an unknown kind, or when the files hold no such page.
[[nodiscard]] std::string serviceDefinition(std::int32_t kind, const std::filesystem::path& folder,
                                            const DefinitionFacts& facts, const XmlService& xml);

}  // namespace vlclientui::client
