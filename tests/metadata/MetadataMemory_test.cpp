// Long use of the metadata page: documents that were opened are released.

#include <algorithm>
#include <memory>
#include <utility>

#include "frame/ThreadState.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

/// Passes everything on and counts the documents that live.
class CountedDocument : public XmlDocument {
 public:
  CountedDocument(std::unique_ptr<XmlDocument> document, int& living)
      : document_(std::move(document)), living_(living) {
    ++living_;
  }
  ~CountedDocument() override { --living_; }

  bool loadXml(std::string_view text) override { return document_->loadXml(text); }
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
  int& living_;
};

class CountingXml : public XmlService {
 public:
  CountingXml(std::shared_ptr<XmlService> service, int& living)
      : service_(std::move(service)), living_(living) {}
  std::unique_ptr<XmlDocument> createDocument() const override {
    return std::make_unique<CountedDocument>(service_->createDocument(), living_);
  }

 private:
  std::shared_ptr<XmlService> service_;
  int& living_;
};

class MetadataMemory : public test::MetadataFixture {
 protected:
  MetadataMemory() {
    auto counting = std::make_shared<Platform>(currentPlatform());
    counting->xml = std::make_shared<CountingXml>(counting->xml, living);
    setPlatform(counting);
  }

  void clickAround(int clicks) {
    for (int click = 0; click < clicks; ++click) {
      const auto& nodes = controls->uiTreeView.nodes();
      clickNode(nodes[static_cast<std::size_t>(click / 4) % nodes.size()].key);
      controls->TabStrip1.userSelects(static_cast<std::size_t>(click) % 4);
      controls->TabStrip2.userSelects(static_cast<std::size_t>(click) % 3);
      controls->RasterList.userSelects(static_cast<std::size_t>(click) % 2);
    }
  }
  [[nodiscard]] std::ptrdiff_t livingEngines() const {
    const auto& calls = plexa->record->calls;
    const auto released =
        std::ranges::count_if(calls, [](const auto& call) { return call.ends_with(".released"); });
    return static_cast<std::ptrdiff_t>(plexa->madeCount()) - released;
  }

  int living = 0;
};

TEST_F(MetadataMemory, NoDocumentOutlivesItsClick) {
  openPage();
  clickAround(1000);
  EXPECT_EQ(living, 0);
}

TEST_F(MetadataMemory, AThousandClicksKeepFourEngines) {
  openPage();
  clickAround(1000);
  clickNode("Image");
  EXPECT_EQ(livingEngines(), 4);
}

TEST_F(MetadataMemory, TheWindowKeepsFourEnginesAndNoDocumentEither) {
  openOneWindow();
  clickAround(1000);
  clickNode("Image");
  EXPECT_EQ(livingEngines(), 4);
  EXPECT_EQ(living, 0);
}

TEST_F(MetadataMemory, TheTextsOfAServiceDoNotGrow) {
  openPage();
  clickAround(4);
  const MetadataFields before = *fields;
  clickAround(1000);
  EXPECT_EQ(fields->myImageMetaDataXml, before.myImageMetaDataXml);
  EXPECT_EQ(fields->myServiceInfoXml, before.myServiceInfoXml);
  EXPECT_EQ(fields->myMetaDataXml, before.myMetaDataXml);
}

}  // namespace
}  // namespace vlclientui
