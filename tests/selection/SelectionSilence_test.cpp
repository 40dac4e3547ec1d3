// Every silent end in the selection logic reaches the observer.

#include "frame/ThreadState.h"
#include "selection/ListDocuments.h"
#include "selection/SelectionTest.h"
#include "selection/SettingsDocument.h"
#include "support/HeardSilence.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::IsEmpty;

class SelectionSilence : public SelectionTest {
 protected:
  SelectionSilence() {
    server->answer = serverInfoOf({"A"});
    system->writeFile("C:\\Program\\VLClient.Xfdef", "<Vorlane/>");
    system->writeFile(settingsFile, settingsWith({}));
  }

  /// The window is open while the cause runs.
  [[nodiscard]] std::function<void()> inWindow(const std::function<void(ImageServicesControl&)>& cause) {
    return [this, cause] {
      show([&](ImageServicesDialogForm&, ImageServicesControl& control) { cause(control); });
    };
  }
  [[nodiscard]] std::function<void()> withAnswer(const std::string& answer) {
    return [this, answer] {
      server->answer = answer;
      show([](auto&, auto&) {});
    };
  }
};

TEST_F(SelectionSilence, IsTold) {
  expectHeard({
      {"ImageServicesControl::ShowThePlexa: the server call fails",
       [this] {
         server->fails = true;
         show([](auto&, auto&) {});
         server->fails = false;
       }},
      {"namesInAnswer: a text of 5 bytes is no XML document", withAnswer("<open")},
      {"namesInAnswer: the answer of the server lists no service providers", withAnswer("<Vorlane/>")},
      {"ImageServicesControl::rebuildSurface: the form engine shows no list",
       [this] {
         plexa->record->showAnswer = false;
         withAnswer(serverInfoOf({"A"}))();
         plexa->record->showAnswer = true;
       }},
      {"ImageServicesControl::showInformation: no service is picked",
       inWindow([](ImageServicesControl& control) { control.Info.userClicks(); })},
      {"ImageServicesControl::showInformationWindow: the list of services has no window",
       inWindow([this](ImageServicesControl& control) {
         click("A");
         control.Info.userClicks();
       })},
      {"ImageServicesControl::browseForFile: 'C:\\x.tif' is neither a .VLRef nor a .VLDef file",
       inWindow([this](ImageServicesControl& control) {
         toolkit->chooseFile("C:\\x.tif");
         control.Browse.userClicks();
       })},
  });
}

TEST_F(SelectionSilence, OfTheDocumentsIsTold) {
  expectHeard({
      {"readMruServers: '" + settingsFile + "' cannot be read as an XML document",
       [this] {
         system->writeFile(settingsFile, "<Vorlane>");
         EXPECT_THAT(readMruServers("C:\\Documents\\Ostrel\\Vor Lane"), IsEmpty());
       }},
      {"ImageServicesDialog::passExtentToWindow: a text of 6 bytes is no XML document",
       [this] { show([](auto&, auto&) {}, "no xml"); }},
  });
}

TEST_F(SelectionSilence, OfOkThatAcceptsNothingIsTold) {
  HeardSilence heard;
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    toolkit->chooseFile("C:\\bell\a.VLRef");
    control.Browse.userClicks();
    window.controls().uibtnok.userClicks();
    EXPECT_TRUE(window.loaded());
    EXPECT_FALSE(window.notice().empty());
  });
  EXPECT_THAT(heard.take(), Contains(testing::StartsWith("ImageServicesDialogForm::acceptSelection: ")));
}

TEST_F(SelectionSilence, OfADoubleClickInTheListIsTheNoticeOfTheWindow) {
  server->answer = serverInfoOf({"A/b&amp;c", "D"});
  HeardSilence heard;
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    doubleClick("A");
    const std::string notice = window.notice();
    EXPECT_FALSE(notice.empty());
    EXPECT_THAT(heard.take(), Contains("ImageServicesControl::myPlexa_Notify: " + notice));
    EXPECT_EQ(control.ListBox.count(), 0U);
    click("D");
    EXPECT_EQ(window.notice(), "");
  });
}

TEST_F(SelectionSilence, IsNotTheLotOfADoubleClickThatMayAddNothing) {
  for (const std::string& answer : {std::string(), serverInfoOf({})}) {
    server->answer = answer;
    show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
      doubleClick(answer.empty() ? "(Server not found)" : "(empty)");
      backspace();
      EXPECT_EQ(control.ListBox.count(), 0U);
      EXPECT_EQ(window.notice(), "");
    });
  }
  server->answer = serverInfoOf({"A"});
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    doubleClick("A");
    doubleClick("A");
    EXPECT_EQ(control.ListBox.count(), 1U);
    EXPECT_EQ(window.notice(), "");
  });
}

TEST_F(SelectionSilence, IsNotTheLotOfAVisitThatGoesWell) {
  HeardSilence heard;
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    doubleClick("A");
    control.Browse.userClicks();
    window.controls().uibtnok.userClicks();
  });
  EXPECT_THAT(heard.take(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
