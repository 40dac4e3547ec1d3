#pragma once

#include <vector>

#include <libxml/tree.h>

/// Name spaces of subtrees that move. A libxml2 node only points at its name space's declaration, and that
/// may stand on an ancestor which stays behind.
namespace vlclientui::platform {

/// Name spaces used in the subtree but declared outside it, each once, without the built-in "xml".
[[nodiscard]] std::vector<const xmlNs*> foreignNameSpaces(const xmlNode* root);

/// Declares them again on the subtree's root and points its nodes there.
void declareForeignNameSpaces(xmlNode* root);

/// Call before appending an element: keeps its nodes without a name space out of the parent's default one.
void shieldFromDefaultNameSpace(const xmlNode* parent, xmlNode* element);

[[nodiscard]] bool isXmlPrefix(const xmlNs* nameSpace);

}  // namespace vlclientui::platform
