#pragma once

#include <memory>
#include <string_view>
#include <unordered_set>

#include <libxml/tree.h>

#include "contracts/XmlDocument.h"
#include "platform/XmlReader.h"

namespace vlclientui::platform {

/// One libxml2 document and everything that belongs to it: its tree, and the trees made for it or taken out
/// of it. Every handle shares its ownership, and so does the document object.
///
/// `_private` of a node points at its handle, so a node has at most one. A node that moves to another
/// document takes the handles below it along, and is never freed before its handle.
class XmlTree : public std::enable_shared_from_this<XmlTree> {
 public:
  /// @param document null for an empty one.
  explicit XmlTree(XmlDocPtr document);
  ~XmlTree();
  XmlTree(const XmlTree&) = delete;
  XmlTree& operator=(const XmlTree&) = delete;

  [[nodiscard]] xmlDoc* document() const { return document_.get(); }
  [[nodiscard]] xmlNode* documentNode() const { return reinterpret_cast<xmlNode*>(document_.get()); }

  /// Null in, null out.
  [[nodiscard]] XmlNodePtr handleOf(xmlNode* node);
  [[nodiscard]] std::vector<XmlNodePtr> handlesOf(const std::vector<xmlNode*>& nodes);
  [[nodiscard]] std::vector<XmlNodePtr> childHandles(const xmlNode* parent);
  [[nodiscard]] XmlNodePtr selectFirst(xmlNode* from, std::string_view path);
  [[nodiscard]] std::vector<XmlNodePtr> selectAll(xmlNode* from, std::string_view path);

  /// Takes over a new node of this document that has no parent.
  XmlNodePtr addDetached(xmlNode* node);
  /// Takes the node out of its parent, together with the name spaces that it needs.
  void takeOut(xmlNode* node);
  /// Takes all children out, and frees those without any handle.
  void removeChildren(xmlNode* parent);
  /// Moves a node of `source`, perhaps this tree, to the end of the parent's children.
  /// @pre the caller keeps `source` alive: moving handles may drop its last other owner.
  void append(xmlNode* parent, xmlNode* child, XmlTree& source);

 private:
  void adopt(xmlNode* root, XmlTree& source);
  void adoptOne(xmlNode* node);

  XmlDocPtr document_;
  std::unordered_set<xmlNode*> detached_;
};

}  // namespace vlclientui::platform
