// The viewer at an export from a server: the plan before it, and the offers after a break.
#include <QCheckBox>
#include <QLabel>
#include <QPixmap>

#include "apps/viewer/ViewerDocksFixture.h"
#include "client/network/RemoteExportFixture.h"
#include "client/output/KeptPixels.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;

/// The servers of exports, for a test that is one of the viewer already.
class Servers : public RemoteExportFixture {
 public:
  Servers() : RemoteExportFixture(2500) {}
  void TestBody() override {}
  using RemoteExportFixture::proxy_;
};

class ViewerRemoteExport : public ViewerDocksFixture {
 protected:
  void beginExport() {
    pick("ImageService://" + servers_.proxy_->address("/wcs") + "/Photograph");
    seeDrawn();
    client::NetworkAccess::shared().forget();
    openExport();
    for (const auto& [name, text] : {std::pair("uiTxtLeft", "500000"), std::pair("uiTxtRight", "502500"),
                                     std::pair("uiTxtTop", "5000000"), std::pair("uiTxtBottom", "4997500"),
                                     std::pair("uiTxtCols", "2500"), std::pair("uiTxtRows", "2500")}) {
      act([name = name, text = text] { fill(name, text); });
    }
    act([this] { fill("uiTxtFileName", target().string()); });
    act([] { click(exportWindow(), "Command1"); });
    seePlan();
  }
  void seePlan() {
    see("the plan", [] { return window("Before the export").isActiveWindow(); });
  }
  /// Begins it, to be kept, at a server that fails in the middle, and sees it broken off.
  void breakOff() {
    act([this] {
      servers_.proxy_->alwaysAfter(8, "only=GetCoverage;delay=800;status=500");
      window("Before the export").findChild<QCheckBox*>("KeepPartial")->setChecked(true);
      click(window("Before the export"), "BeginExport");
    });
    see("what to do with the pixels", [] { return modalWindow().objectName() == "BrokenOff"; });
  }
  static QString plan(const char* name) {
    return window("Before the export").findChild<QLabel*>(name)->text();
  }
  void seeWritten() {
    see("that it is written", [] { return viewer::person::modalWindow("Exported") != nullptr; });
    act([] { viewer::person::press(window("Exported"), Qt::Key_Escape); });
    seeNoWindow();
  }
  /// That it is written, and nothing is kept of it.
  void seeTheWholeFile() {
    seeWritten();
    run();
    EXPECT_TRUE(fs::exists(target()));
    EXPECT_FALSE(fs::exists(client::keptFolder(target())));
  }
  void closeExportWindow() {
    seeExportWindowInFront();
    act([] { exportWindow().close(); });
    seeNoWindow();
  }
  [[nodiscard]] fs::path target() const { return file("photograph.Tif"); }

  Servers servers_;
};

TEST_F(ViewerRemoteExport, ShowsThePlanFirst) {
  beginExport();
  act([] {
    EXPECT_EQ(plan("PlanRequests"), "9");
    EXPECT_TRUE(plan("PlanFetch").startsWith("about 17.")) << plan("PlanFetch").toStdString();
    EXPECT_TRUE(plan("PlanWrite").startsWith("about 17."));
    EXPECT_TRUE(plan("PlanTime").startsWith("about "));
    EXPECT_FALSE(plan("PlanRoom").isEmpty());
    keepPicture(window("Before the export"), "export-plan");
    click(window("Before the export"), "BeginExport");
  });
  seeTheWholeFile();
}

TEST_F(ViewerRemoteExport, LeavesItWhereThePlanIsRefused) {
  beginExport();
  act([] { viewer::person::press(window("Before the export"), Qt::Key_Escape); });
  closeExportWindow();
  run();
  EXPECT_FALSE(fs::exists(target()));
}

TEST_F(ViewerRemoteExport, CancelReachesARequestThatNobodyAnswers) {
  beginExport();
  act([this] {
    client::NetworkAccess::shared().forget();
    servers_.proxy_->always("hang");
    click(window("Before the export"), "BeginExport");
  });
  see("a request that hangs",
      [this] { return servers_.proxy_->counts().open > 0 && window("Exporting").isVisible(); });
  act([] { click(window("Exporting"), "CancelExport"); });
  closeExportWindow();
  run();
  EXPECT_FALSE(fs::exists(target()));
}

TEST_F(ViewerRemoteExport, OffersToGoOnAfterABreak) {
  beginExport();
  breakOff();
  act([this] {
    keepPicture(modalWindow(), "export-broken-off");
    servers_.proxy_->clear();
    click(modalWindow(), "GoOnNow");
  });
  seeTheWholeFile();
}

TEST_F(ViewerRemoteExport, OffersToGoOnWhenTheSameFileIsExportedAgain) {
  beginExport();
  breakOff();
  act([this] {
    servers_.proxy_->clear();
    click(modalWindow(), "KeepForLater");
  });
  seeMessage("Error", "status 500");
  seeExportWindowInFront();
  act([] { click(exportWindow(), "Command1"); });
  seePlan();
  act([] {
    EXPECT_TRUE(plan("PlanHeadline").contains("broke off earlier")) << plan("PlanHeadline").toStdString();
    EXPECT_LT(plan("PlanRequests").toInt(), 9);
    keepPicture(modalWindow(), "export-go-on");
    click(modalWindow(), "GoOn");
  });
  seeTheWholeFile();
}

TEST_F(ViewerRemoteExport, ThrowsAwayWhatNobodyWants) {
  beginExport();
  breakOff();
  act([] { click(modalWindow(), "DiscardKept"); });
  seeMessage("Error", "status 500");
  seeExportWindowInFront();
  act([] { exportWindow().close(); });
  see("that nothing was exported", [] { return viewer::person::modalWindow("Not exported") != nullptr; });
  act([] { viewer::person::press(modalWindow(), Qt::Key_Escape); });
  seeNoWindow();
  run();
  EXPECT_FALSE(fs::exists(client::keptFolder(target())));
}

}  // namespace
}  // namespace vlclientui::test
