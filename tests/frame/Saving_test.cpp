#include "frame/Saving.h"

#include <gmock/gmock.h>

#include "contracts/News.h"
#include "contracts/RuntimeFailure.h"
#include "headless/HeadlessToolkit.h"
#include "platform/LibXmlService.h"
#include "support/TestSystem.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class TellingToolkit : public headless::HeadlessToolkit, public NewsTeller {
 public:
  void tell(const std::string& text) override { news.push_back(text); }

  std::vector<std::string> news;
};

class Saving : public testing::Test {
 protected:
  Saving() { EXPECT_TRUE(document->loadXml("<Vorlane/>")); }

  TestSystem system;
  platform::LibXmlService xml{platform::PathTranslation(system.home().string())};
  std::unique_ptr<XmlDocument> document = xml.createDocument();
  TellingToolkit toolkit;
};

TEST_F(Saving, TellsThatItSaved) {
  saveAndTell(toolkit, *document, "C:\\a.xml");
  EXPECT_EQ(system.readFile("C:\\a.xml"), "<Vorlane/>");
  EXPECT_THAT(toolkit.news, ElementsAre("Saved to 'C:\\a.xml'"));
}

TEST_F(Saving, TellsWhyItDidNotAndFails) {
  EXPECT_THROW(saveAndTell(toolkit, *document, "C:\\no\\such\\a.xml"), RuntimeFailure);
  EXPECT_THAT(toolkit.news, ElementsAre(StartsWith("Not saved: ")));
}

TEST_F(Saving, OnAToolkitWithoutAPlaceForNewsSavesAllTheSame) {
  headless::HeadlessToolkit mute;
  saveAndTell(mute, *document, "C:\\b.xml");
  EXPECT_EQ(system.readFile("C:\\b.xml"), "<Vorlane/>");
}

}  // namespace
}  // namespace vlclientui::test
