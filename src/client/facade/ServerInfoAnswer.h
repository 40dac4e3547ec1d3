#pragma once

#include <string>
#include <vector>

#include "client/catalogue/Catalogue.h"

namespace vlclientui::client {

/// The server info document of a catalogue: one provider, its services in the order given. Numbers with
/// "." and as many digits as read back the same. A fact that is not known has no element; so has a size
/// of more than 32,767 columns or rows, which readers could not hold.
[[nodiscard]] std::string serverInfoAnswer(const std::vector<ServiceRecord>& services);

}  // namespace vlclientui::client
