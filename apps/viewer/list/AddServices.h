#pragma once

#include <optional>
#include <string>
#include <vector>

#include "contracts/Platform.h"
#include "host/Services.h"

/// The add-service dialog as a host drives it: through the class factory, by interfaces, with documents.
namespace vlclientui::viewer {

/// The document that tells the dialog what the map shows. Numbers are written the user's way, which is how
/// the dialog reads them.
[[nodiscard]] std::string viewExtentDocument(const host::GeographicEnvelope& view,
                                             const LocaleFormat& format);

/// Shows the dialog and waits for it.
/// @param serverClient an IOVLServerClient. @returns the selected-services document, empty after a cancel.
/// @throws RuntimeFailure when the dialog cannot be made or shown, with the text of its Status.
[[nodiscard]] std::string pickServices(const ObjectPtr& serverClient, const std::string& viewExtent);

/// The references in a selected-services document, in order; none for an empty text.
/// @throws RuntimeFailure when the text is no document.
[[nodiscard]] std::vector<std::string> referencesIn(const XmlService& xml,
                                                    const std::string& selectedServices);

}  // namespace vlclientui::viewer
