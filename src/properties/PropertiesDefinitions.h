#pragma once

#include <string>

#include "contracts/VorlaneClient.h"

/// The pair of definitions that a service gives for its properties, and what is taken out of it before it is
/// shown.
namespace vlclientui {

enum class ClientDefinition { Attributes, Form };

/// The definition of that kind, asked in the way of the service's generation.
[[nodiscard]] std::string fetchClientDefinition(ImageService& service, ClientDefinition kind);

/// The list of mosaic methods of an attribute definition's body; empty when it has none.
[[nodiscard]] std::string mosaicMethodList(const std::string& attributeBody);

/// Fetches both definitions, the form first, and cuts their bodies out. Out of the form go the fields of
/// mosaic methods that the service does not offer; the fields of the spatial reference become read-only, or
/// not, where the definition provides for it. A definition that is no document leaves its body as it was.
/// @param formBody, attributeBody hold what was reached when a failure passes through.
void prepareDefinitions(ImageService& service, bool srsReadOnly, std::string& formBody,
                        std::string& attributeBody);

}  // namespace vlclientui
