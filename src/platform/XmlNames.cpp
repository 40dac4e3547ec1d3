#include "platform/XmlNames.h"

#include <new>

#include "contracts/RuntimeFailure.h"
#include "contracts/XmlCharacters.h"
#include "platform/XmlText.h"
#include "platform/XmlWalk.h"

namespace vlclientui::platform {
namespace {

[[noreturn]] void failName(std::string_view name, const char* reason) {
  throw RuntimeFailure("'" + std::string(name) + "' " + reason);
}

bool isPlainName(const std::string& name) {
  if (!isXmlText(name) || name.empty()) return false;
  // By the edition that the parser reads; the library's own check is by the one before.
  const xmlChar* rest = xmlText(name.c_str());
  for (bool isFirst = true; *rest != 0; isFirst = false) {
    int length = 4;
    const auto character = static_cast<char32_t>(xmlGetUTF8Char(rest, &length));
    if (isFirst ? !startsXmlName(character) : !continuesXmlName(character)) return false;
    rest += length;
  }
  return true;
}

const xmlChar* orNull(const std::string& text) { return text.empty() ? nullptr : xmlText(text.c_str()); }

xmlNs* ownDeclaration(const xmlNode* element, const std::string& prefix) {
  for (xmlNs* own = element->nsDef; own != nullptr; own = own->next) {
    if (view(own->prefix) == prefix) return own;
  }
  return nullptr;
}

void declareNameSpace(xmlNode* element, const std::string& prefix, const std::string& nameSpace) {
  const xmlNs* own = ownDeclaration(element, prefix);
  if (own != nullptr && view(own->href) == nameSpace) return;
  const bool isInUse = own != nullptr || (prefix.empty() && element->ns == nullptr) ||
                       (element->ns != nullptr && view(element->ns->prefix) == prefix) ||
                       element->children != nullptr || element->properties != nullptr;
  if (isInUse) failName(prefix, "cannot be declared as prefix here: names would change");
  if (nameSpace.empty() || prefix == "xml" || prefix == "xmlns") failName(prefix, "is no prefix to declare");
  if (xmlNewNs(element, xmlText(nameSpace.c_str()), orNull(prefix)) == nullptr) throw std::bad_alloc();
}

xmlNs* nameSpaceInScope(xmlNode* element, const QualifiedName& name) {
  if (name.prefix.empty()) return nullptr;
  xmlNs* found = xmlSearchNs(element->doc, element, xmlText(name.prefix.c_str()));
  if (found == nullptr) failName(name.prefix, "is a prefix without a name space");
  return found;
}

xmlAttr* findAttribute(const xmlNode* element, const xmlNs* nameSpace, const std::string& local) {
  const std::string_view wanted = nameSpace == nullptr ? std::string_view() : view(nameSpace->href);
  for (xmlAttr* attribute = element->properties; attribute != nullptr; attribute = attribute->next) {
    const std::string_view own = attribute->ns == nullptr ? std::string_view() : view(attribute->ns->href);
    if (own == wanted && view(attribute->name) == local) return attribute;
  }
  return nullptr;
}

}  // namespace

QualifiedName parseQualifiedName(std::string_view name) {
  const std::size_t colon = name.find(':');
  QualifiedName result;
  if (colon != std::string_view::npos) result.prefix = name.substr(0, colon);
  result.local = colon == std::string_view::npos ? name : name.substr(colon + 1);
  const bool hasGoodPrefix = colon == std::string_view::npos || isPlainName(result.prefix);
  if (!hasGoodPrefix || !isPlainName(result.local)) failName(name, "is no name that XML allows");
  return result;
}

void requireInstructionName(std::string_view name) {
  const bool isReserved = xmlStrcasecmp(xmlText(std::string(name).c_str()), xmlText("xml")) == 0;
  if (isReserved || !parseQualifiedName(name).prefix.empty()) failName(name, "is no name of an instruction");
}

std::string qualifiedName(const xmlNs* nameSpace, const xmlChar* local) {
  std::string name;
  if (nameSpace != nullptr && nameSpace->prefix != nullptr) {
    name = view(nameSpace->prefix);
    name += ':';
  }
  return name += view(local);
}

std::string declarationName(const xmlNs& nameSpace) {
  if (nameSpace.prefix == nullptr) return "xmlns";
  return "xmlns:" + std::string(view(nameSpace.prefix));
}

xmlNode* newElement(xmlDoc* document, std::string_view name, std::string_view nameSpace) {
  const QualifiedName parts = parseQualifiedName(name);
  if (!parts.prefix.empty() && nameSpace.empty()) failName(name, "has a prefix without a name space");
  if (parts.prefix == "xml" || parts.prefix == "xmlns") failName(name, "is no name of an element");
  requireXmlText(nameSpace);
  xmlNode* element = xmlNewDocNode(document, nullptr, xmlText(parts.local.c_str()), nullptr);
  if (element == nullptr) throw std::bad_alloc();
  if (!nameSpace.empty()) {
    const std::string uri(nameSpace);
    xmlSetNs(element, xmlNewNs(element, xmlText(uri.c_str()), orNull(parts.prefix)));
  }
  return element;
}

void setAttributeValue(xmlAttr* attribute, std::string_view value) {
  requireXmlText(value);
  const std::string text(value);
  xmlNode* piece = xmlNewDocText(attribute->doc, xmlText(text.c_str()));
  if (piece == nullptr) throw std::bad_alloc();
  if (attribute->atype == XML_ATTRIBUTE_ID) xmlRemoveID(attribute->doc, attribute);
  xmlFreeNodeList(attribute->children);
  piece->parent = reinterpret_cast<xmlNode*>(attribute);
  attribute->children = attribute->last = piece;
}

void setXmlAttribute(xmlNode* element, std::string_view name, std::string_view value) {
  const QualifiedName parts = parseQualifiedName(name);
  requireXmlText(value);
  if (name == "xmlns") return declareNameSpace(element, "", std::string(value));
  if (parts.prefix == "xmlns") return declareNameSpace(element, parts.local, std::string(value));
  xmlNs* nameSpace = nameSpaceInScope(element, parts);
  xmlAttr* attribute = findAttribute(element, nameSpace, parts.local);
  if (attribute == nullptr) {
    attribute = xmlNewNsProp(element, nameSpace, xmlText(parts.local.c_str()), nullptr);
    if (attribute == nullptr) throw std::bad_alloc();
  }
  setAttributeValue(attribute, value);
}

}  // namespace vlclientui::platform
