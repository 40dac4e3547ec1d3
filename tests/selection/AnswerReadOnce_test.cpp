#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "selection/ImageServicesControl.h"
#include "selection/ImageServicesControlTest.h"

namespace vlclientui::test {
namespace {

using testing::HasSubstr;

/// Counts the documents that were made, and the characters that they read.
class CountedXml : public XmlService {
 public:
  explicit CountedXml(std::shared_ptr<const XmlService> xml) : xml_(std::move(xml)) {}
  [[nodiscard]] std::unique_ptr<XmlDocument> createDocument() const override {
    ++made;
    return xml_->createDocument();
  }

  mutable int made = 0;

 private:
  std::shared_ptr<const XmlService> xml_;
};

TEST_F(ImageServicesControlTest, AnAnswerIsReadOnceHoweverOftenItsListIsShown) {
  server->answer = serverInfoOf({"Folder/A", "B"});
  auto platform = std::make_shared<Platform>(currentPlatform());
  const auto xml = std::make_shared<CountedXml>(platform->xml);
  platform->xml = xml;
  setPlatform(platform);
  show([&](auto&, ImageServicesControl& control) {
    xml->made = 0;
    control.updateListView();
    const int ofRows = xml->made;
    doubleClick("Folder");
    backspace();
    EXPECT_EQ(xml->made, 3 * ofRows);
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
