#include "platform/LibXmlNode.h"

#include <new>

#include "contracts/RuntimeFailure.h"
#include "platform/XmlNames.h"
#include "platform/XmlText.h"
#include "platform/XmlWalk.h"
#include "platform/XmlWriter.h"

namespace vlclientui::platform {
namespace {

const LibXmlNode& ownKind(const XmlNodePtr& node) {
  if (node == nullptr) failMissingObject("XML node");
  const auto* own = dynamic_cast<const LibXmlNode*>(node.get());
  if (own == nullptr) failTypeMismatch("XML node of another service");
  return *own;
}

bool mayStandInDocument(xmlElementType type) {
  return type == XML_ELEMENT_NODE || type == XML_COMMENT_NODE || type == XML_PI_NODE;
}

bool mayStandInElement(xmlElementType type) {
  return mayStandInDocument(type) || type == XML_TEXT_NODE || type == XML_CDATA_SECTION_NODE;
}

bool hasElementChild(const xmlNode* parent) {
  for (const xmlNode* child = parent->children; child != nullptr; child = child->next) {
    if (isElement(child)) return true;
  }
  return false;
}

/// Comments and instructions cannot hold the characters that would end them.
void requireContent(const xmlNode* node, std::string_view text) {
  const bool endsComment = text.find("--") != std::string_view::npos || text.ends_with('-');
  const bool endsInstruction = text.find("?>") != std::string_view::npos;
  if ((node->type == XML_COMMENT_NODE && endsComment) || (node->type == XML_PI_NODE && endsInstruction)) {
    throw RuntimeFailure("The text would end the node that it is written to");
  }
}

}  // namespace

LibXmlNode::LibXmlNode(std::shared_ptr<XmlTree> tree, xmlNode* node) : tree_(std::move(tree)), node_(node) {
  node_->_private = this;
}

LibXmlNode::~LibXmlNode() { node_->_private = nullptr; }

XmlNodeKind LibXmlNode::kind() const {
  switch (node_->type) {
    case XML_ATTRIBUTE_NODE:
      return XmlNodeKind::Attribute;
    case XML_TEXT_NODE:
      return XmlNodeKind::Text;
    case XML_CDATA_SECTION_NODE:
      return XmlNodeKind::CData;
    case XML_COMMENT_NODE:
      return XmlNodeKind::Comment;
    case XML_PI_NODE:
      return XmlNodeKind::ProcessingInstruction;
    case XML_DOCUMENT_NODE:
      return XmlNodeKind::Document;
    default:
      return XmlNodeKind::Element;
  }
}

std::string LibXmlNode::name() const {
  switch (kind()) {
    case XmlNodeKind::Text:
      return "#text";
    case XmlNodeKind::CData:
      return "#cdata-section";
    case XmlNodeKind::Comment:
      return "#comment";
    case XmlNodeKind::Document:
      return "#document";
    case XmlNodeKind::ProcessingInstruction:
      return std::string(view(node_->name));
    default:
      return qualifiedName(node_->ns, node_->name);
  }
}

std::string LibXmlNode::text() const { return textOf(node_); }

void LibXmlNode::setContent(std::string_view text) {
  const std::string content(text);
  if (isElement(node_)) {
    tree_->removeChildren(node_);
    if (content.empty()) return;
    xmlNode* child = xmlNewDocText(tree_->document(), xmlText(content.c_str()));
    if (child == nullptr) throw std::bad_alloc();
    tree_->append(node_, child, *tree_);
  } else {
    requireContent(node_, content);
    xmlNodeSetContent(node_, xmlText(content.c_str()));
  }
}

void LibXmlNode::setText(std::string_view text) {
  if (node_->type == XML_DOCUMENT_NODE) throw RuntimeFailure("A document takes no text");
  requireXmlText(text);
  if (node_->type == XML_ATTRIBUTE_NODE) {
    setAttributeValue(reinterpret_cast<xmlAttr*>(node_), text);
  } else {
    setContent(withPlainLineEnds(std::string(text)));
  }
}

std::string LibXmlNode::xml() const { return toXml(node_); }

std::vector<XmlNodePtr> LibXmlNode::childNodes() const { return tree_->childHandles(node_); }

std::size_t LibXmlNode::childCount() const {
  std::size_t count = 0;
  for (const xmlNode* child = childrenOf(node_); child != nullptr; child = child->next) ++count;
  return count;
}

XmlNodePtr LibXmlNode::firstChild() const { return tree_->handleOf(childrenOf(node_)); }

XmlNodePtr LibXmlNode::parentNode() const { return tree_->handleOf(node_->parent); }

XmlNodePtr LibXmlNode::selectSingleNode(std::string_view path) const {
  return tree_->selectFirst(node_, path);
}

std::vector<XmlNodePtr> LibXmlNode::selectNodes(std::string_view path) const {
  return tree_->selectAll(node_, path);
}

void LibXmlNode::requireRoomFor(const LibXmlNode& child) const {
  const bool isDocument = node_->type == XML_DOCUMENT_NODE;
  const bool isAllowed = isDocument ? mayStandInDocument(child.node_->type)
                                    : isElement(node_) && mayStandInElement(child.node_->type);
  if (!isAllowed) throw RuntimeFailure("'" + child.name() + "' cannot stand in '" + name() + "'");
  if (isDocument && isElement(child.node_) && hasElementChild(node_)) {
    throw RuntimeFailure("The document has a document element already");
  }
}

void LibXmlNode::requireNoLoop(const LibXmlNode& child) const {
  for (const xmlNode* place = node_; place != nullptr; place = place->parent) {
    if (place == child.node_) throw RuntimeFailure("A node cannot stand below itself");
  }
}

XmlNodePtr LibXmlNode::appendChild(const XmlNodePtr& child) {
  const LibXmlNode& own = ownKind(child);
  requireRoomFor(own);
  requireNoLoop(own);
  const std::shared_ptr<XmlTree> source = own.tree_;
  tree_->append(node_, own.node_, *source);
  return child;
}

XmlNodePtr LibXmlNode::removeChild(const XmlNodePtr& child) {
  const LibXmlNode& own = ownKind(child);
  if (own.node_->parent != node_ || own.node_->type == XML_ATTRIBUTE_NODE) {
    throw RuntimeFailure("'" + own.name() + "' is no child of '" + name() + "'");
  }
  tree_->takeOut(own.node_);
  return child;
}

std::optional<std::string> LibXmlNode::getNamedItem(std::string_view name) const {
  for (const auto& [ownName, value] : attributes()) {
    if (ownName == name) return value;
  }
  return std::nullopt;
}

std::vector<std::pair<std::string, std::string>> LibXmlNode::attributes() const {
  std::vector<std::pair<std::string, std::string>> result;
  if (!isElement(node_)) return result;
  for (const xmlNs* own = node_->nsDef; own != nullptr; own = own->next) {
    result.emplace_back(declarationName(*own), view(own->href));
  }
  for (const xmlAttr* own = node_->properties; own != nullptr; own = own->next) {
    result.emplace_back(qualifiedName(own->ns, own->name), attributeValue(own));
  }
  return result;
}

void LibXmlNode::setAttribute(std::string_view name, std::string_view value) {
  if (!isElement(node_)) throw RuntimeFailure("'" + this->name() + "' has no attributes");
  setXmlAttribute(node_, name, value);
}

bool LibXmlNode::isSameNode(const XmlNode& other) const {
  const auto* own = dynamic_cast<const LibXmlNode*>(&other);
  return own != nullptr && own->node_ == node_;
}

}  // namespace vlclientui::platform
