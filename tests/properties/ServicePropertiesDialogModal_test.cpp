#include <gmock/gmock.h>

#include "EmbeddedPages.h"

namespace vlclientui::test {
namespace {

using testing::HasSubstr;

class ModalWindows : public EmbeddedPages {};

TEST_F(ModalWindows, OfThePropertiesAreRefusedWithMinusOne) {
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), -1);
  EXPECT_EQ(status(), neverInitialized);
  service->failAtCall = 1;
  older()->Init("", nullptr, service);
  EXPECT_EQ(newer()->ShowPropertiesModalDialog(), -1);
  EXPECT_EQ(status(), initFailed);
}

TEST_F(ModalWindows, OfThePropertiesGetAllDocumentsThisObjectAndTheService) {
  initialize();
  const auto window = dialog->window();
  bool shown = false;
  toolkit->scriptModal([&](Form& form) { shown = &form == window.get(); });
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), 0);
  EXPECT_TRUE(shown);
  EXPECT_EQ(window->myServiceInfoXml, "<Info/>");
  EXPECT_EQ(window->myMetaDataXml, "<Meta/>");
  EXPECT_EQ(window->myImageMetaDataXml, "<Image/>");
  EXPECT_EQ(window->myDialogObject, dialog.get());
  EXPECT_FALSE(window->mySrsReadOnly);
  EXPECT_EQ(window->myImageServiceObject, service);
}

TEST_F(ModalWindows, OfThePropertiesGetTheFlagOfTheConfigurationAlsoAfterAnInitThatSaysNothing) {
  const std::string readOnly =
      "<Vorlane><Client><Init><PropertiesSRSReadonly>True</PropertiesSRSReadonly></Init></Client></Vorlane>";
  ASSERT_EQ(older()->Init(readOnly, nullptr, service), boolean16True);
  ASSERT_EQ(older()->Init("", nullptr, nullptr), boolean16True);
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), 0);
  EXPECT_TRUE(dialog->window()->mySrsReadOnly);
  EXPECT_EQ(dialog->window()->myImageServiceObject, service);
}

TEST_F(ModalWindows, OfThePropertiesAreGoneAfterAClose) {
  initialize();
  close(viewPoint);
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), -1);
  EXPECT_THAT(status(), HasSubstr("Object not set"));
  initialize();
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), 0);
}

TEST_F(ModalWindows, OfThePropertiesOutliveACloseWhileTheyAreOpen) {
  initialize();
  toolkit->scriptModal([this](Form&) { older()->Close(noPage); });
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), 0);
  EXPECT_FALSE(dialog->window());
}

TEST_F(ModalWindows, OfTheViewpointNeedNoInit) {
  bool shown = false;
  toolkit->scriptModal([&shown](Form& form) { shown = form.formName() == "ViewPointDialogForm"; });
  EXPECT_EQ(older()->ShowViewPointModalDialog(), boolean16True);
  EXPECT_TRUE(shown);
  EXPECT_EQ(status(), "");
}

TEST_F(ModalWindows, OfTheViewpointGetTheServiceAndTheImageMetadata) {
  initialize();
  EXPECT_EQ(newer()->ShowViewPointModalDialog(), boolean16True);
  EXPECT_EQ(dialog->viewPointDialog().myImageServiceObject, service);
  EXPECT_EQ(dialog->viewPointDialog().myImageMetaDataXml, "<Image/>");
}

TEST_F(ModalWindows, OfTheViewpointOutliveAnInitWhileTheyAreOpen) {
  initialize();
  toolkit->scriptModal([this](Form&) { initialize(); });
  EXPECT_EQ(older()->ShowViewPointModalDialog(), boolean16True);
}

TEST_F(ModalWindows, EndWithAFailureOfTheToolkit) {
  initialize();
  toolkit->failAt = "runModal";
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), -1);
  EXPECT_EQ(status(), "the toolkit fails at runModal");
  EXPECT_EQ(older()->ShowViewPointModalDialog(), boolean16False);
}

TEST_F(ModalWindows, OfTheViewpointAreRefusedWhileTheyAreOpen) {
  initialize();
  int refused = 0;
  toolkit->scriptModal([&](Form&) {
    EXPECT_EQ(older()->ShowViewPointModalDialog(), boolean16False);
    EXPECT_EQ(status(), Form::alreadyOnShow);
    ++refused;
  });
  EXPECT_EQ(older()->ShowViewPointModalDialog(), boolean16True);
  EXPECT_EQ(refused, 1);
}

TEST_F(ModalWindows, OfThePropertiesTellOfFailuresThatSayNothing) {
  initialize();
  toolkit->scriptModal([](Form&) { throw 17; });
  EXPECT_EQ(older()->ShowPropertiesModalDialog(), -1);
  EXPECT_EQ(status(), "Unknown failure");
}

}  // namespace
}  // namespace vlclientui::test
