#include "platform/LibXmlDocument.h"

#include "contracts/RuntimeFailure.h"
#include "platform/WholeFile.h"
#include "platform/XmlNames.h"
#include "platform/XmlWalk.h"
#include "platform/XmlWriter.h"

namespace vlclientui::platform {
namespace {

/// An attribute without an element sees no declarations, so its prefix means nothing yet.
xmlNode* newAttribute(xmlDoc* document, const std::string& name, std::string_view nameSpace) {
  const QualifiedName parts = parseQualifiedName(name);
  if (!parts.prefix.empty() || !nameSpace.empty()) {
    throw RuntimeFailure("An attribute in a name space is made on its element");
  }
  return reinterpret_cast<xmlNode*>(xmlNewDocProp(document, xmlText(parts.local.c_str()), nullptr));
}

xmlNode* newInstruction(xmlDoc* document, const std::string& name) {
  requireInstructionName(name);
  return xmlNewDocPI(document, xmlText(name.c_str()), nullptr);
}

}  // namespace

LibXmlDocument::LibXmlDocument(PathTranslation paths)
    : paths_(std::move(paths)), tree_(std::make_shared<XmlTree>(nullptr)) {}

bool LibXmlDocument::replaceBy(XmlDocPtr document) {
  const bool isLoaded = document != nullptr;
  tree_ = std::make_shared<XmlTree>(std::move(document));
  return isLoaded;
}

bool LibXmlDocument::loadXml(std::string_view text) { return replaceBy(readXmlText(text)); }

bool LibXmlDocument::load(const std::string& path) {
  std::optional<std::string> content;
  try {
    content = readWholeFile(paths_.toNative(path));
  } catch (const RuntimeFailure&) {
    // A path that cannot be translated is as good as a missing file.
  }
  return replaceBy(content ? readXmlBytes(*content) : nullptr);
}

void LibXmlDocument::save(const std::string& path) const {
  const std::string file = paths_.toNative(path);
  // What did not parse is empty, and would take the content from a file that has one.
  if (!documentElement()) throw RuntimeFailure("An empty document cannot be saved to '" + file + "'");
  writeWholeFile(file, xml());
}

XmlNodePtr LibXmlDocument::documentElement() const {
  return tree_->handleOf(xmlDocGetRootElement(tree_->document()));
}

std::vector<XmlNodePtr> LibXmlDocument::childNodes() const {
  return tree_->childHandles(tree_->documentNode());
}

XmlNodePtr LibXmlDocument::selectSingleNode(std::string_view path) const {
  return tree_->selectFirst(tree_->documentNode(), path);
}

std::vector<XmlNodePtr> LibXmlDocument::selectNodes(std::string_view path) const {
  return tree_->selectAll(tree_->documentNode(), path);
}

XmlNodePtr LibXmlDocument::createElement(std::string_view name) {
  return createNode(XmlNodeKind::Element, name, "");
}

XmlNodePtr LibXmlDocument::createNode(XmlNodeKind kind, std::string_view name, std::string_view nameSpace) {
  return tree_->addDetached(newNode(kind, std::string(name), nameSpace));
}

xmlNode* LibXmlDocument::newNode(XmlNodeKind kind, const std::string& name,
                                 std::string_view nameSpace) const {
  xmlDoc* document = tree_->document();
  switch (kind) {
    case XmlNodeKind::Element:
      return newElement(document, name, nameSpace);
    case XmlNodeKind::Attribute:
      return newAttribute(document, name, nameSpace);
    case XmlNodeKind::Text:
      return xmlNewDocText(document, nullptr);
    case XmlNodeKind::CData:
      return xmlNewCDataBlock(document, nullptr, 0);
    case XmlNodeKind::Comment:
      return xmlNewDocComment(document, nullptr);
    case XmlNodeKind::ProcessingInstruction:
      return newInstruction(document, name);
    default:
      throw RuntimeFailure("A document cannot be created as a node");
  }
}

XmlNodePtr LibXmlDocument::appendChild(const XmlNodePtr& child) {
  return tree_->handleOf(tree_->documentNode())->appendChild(child);
}

std::string LibXmlDocument::xml() const { return toXml(tree_->documentNode()); }

}  // namespace vlclientui::platform
