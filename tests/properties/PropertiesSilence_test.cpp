// Every silent end in the properties logic reaches the observer.

#include "properties/OneWindowDialogFixture.h"
#include "properties/PropertiesDocument.h"
#include "support/HeardSilence.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::IsEmpty;

class PropertiesSilence : public OneWindowDialog {};

TEST_F(PropertiesSilence, OfTheDialogObjectIsTold) {
  expectHeard({
      {"ServicePropertiesDialog::readConfiguration: the configuration is no XML document",
       [this] { older()->Init("neither text nor file", nullptr, service); }},
      {"ServicePropertiesDialog::SetProperty: ClientXADef is no XML document",
       [this] { extension()->SetProperty("ClientXADef", "<open"); }},
      {"withViewPoint: a text of 5 bytes is no XML document",
       [this] {
         threadState().gServicePropertiesXml = "<open";
         older()->GetUpdatedProperties();
       }},
      {"writeOrAppend: the properties have no place for ViewPointX",
       [] { static_cast<void>(withViewPoint("<Vorlane/>", "1", "2")); }},
  });
}

TEST_F(PropertiesSilence, OfTheWindowIsTold) {
  expectHeard({
      {"ServicePropertiesDialogForm::showServiceProperties: the form engine shows no page",
       [this] {
         plexa->record->showAnswer = false;
         show();
         plexa->record->showAnswer = true;
       }},
      {"ServicePropertiesDialogForm::lockToRaster: the service allows no lock",
       [this] {
         service->definitions[1] = attributeDefinitionXml("By Attribute");
         show([this] { lock(); });
       }},
  });
}

TEST_F(PropertiesSilence, OfALoadWithoutAnswerIsTold) {
  service->onCall = [this](const std::string& call) {
    if (form().loaded() && call == "ServiceProperties") throw RuntimeFailure("no answer");
  };
  expectHeard({{"ServicePropertiesDialogForm::onLoad: no answer", [this] { show(); }}});
}

TEST_F(PropertiesSilence, OfADocumentThatIsNotSavedIsTold) {
  published() = "<open";
  HeardSilence heard;
  show([this] {
    toolkit->chooseFile("C:\\none\\saved.VLRef");
    controls().SaveAs.userClicks();
  });
  EXPECT_THAT(heard.take(), Contains(testing::HasSubstr("saveProperties")));
}

TEST_F(PropertiesSilence, OfAPageWithoutAWindowToStandInIsTold) {
  for (const auto page : {PropertyPageId::PropertyPageMetadata, PropertyPageId::PropertyPageProperties,
                          PropertyPageId::PropertyPageViewPoint}) {
    expectHeard({{"ServicePropertiesDialog::embed: there is no window 9999 for the page to stand in",
                  [this, page] { EXPECT_EQ(older()->ShowPropertyPage(page, 9999), boolean16True); }}});
  }
}

TEST_F(PropertiesSilence, IsNotTheLotOfAVisitThatGoesWell) {
  HeardSilence heard;
  show([this] { clickOk(); });
  EXPECT_THAT(heard.take(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
