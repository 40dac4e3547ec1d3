#pragma once

#include <memory>
#include <string_view>

#include <libxml/tree.h>

namespace vlclientui::platform {

struct FreeXmlDoc {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using XmlDocPtr = std::unique_ptr<xmlDoc, FreeXmlDoc>;

/// Maximum nesting of elements.
inline constexpr int maxXmlDepth = 1000;
/// Bytes that entities and default attributes of a document may add to it.
inline constexpr std::size_t maxXmlExpansion = 1U << 20U;
/// How many entities and attributes a document may declare.
inline constexpr int maxXmlDeclarations = 1000;

/// @param text UTF-8 with or without a byte order mark; a declared encoding is ignored.
/// @returns null unless the text is a well-formed document, name spaces included, within the limits above.
///
/// Entities are plain texts declared in the document itself. Any other entity (external, with markup or
/// references inside, parameter, unknown) makes the load fail, and nothing outside the document is ever
/// opened. The result has no XML declaration, no document type, and no text nodes of nothing but white space.
[[nodiscard]] XmlDocPtr readXmlText(std::string_view text);

/// The same for the bytes of a file; its declared encoding or byte order mark counts.
[[nodiscard]] XmlDocPtr readXmlBytes(std::string_view bytes);

}  // namespace vlclientui::platform
