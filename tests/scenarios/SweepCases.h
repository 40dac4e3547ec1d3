#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "metadata/MetadataControls.h"
#include "scenarios/SweepWorld.h"

namespace vlclientui::test {

[[nodiscard]] std::vector<SweepScenario> modalScenarios();
[[nodiscard]] std::vector<SweepScenario> pageScenarios();

/// What a host reads at the object of the properties, pages and viewpoint.
[[nodiscard]] std::string toldByProperties(ServicePropertiesDialog& dialog);

/// A person's acts at the metadata of a service, in either of its windows.
[[nodiscard]] std::vector<std::function<void(MetadataControls&)>> metadataWalk();

}  // namespace vlclientui::test
