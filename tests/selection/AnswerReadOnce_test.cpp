#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "selection/ImageServicesControl.h"
#include "selection/ImageServicesControlTest.h"

namespace vlclientui::test {
namespace {

using testing::HasSubstr;

/// Counts how often a text with this part was parsed.
class CountedXml : public XmlService {
 public:
  CountedXml(std::shared_ptr<const XmlService> xml, std::string part)
      : xml_(std::move(xml)), part_(std::move(part)) {}
  [[nodiscard]] std::unique_ptr<XmlDocument> createDocument() const override {
    return std::make_unique<Document>(xml_->createDocument(), *this);
  }

  mutable int parsed = 0;

 private:
  class Document : public XmlDocument {
   public:
    Document(std::unique_ptr<XmlDocument> document, const CountedXml& counts)
        : document_(std::move(document)), counts_(counts) {}
    bool loadXml(std::string_view text) override {
      if (text.find(counts_.part_) != std::string_view::npos) ++counts_.parsed;
      return document_->loadXml(text);
    }
    bool load(const std::string& path) override { return document_->load(path); }
    void save(const std::string& path) const override { document_->save(path); }
    XmlNodePtr documentElement() const override { return document_->documentElement(); }
    std::vector<XmlNodePtr> childNodes() const override { return document_->childNodes(); }
    XmlNodePtr selectSingleNode(std::string_view path) const override {
      return document_->selectSingleNode(path);
    }
    std::vector<XmlNodePtr> selectNodes(std::string_view path) const override {
      return document_->selectNodes(path);
    }
    XmlNodePtr createElement(std::string_view name) override { return document_->createElement(name); }
    XmlNodePtr createNode(XmlNodeKind kind, std::string_view name, std::string_view nameSpace) override {
      return document_->createNode(kind, name, nameSpace);
    }
    XmlNodePtr appendChild(const XmlNodePtr& child) override { return document_->appendChild(child); }
    std::string xml() const override { return document_->xml(); }

   private:
    std::unique_ptr<XmlDocument> document_;
    const CountedXml& counts_;
  };

  std::shared_ptr<const XmlService> xml_;
  std::string part_;
};

TEST_F(ImageServicesControlTest, AnAnswerIsReadOnceHoweverOftenItsListIsShown) {
  server->answer = serverInfoOf({"Folder/A", "B"});
  auto platform = std::make_shared<Platform>(currentPlatform());
  const auto xml = std::make_shared<CountedXml>(platform->xml, "<ServiceProvider>");
  platform->xml = xml;
  setPlatform(platform);
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_EQ(xml->parsed, 1);
    control.updateListView();
    doubleClick("Folder");
    backspace();
    EXPECT_EQ(xml->parsed, 1);
  });
}

TEST_F(ImageServicesControlTest, UpdateListViewShowsTheAnswerThatAHostWroteMeanwhile) {
  const auto answer = [](const std::string& type) {
    return serverInfo(
        {{"A", "<ImageServiceInfo><Name>n</Name><PixelType>" + type + "</PixelType></ImageServiceInfo>"}});
  };
  server->answer = answer("Byte");
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_THAT(plexa->lastListValues(), HasSubstr("Pixel_Type=\"Byte\""));
    control.myServerInfo = answer("Long");
    control.updateListView();
    EXPECT_THAT(plexa->lastListValues(), HasSubstr("Pixel_Type=\"Long\""));
  });
}

}  // namespace
}  // namespace vlclientui::test
