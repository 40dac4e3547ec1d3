#pragma once

#include <string>
#include <string_view>

#include <libxml/tree.h>

/// Names of elements and attributes.
namespace vlclientui::platform {

struct QualifiedName {
  std::string prefix;  ///< empty for none
  std::string local;
};

/// @throws RuntimeFailure for a name that XML with name spaces does not allow.
[[nodiscard]] QualifiedName parseQualifiedName(std::string_view name);
/// Also refuses a colon and "xml". @throws RuntimeFailure
void requireInstructionName(std::string_view name);

[[nodiscard]] std::string qualifiedName(const xmlNs* nameSpace, const xmlChar* local);
/// Name of a declaration as an attribute: "xmlns" or "xmlns:prefix".
[[nodiscard]] std::string declarationName(const xmlNs& nameSpace);

/// A new element without a parent. It declares the name space that it is given.
/// @throws RuntimeFailure for an illegal name, or a prefix without a name space.
[[nodiscard]] xmlNode* newElement(xmlDoc* document, std::string_view name, std::string_view nameSpace);

/// Adds or replaces; "xmlns" and "xmlns:prefix" declare a name space.
/// @throws RuntimeFailure for an illegal name or value, a prefix that is not declared, and a declaration
/// that would change the name of the element or of what stands below it.
void setXmlAttribute(xmlNode* element, std::string_view name, std::string_view value);
/// Replaces the value, whatever kind of text it had.
void setAttributeValue(xmlAttr* attribute, std::string_view value);

}  // namespace vlclientui::platform
