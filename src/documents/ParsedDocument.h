#pragma once

#include <memory>
#include <source_location>
#include <string_view>

#include "contracts/Silence.h"
#include "contracts/XmlDocument.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// Loads a text. One that does not parse leaves the document empty, so that every read in it finds nothing
/// and keeps its default; that is told as a silent end of `routine`. An empty text is no document and not
/// told.
/// @returns whether it parsed.
bool loadOrStayEmpty(XmlDocument& document, std::string_view text,
                     const RoutineName& routine = std::source_location::current());

/// A new document with what the text holds, by loadOrStayEmpty.
[[nodiscard]] std::unique_ptr<XmlDocument> parsedDocument(
    const XmlService& xml, std::string_view text,
    const RoutineName& routine = std::source_location::current());

}  // namespace vlclientui
#pragma GCC visibility pop
