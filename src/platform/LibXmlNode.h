#pragma once

#include <memory>

#include <libxml/tree.h>

#include "contracts/XmlDocument.h"
#include "platform/XmlTree.h"

namespace vlclientui::platform {

/// A node's only handle; its tree makes it.
class LibXmlNode final : public XmlNode, public std::enable_shared_from_this<LibXmlNode> {
 public:
  LibXmlNode(std::shared_ptr<XmlTree> tree, xmlNode* node);
  ~LibXmlNode() override;
  LibXmlNode(const LibXmlNode&) = delete;
  LibXmlNode& operator=(const LibXmlNode&) = delete;

  [[nodiscard]] XmlNodeKind kind() const override;
  [[nodiscard]] std::string name() const override;
  [[nodiscard]] std::string text() const override;
  void setText(std::string_view text) override;
  [[nodiscard]] std::string xml() const override;

  [[nodiscard]] std::vector<XmlNodePtr> childNodes() const override;
  [[nodiscard]] std::size_t childCount() const override;
  [[nodiscard]] XmlNodePtr firstChild() const override;
  [[nodiscard]] XmlNodePtr parentNode() const override;

  [[nodiscard]] XmlNodePtr selectSingleNode(std::string_view path) const override;
  [[nodiscard]] std::vector<XmlNodePtr> selectNodes(std::string_view path) const override;

  XmlNodePtr appendChild(const XmlNodePtr& child) override;
  XmlNodePtr removeChild(const XmlNodePtr& child) override;

  [[nodiscard]] std::optional<std::string> getNamedItem(std::string_view name) const override;
  [[nodiscard]] std::vector<std::pair<std::string, std::string>> attributes() const override;
  void setAttribute(std::string_view name, std::string_view value) override;

  [[nodiscard]] bool isSameNode(const XmlNode& other) const override;

  /// Moves the node to another document.
  void moveTo(std::shared_ptr<XmlTree> tree) { tree_ = std::move(tree); }

 private:
  void requireRoomFor(const LibXmlNode& child) const;
  void requireNoLoop(const LibXmlNode& child) const;
  void setContent(std::string_view text);

  std::shared_ptr<XmlTree> tree_;
  xmlNode* node_;
};

}  // namespace vlclientui::platform
