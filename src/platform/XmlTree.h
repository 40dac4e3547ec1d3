#pragma once

#include <memory>
#include <string_view>
#include <unordered_set>

#include <libxml/tree.h>

#include "contracts/XmlDocument.h"
#include "platform/XmlReader.h"

namespace vlclientui::platform {

/// One document of libxml2 with everything that belongs to it: its tree and the trees that were made for it
/// or taken out of it and stand nowhere. Every handle and the document object share the ownership of it.
///
/// A node that has a handle knows it (`_private`), so that there is at most one handle per node, and a node
/// that moves to another document takes the handles below it along. A node with a handle is never freed
/// before its handle is gone.
class XmlTree : public std::enable_shared_from_this<XmlTree> {
 public:
  /// @param document null for an empty one.
  explicit XmlTree(XmlDocPtr document);
  ~XmlTree();
  XmlTree(const XmlTree&) = delete;
  XmlTree& operator=(const XmlTree&) = delete;

  [[nodiscard]] xmlDoc* document() const { return document_.get(); }
  [[nodiscard]] xmlNode* documentNode() const { return reinterpret_cast<xmlNode*>(document_.get()); }

  /// Null for null.
  [[nodiscard]] XmlNodePtr handleOf(xmlNode* node);
  [[nodiscard]] std::vector<XmlNodePtr> handlesOf(const std::vector<xmlNode*>& nodes);
  [[nodiscard]] std::vector<XmlNodePtr> childHandles(const xmlNode* parent);
  [[nodiscard]] XmlNodePtr selectFirst(xmlNode* from, std::string_view path);
  [[nodiscard]] std::vector<XmlNodePtr> selectAll(xmlNode* from, std::string_view path);

  /// Takes over a new node of this document that stands nowhere.
  XmlNodePtr addDetached(xmlNode* node);
  /// The node stands nowhere afterwards, with the name spaces that it needs.
  void takeOut(xmlNode* node);
  /// Takes all children out; frees those that nobody has a handle into.
  void removeChildren(xmlNode* parent);
  /// Moves a node of `source`, which may be this tree, to the end of the parent's children.
  /// @pre the caller keeps `source` alive: moving handles may drop the last other owner of it.
  void append(xmlNode* parent, xmlNode* child, XmlTree& source);

 private:
  void adopt(xmlNode* root, XmlTree& source);
  void adoptOne(xmlNode* node);

  XmlDocPtr document_;
  std::unordered_set<xmlNode*> detached_;
};

}  // namespace vlclientui::platform
