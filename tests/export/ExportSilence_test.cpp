// Every silent end in the export logic reaches the observer.

#include "export/Envelope.h"
#include "frame/ThreadState.h"
#include "support/ExportFixture.h"
#include "support/HeardSilence.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::StartsWith;

class ExportSilence : public ExportFixture {
 protected:
  [[nodiscard]] std::function<void()> inWindow(const std::function<void(ExportControl&)>& cause,
                                               const std::string& extents = "") {
    return [this, cause, extents] {
      show([&](ExportDialogForm&, ExportControl& control) { cause(control); }, extents);
    };
  }
  /// OK with this in the box of the file name.
  [[nodiscard]] std::function<void()> accepting(const std::string& file) {
    return [this, file] {
      show([&](ExportDialogForm& window, ExportControl& control) {
        control.uiTxtFileName.setText(file);
        window.controls().Command1.userClicks();
      });
    };
  }
  void without(const std::string& element) const {
    std::string& text = plexa->record->templateXml;
    const auto at = text.find("<" + element);
    ASSERT_NE(at, std::string::npos);
    text.erase(at, text.find('>', at) + 1 - at);
  }
};

TEST_F(ExportSilence, IsTold) {
  const auto nothing = [](ExportControl&) {};
  expectHeard({
      {"ExportDialog::readCustomEnvelopes: a text of 6 bytes is no XML document",
       inWindow(nothing, "no xml")},
      {"ExportDialog::readCustomEnvelopes: the extents of the host hold no ExportImageDialog",
       inWindow(nothing, "<Other/>")},
      {"ExportDialog::takeCustomEnvelope: an extent of the host has no Description",
       inWindow(nothing, exportExtents("<CustomEnvelope/>"))},
      {"ExportControl::loadCustomEnvelope: there is no extent 'gone'", inWindow([](ExportControl& control) {
         control.MainCombo.addEntry("gone");
         control.MainCombo.userSelects(control.MainCombo.count() - 1);
       })},
      {R"(ExportControl::leave: Type mismatch: "" is not a number)", inWindow([](ExportControl& control) {
         selectFormat(control, "JPEG");
         edit(control, control.uiTxtCompression, "");
       })},
  });
}

TEST_F(ExportSilence, OfALoadThatStopsIsTold) {
  service->info = serviceInfo({.maxColumns = "40000"});
  expectHeard({{"ExportControl::LoadDefaultExtent: Overflow: 40000 needs more than 16 bits",
                inWindow([](ExportControl&) {})}});
}

TEST_F(ExportSilence, OfARequestIsTold) {
  without("ApproxMB");
  expectHeard({
      {"SetNodeText: the template of the request has no ApproxMB", accepting("C:\\a.tif")},
      {"ExportDialogForm::acceptExport: the service fails",
       [this] {
         service->onCall = [](const std::string& call) {
           if (call == "ExportImage") throw RuntimeFailure("the service fails");
         };
         accepting("C:\\a.tif")();
         service->onCall = nullptr;
       }},
  });
  service->info = serviceInfo({.bands = ""});
  expectHeard({{"ExportControl::OnClose: Object not set: //NBands", accepting("C:\\a.tif")}});
}

TEST_F(ExportSilence, OfAFolderThatCannotBeMadeIsTold) {
  system->folderCreationWorks = false;
  expectHeard(
      {{"ExportControl::MakeDirPath: the folder 'C:\\new' cannot be made", accepting("C:\\new\\a.tif")}});
}

TEST_F(ExportSilence, OfAFolderThatMayNotBeEnteredIsToldToThePerson) {
  std::string notice;
  show([&](ExportDialogForm& window, ExportControl&) {
    window.controls().Command1.userFocuses();
    system->everythingFails = true;
    window.controls().Command1.userClicks();
    system->everythingFails = false;
    notice = window.notice();
  });
  EXPECT_EQ(notice, "the system fails");
}

TEST_F(ExportSilence, OfAFileNameThatIsNoTextIsTold) {
  HeardSilence heard;
  std::string notice;
  show([&](ExportDialogForm& window, ExportControl& control) {
    control.uiTxtFileName.setText("C:\\bell\a.tif");
    window.controls().Command1.userClicks();
    EXPECT_TRUE(window.loaded());
    notice = window.notice();
  });
  EXPECT_THAT(toolkit->messages(), IsEmpty());
  const auto lines = heard.take();
  EXPECT_THAT(lines, Contains("ExportControl::OnClose: " + notice)) << "the person reads the first reason";
  ASSERT_THAT(lines, Contains(StartsWith("ExportControl::OnClose: ")));
  EXPECT_THAT(lines, Contains("ExportDialogForm::exportImage: the request names no file"));
}

TEST_F(ExportSilence, IsNotTheLotOfAnExportThatGoesWell) {
  HeardSilence heard;
  accepting("C:\\a.tif")();
  showPlainly([](auto&, auto&) {});
  EXPECT_THAT(heard.take(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
