#include "platform/XmlNameSpaces.h"

#include <algorithm>

#include "platform/XmlWalk.h"

namespace vlclientui::platform {
namespace {

bool declares(const xmlNode* element, const xmlNs* nameSpace) {
  for (const xmlNs* own = element->nsDef; own != nullptr; own = own->next) {
    if (own == nameSpace) return true;
  }
  return false;
}

bool isForeign(const xmlNs* nameSpace, const xmlNode* user, const xmlNode* root) {
  if (nameSpace == nullptr || isXmlPrefix(nameSpace)) return false;
  for (const xmlNode* element = user; !declares(element, nameSpace); element = element->parent) {
    if (element == root) return true;
  }
  return false;
}

xmlNs* ownDeclaration(const xmlNode* element, const xmlChar* prefix) {
  for (xmlNs* own = element->nsDef; own != nullptr; own = own->next) {
    if (view(own->prefix) == view(prefix) && (own->prefix == nullptr) == (prefix == nullptr)) return own;
  }
  return nullptr;
}

/// A declaration of the same prefix and name for `user`: on the root, or on the user where the root uses that
/// prefix for something else.
xmlNs* declarationInside(const xmlNs* nameSpace, xmlNode* user, xmlNode* root) {
  for (xmlNode* place : {root, user}) {
    xmlNs* own = ownDeclaration(place, nameSpace->prefix);
    if (own == nullptr) return xmlNewNs(place, nameSpace->href, nameSpace->prefix);
    if (view(own->href) == view(nameSpace->href)) return own;
  }
  return nullptr;
}

/// Calls `visit(nameSpace, element)` with a reference to every use of a name space.
template <typename Visit>
void visitUses(const xmlNode* root, const Visit& visit) {
  for (auto* node = const_cast<xmlNode*>(root); node != nullptr; node = nextInOrder(node, root)) {
    if (!isElement(node)) continue;
    visit(node->ns, node);
    for (xmlAttr* attribute = node->properties; attribute != nullptr; attribute = attribute->next) {
      visit(attribute->ns, node);
    }
  }
}

}  // namespace

bool isXmlPrefix(const xmlNs* nameSpace) { return view(nameSpace->prefix) == "xml"; }

std::vector<const xmlNs*> foreignNameSpaces(const xmlNode* root) {
  std::vector<const xmlNs*> result;
  visitUses(root, [&](const xmlNs* nameSpace, const xmlNode* user) {
    if (isForeign(nameSpace, user, root) &&
        std::find(result.begin(), result.end(), nameSpace) == result.end()) {
      result.push_back(nameSpace);
    }
  });
  return result;
}

void declareForeignNameSpaces(xmlNode* root) {
  visitUses(root, [root](xmlNs*& nameSpace, xmlNode* user) {
    if (isForeign(nameSpace, user, root)) nameSpace = declarationInside(nameSpace, user, root);
  });
}

void shieldFromDefaultNameSpace(const xmlNode* parent, xmlNode* element) {
  if (ownDeclaration(element, nullptr) != nullptr) return;
  for (const xmlNode* place = parent; place != nullptr && isElement(place); place = place->parent) {
    const xmlNs* inScope = ownDeclaration(place, nullptr);
    if (inScope == nullptr) continue;
    if (!view(inScope->href).empty()) xmlNewNs(element, xmlText(""), nullptr);
    return;
  }
}

}  // namespace vlclientui::platform
