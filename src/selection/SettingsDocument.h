#pragma once

#include <string>
#include <vector>

#include "contracts/XmlDocument.h"

/// The user's settings file and the selected-services document, both made from the template.
// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// How many servers the settings file gets at most; those after them in the box are dropped.
inline constexpr std::size_t mruServerLimit = 20;

/// The servers in the settings file. The first entry is the template's placeholder and is skipped.
/// Empty when the file is missing or does not parse.
[[nodiscard]] std::vector<std::string> readMruServers(const std::string& userDataFolder);

/// Replaces the children of the template's `SelectedImageServices` by one `Name` per reference.
/// @returns the element's outer XML, with the template's attributes.
[[nodiscard]] std::string writeSelectedServices(XmlDocument& settingsTemplate,
                                                const std::vector<std::string>& references);

/// Appends servers to the template's `MruServers`, up to the limit; existing ones stay.
void appendMruServers(XmlDocument& settingsTemplate, const std::vector<std::string>& servers);

/// Writes the template's `ShowImageServicesDialog` to the settings file. A failure is silent.
void saveSettings(const XmlDocument& settingsTemplate, const std::string& userDataFolder);

}  // namespace vlclientui
#pragma GCC visibility pop
