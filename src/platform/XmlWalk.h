#pragma once

#include <string_view>

#include <libxml/tree.h>

/// Small helpers over libxml2 nodes. They loop instead of recursing, so no depth exhausts the stack.
namespace vlclientui::platform {

[[nodiscard]] inline std::string_view view(const xmlChar* text) {
  return text == nullptr ? std::string_view() : std::string_view(reinterpret_cast<const char*>(text));
}

[[nodiscard]] inline const xmlChar* xmlText(const char* text) {
  return reinterpret_cast<const xmlChar*>(text);
}

[[nodiscard]] inline bool isElement(const xmlNode* node) { return node->type == XML_ELEMENT_NODE; }

[[nodiscard]] inline xmlNode* childrenOf(const xmlNode* node) {
  return node->type == XML_ELEMENT_NODE || node->type == XML_DOCUMENT_NODE ? node->children : nullptr;
}

/// The next node in document order that is not below `node`; null at the end of the tree of `root`.
[[nodiscard]] inline xmlNode* nextBeside(const xmlNode* node, const xmlNode* root) {
  while (node != root && node->next == nullptr) node = node->parent;
  return node == root ? nullptr : node->next;
}

/// The next node in document order, attributes left out; null at the end of the tree of `root`.
[[nodiscard]] inline xmlNode* nextInOrder(const xmlNode* node, const xmlNode* root) {
  xmlNode* child = childrenOf(node);
  return child != nullptr ? child : nextBeside(node, root);
}

[[nodiscard]] inline xmlNode* topOf(xmlNode* node) {
  while (node->parent != nullptr) node = node->parent;
  return node;
}

}  // namespace vlclientui::platform
