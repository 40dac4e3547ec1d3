#pragma once

#include <vector>

#include <libxml/tree.h>

/// Name spaces of subtrees that leave their place. A node of libxml2 only points at the declaration of its
/// name space, which may stand on an ancestor that goes away.
namespace vlclientui::platform {

/// Name spaces used in the subtree and declared outside, each once; the built-in "xml" is none of them.
[[nodiscard]] std::vector<const xmlNs*> foreignNameSpaces(const xmlNode* root);

/// Declares foreign name spaces again on the root of the subtree and points the nodes there.
void declareForeignNameSpaces(xmlNode* root);

/// To be called for an element about to be appended: keeps what is in no name space out of the parent's
/// default one.
void shieldFromDefaultNameSpace(const xmlNode* parent, xmlNode* element);

[[nodiscard]] bool isXmlPrefix(const xmlNs* nameSpace);

}  // namespace vlclientui::platform
