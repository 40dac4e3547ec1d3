#pragma once

#include <memory>
#include <string_view>

#include <libxml/tree.h>

namespace vlclientui::platform {

struct FreeXmlDoc {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using XmlDocPtr = std::unique_ptr<xmlDoc, FreeXmlDoc>;

/// Deepest nesting of elements that loads.
inline constexpr int kMaxXmlDepth = 1000;
/// Bytes that entities and default attributes of a document may add to it.
inline constexpr std::size_t kMaxXmlExpansion = 1U << 20U;
/// Entities and attributes that a document may declare.
inline constexpr int kMaxXmlDeclarations = 1000;

/// @param text UTF-8 with or without a byte order mark; an encoding that it declares means nothing.
/// @returns null unless the text is a well-formed document, name spaces included, within the limits above.
///
/// Entities are plain texts declared in the document itself. Using any other (external, with markup or
/// references inside, parameter entities, unknown ones) refuses the document, and nothing outside of it is
/// ever opened. The document comes without its declaration and document type, and without text nodes of
/// nothing but white space.
[[nodiscard]] XmlDocPtr readXmlText(std::string_view text);

/// The same for the bytes of a file, whose declared encoding or byte order mark counts.
[[nodiscard]] XmlDocPtr readXmlBytes(std::string_view bytes);

}  // namespace vlclientui::platform
