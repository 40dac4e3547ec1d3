#pragma once

#include <string>

#include "contracts/VorlaneClient.h"

/// The two definitions that a service gives for its properties, and what is removed from them before they are
/// shown.
namespace vlclientui {

enum class ClientDefinition { Attributes, Form };

/// The definition of that kind, by the call that the service's generation has.
[[nodiscard]] std::string fetchClientDefinition(ImageService& service, ClientDefinition kind);

/// The list of mosaic methods in an attribute definition's body; empty without one.
[[nodiscard]] std::string mosaicMethodList(const std::string& attributeBody);

/// Fetches both definitions, the form first, and cuts out their bodies. Fields of mosaic methods that the
/// service does not offer are removed from the form; the fields of the spatial reference become read-only, or
/// editable, where the definition has a word for it. A definition that does not parse leaves its body
/// unchanged.
/// @param formBody, attributeBody hold what was done so far when a failure passes through.
void prepareDefinitions(ImageService& service, bool srsReadOnly, std::string& formBody,
                        std::string& attributeBody);

}  // namespace vlclientui
