#pragma once

#include "contracts/Platform.h"
#include "scenarios/StrikingPorts.h"

namespace vlclientui::test {

/// The ports without windows before those of another platform: each call is counted first. How the user
/// writes numbers, translations of paths and what is asked of a parsed document are not: they are values.
[[nodiscard]] std::shared_ptr<System> strikingSystem(std::shared_ptr<System> inner, Strike& strike);
[[nodiscard]] std::shared_ptr<XmlService> strikingXml(std::shared_ptr<XmlService> inner, Strike& strike);
[[nodiscard]] std::shared_ptr<ClientLibrary> strikingLibrary(std::shared_ptr<ClientLibrary> inner,
                                                             Strike& strike);

}  // namespace vlclientui::test
