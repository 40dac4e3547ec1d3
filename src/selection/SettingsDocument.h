#pragma once

#include <string>
#include <vector>

#include "contracts/XmlDocument.h"

/// The per-user settings file and the selected-services document, both made from the template.
namespace vlclientui {

/// At most this many servers are added to the settings file; older entries at the end of the box are lost.
inline constexpr std::size_t mruServerLimit = 20;

/// Servers of the settings file in file order. Index 0 is not read: the template's placeholder stands there.
/// Empty when there is no such file, or it does not parse.
[[nodiscard]] std::vector<std::string> readMruServers(const std::string& userDataFolder);

/// Replaces the children of the template's `SelectedImageServices` by one `Name` per reference.
/// @returns the element's outer XML; attributes of the template stay on it.
[[nodiscard]] std::string writeSelectedServices(XmlDocument& settingsTemplate,
                                                const std::vector<std::string>& references);

/// Appends the servers to the template's `MruServers`, up to the limit; what stands there stays.
void appendMruServers(XmlDocument& settingsTemplate, const std::vector<std::string>& servers);

/// Saves the template's `ShowImageServicesDialog` as the settings file, replacing any such file. A failure
/// to save is not reported.
void saveSettings(const XmlDocument& settingsTemplate, const std::string& userDataFolder);

}  // namespace vlclientui
