#pragma once

#include <string>
#include <string_view>

#include "contracts/VorlaneClient.h"
#include "contracts/XmlDocument.h"

/// The pair of definitions that a service gives for its properties, and what is taken out of it before it is
/// shown.
namespace vlclientui {

enum class ClientDefinition { Attributes, Form };

/// The definition of that kind, asked in the way of the service's generation.
[[nodiscard]] std::string fetchClientDefinition(ImageService& service, ClientDefinition kind);

/// Whether a list of mosaic methods has the method in it, in any case. A plain search: a longer word that
/// holds the name counts too.
[[nodiscard]] bool offersMethod(std::string_view methodList, std::string_view method);
/// The list of mosaic methods of an attribute definition's body; empty when it has none.
[[nodiscard]] std::string mosaicMethodList(const std::string& attributeBody);

/// Names the help file in the document, so that the engine finds it: an X_DEF below the root element
/// `Vorlane`. A document with another root is left as it is; one that passes twice gets a second X_DEF.
void addHelpBlock(XmlDocument& document);

/// Fetches both definitions, the form first, and cuts their bodies out. Out of the form go the fields of
/// mosaic methods that the service does not offer; the fields of the spatial reference become read-only, or
/// not, where the definition provides for it. A definition that is no document leaves its body as it was.
/// @param formBody, attributeBody hold what was reached when a failure passes through.
void prepareDefinitions(ImageService& service, bool srsReadOnly, std::string& formBody,
                        std::string& attributeBody);

}  // namespace vlclientui
