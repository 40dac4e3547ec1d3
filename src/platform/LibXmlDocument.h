#pragma once

#include <memory>

#include "contracts/XmlDocument.h"
#include "platform/PathTranslation.h"
#include "platform/XmlTree.h"

namespace vlclientui::platform {

class LibXmlDocument final : public XmlDocument {
 public:
  explicit LibXmlDocument(PathTranslation paths);

  [[nodiscard]] bool loadXml(std::string_view text) override;
  [[nodiscard]] bool load(const std::string& path) override;
  void save(const std::string& path) const override;

  [[nodiscard]] XmlNodePtr documentElement() const override;
  [[nodiscard]] std::vector<XmlNodePtr> childNodes() const override;
  [[nodiscard]] XmlNodePtr selectSingleNode(std::string_view path) const override;
  [[nodiscard]] std::vector<XmlNodePtr> selectNodes(std::string_view path) const override;

  [[nodiscard]] XmlNodePtr createElement(std::string_view name) override;
  [[nodiscard]] XmlNodePtr createNode(XmlNodeKind kind, std::string_view name,
                                      std::string_view nameSpace) override;
  XmlNodePtr appendChild(const XmlNodePtr& child) override;

  [[nodiscard]] std::string xml() const override;

 private:
  bool replaceBy(XmlDocPtr document);
  [[nodiscard]] xmlNode* newNode(XmlNodeKind kind, const std::string& name, std::string_view nameSpace) const;

  PathTranslation paths_;
  std::shared_ptr<XmlTree> tree_;
};

}  // namespace vlclientui::platform
