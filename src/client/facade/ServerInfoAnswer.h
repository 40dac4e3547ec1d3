#pragma once

#include <string>
#include <vector>

#include "client/catalogue/Catalogue.h"

namespace vlclientui::client {

/// The server info document of a catalogue: one provider with its services in the given order. Numbers have
/// "." and just the digits to read back the same. Unknown facts have no element, nor have sizes above 32,767
/// columns or rows, which readers could not hold.
[[nodiscard]] std::string serverInfoAnswer(const std::vector<ServiceRecord>& services);

}  // namespace vlclientui::client
