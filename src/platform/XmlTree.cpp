#include "platform/XmlTree.h"

#include <new>

#include <libxml/valid.h>

#include "platform/LibXmlNode.h"
#include "platform/XmlNameSpaces.h"
#include "platform/XmlPath.h"
#include "platform/XmlWalk.h"

namespace vlclientui::platform {
namespace {

XmlDocPtr newDocument() {
  XmlDocPtr document(xmlNewDoc(xmlText("1.0")));
  if (document == nullptr) throw std::bad_alloc();
  return document;
}

bool hasHandle(const xmlNode* node) {
  if (node->_private != nullptr) return true;
  if (!isElement(node)) return false;
  for (const xmlAttr* attribute = node->properties; attribute != nullptr; attribute = attribute->next) {
    if (attribute->_private != nullptr) return true;
  }
  return false;
}

bool anyHandleIn(const xmlNode* root) {
  for (const xmlNode* node = root; node != nullptr; node = nextInOrder(node, root)) {
    if (hasHandle(node)) return true;
  }
  return false;
}

/// Links by hand: the library's own function would merge neighboring texts and free the appended node.
void linkLast(xmlNode* parent, xmlNode* child) {
  child->parent = parent;
  child->prev = parent->last;
  child->next = nullptr;
  (parent->last != nullptr ? parent->last->next : parent->children) = child;
  parent->last = child;
}

void moveHandle(void* handle, XmlTree& target) {
  if (handle != nullptr) static_cast<LibXmlNode*>(handle)->moveTo(target.shared_from_this());
}

}  // namespace

XmlTree::XmlTree(XmlDocPtr document) : document_(document ? std::move(document) : newDocument()) {}

XmlTree::~XmlTree() {
  for (xmlNode* node : detached_) xmlFreeNode(node);
}

XmlNodePtr XmlTree::handleOf(xmlNode* node) {
  if (node == nullptr) return nullptr;
  if (node->_private != nullptr) return static_cast<LibXmlNode*>(node->_private)->shared_from_this();
  return std::make_shared<LibXmlNode>(shared_from_this(), node);
}

std::vector<XmlNodePtr> XmlTree::handlesOf(const std::vector<xmlNode*>& nodes) {
  std::vector<XmlNodePtr> handles;
  handles.reserve(nodes.size());
  for (xmlNode* node : nodes) handles.push_back(handleOf(node));
  return handles;
}

std::vector<XmlNodePtr> XmlTree::childHandles(const xmlNode* parent) {
  std::vector<XmlNodePtr> handles;
  for (xmlNode* child = childrenOf(parent); child != nullptr; child = child->next) {
    handles.push_back(handleOf(child));
  }
  return handles;
}

XmlNodePtr XmlTree::selectFirst(xmlNode* from, std::string_view path) {
  const std::vector<xmlNode*> nodes = selectXmlNodes(from, path, 1);
  return nodes.empty() ? nullptr : handleOf(nodes.front());
}

std::vector<XmlNodePtr> XmlTree::selectAll(xmlNode* from, std::string_view path) {
  return handlesOf(selectXmlNodes(from, path, allXmlNodes));
}

XmlNodePtr XmlTree::addDetached(xmlNode* node) {
  if (node == nullptr) throw std::bad_alloc();
  detached_.insert(node);
  return handleOf(node);
}

void XmlTree::takeOut(xmlNode* node) {
  declareForeignNameSpaces(node);
  xmlUnlinkNode(node);
  detached_.insert(node);
}

void XmlTree::removeChildren(xmlNode* parent) {
  while (xmlNode* child = parent->children) {
    if (anyHandleIn(child)) {
      takeOut(child);
    } else {
      xmlUnlinkNode(child);
      xmlFreeNode(child);
    }
  }
}

void XmlTree::append(xmlNode* parent, xmlNode* child, XmlTree& source) {
  if (child->parent != nullptr) source.takeOut(child);
  source.detached_.erase(child);
  if (&source != this) adopt(child, source);
  if (isElement(child)) shieldFromDefaultNameSpace(parent, child);
  linkLast(parent, child);
}

void XmlTree::adopt(xmlNode* root, XmlTree& source) {
  for (xmlNode* node = root; node != nullptr; node = nextInOrder(node, root)) {
    adoptOne(node);
    if (!isElement(node)) continue;
    for (xmlAttr* attribute = node->properties; attribute != nullptr; attribute = attribute->next) {
      if (attribute->atype == XML_ATTRIBUTE_ID) xmlRemoveID(source.document(), attribute);
      adoptOne(reinterpret_cast<xmlNode*>(attribute));
      for (xmlNode* piece = attribute->children; piece != nullptr; piece = piece->next) {
        adoptOne(piece);
      }
    }
  }
}

void XmlTree::adoptOne(xmlNode* node) {
  node->doc = document();
  const bool isNamed = isElement(node) || node->type == XML_ATTRIBUTE_NODE;
  // The declaration of the prefix "xml" belongs to the document itself.
  if (isNamed && node->ns != nullptr && isXmlPrefix(node->ns)) {
    node->ns = xmlSearchNs(document(), documentNode(), xmlText("xml"));
  }
  moveHandle(node->_private, *this);
}

}  // namespace vlclientui::platform
