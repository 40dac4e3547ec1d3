// The viewer on a service of a network.
#include <QAbstractItemView>
#include <QPixmap>
#include <QThread>
#include <algorithm>
#include <cstdlib>

#include "apps/viewer/ViewerDocksFixture.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"

namespace vlclientui::test {
namespace {

class ViewerNetwork : public ViewerDocksFixture {
 protected:
  void pickOfServer(const std::string& name) {
    pick("ImageService://" + MapServer::shared().coverages() + "/" + name);
    seeDrawn();
  }
};

/// Before the server stands something that keeps its answers back when it is told to.
class ViewerWaitingForPixels : public ViewerDocksFixture {
 protected:
  ViewerWaitingForPixels() {
    window_->resize(800, 600);
    pick("ImageService://" + proxy_.address("/wcs") + "/World/EGM96_Geoid");
    seeDrawn();
  }
  /// Of a part, in pixels that were not needed for the whole.
  void seeItWait() {
    proxy_.always("hold");
    map().showExtent({-20, 0, -10, 8});
    ASSERT_TRUE(QTest::qWaitFor([this] { return proxy_.counts().open > 0; }, 30'000));
  }

  FaultProxy proxy_{"127.0.0.1:" + std::to_string(MapServer::shared().port())};
};

TEST_F(ViewerWaitingForPixels, OpensItsPagesMeanwhile) {
  seeItWait();
  open("PropertiesDock");
  EXPECT_TRUE(viewer::person::find<QAbstractButton>(dock("PropertiesDock"), "ApplyProperties").isVisible());
  EXPECT_TRUE(window_->isDrawing());
  EXPECT_GT(proxy_.counts().open, 0U);
}

TEST_F(ViewerWaitingForPixels, DrawsAnotherServiceMeanwhile) {
  seeItWait();
  pickSample(overlaps);
  window_->zoomToService();
  EXPECT_TRUE(QTest::qWaitFor([this] { return imageColor() == blue; }, 30'000));
  EXPECT_TRUE(map().image().reference.endsWith(overlaps));
}

TEST_F(ViewerWaitingForPixels, GivesThemUpWhenTheMapMovesOn) {
  seeItWait();
  proxy_.always("");
  map().zoom(2);
  seeDrawn();
  EXPECT_TRUE(map().image().isShown);
}

TEST_F(ViewerWaitingForPixels, GivesThemUpWhenTheWindowGoes) {
  seeItWait();
  window_.reset();
  EXPECT_GT(proxy_.counts().open, 0U);
}

// As many as are read side by side would keep all others waiting.
TEST_F(ViewerNetwork, GivesUpServicesThatAreRemovedFromTheListWhileTheyAreRead) {
  const FaultProxy proxy("127.0.0.1:" + std::to_string(MapServer::shared().port()));
  proxy.always("hold");
  std::string names;
  for (int i = 0; i < QThread::idealThreadCount(); ++i) {
    names += "<Name>ImageService://" + proxy.address("/wcs?nr=" + std::to_string(i)) + "/a</Name>";
  }
  window_->takeSelectedServices("<SelectedImageServices>" + names + "</SelectedImageServices>");
  ASSERT_TRUE(QTest::qWaitFor([&] { return proxy.counts().open > 0; }, 30'000));
  while (window_->services().rowCount() > 0) action("RemoveService").trigger();
  pickSample(overlaps);
  EXPECT_GT(proxy.counts().open, 0U);
}

// The server makes its own smaller pixels, so that colors differ by little.
double likeness(const QImage& one, const QImage& other) {
  if (one.size() != other.size()) return 0;
  qint64 alike = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const QColor a = one.pixelColor(x, y);
      const QColor b = other.pixelColor(x, y);
      const int difference = std::max(
          {std::abs(a.red() - b.red()), std::abs(a.green() - b.green()), std::abs(a.blue() - b.blue())});
      if (difference <= 24) ++alike;
    }
  }
  return static_cast<double>(alike) / (one.width() * static_cast<double>(one.height()));
}

TEST_F(ViewerNetwork, DrawsACoverageAsTheSameRasterOfThisMachine) {
  pickSample("World/EGM96_Geoid");
  seeDrawn();
  const QImage local = map().grab().toImage();
  pickOfServer("World/EGM96_Geoid");
  ASSERT_EQ(window_->services().rowCount(), 2);
  seeDrawn();
  EXPECT_GT(likeness(map().grab().toImage(), local), 0.95);
}

TEST_F(ViewerNetwork, ListsTheFoldersOfAServerThatIsTyped) {
  const auto list = []() -> QAbstractItemView& {
    return viewer::person::find<QAbstractItemView>(modalWindow(), "");
  };
  const auto firstRow = [list] { return list().model()->index(0, 0).data().toString(); };
  act([this] { action("AddServices").trigger(); });
  see("the services", [list] { return list().model()->rowCount() > 0; });
  act([] {
    auto& box = viewer::person::find<QComboBox>(modalWindow(), "uiTxtBoxServerName");
    viewer::person::typeInto(*box.lineEdit(), QString::fromStdString(MapServer::shared().coverages()));
    viewer::person::press(*box.lineEdit(), Qt::Key_Return);
  });
  see("the folders of the server", [list] { return list().model()->rowCount() == 4; });
  act([list, firstRow] {
    EXPECT_EQ(firstRow(), "Elevation");
    keepPicture(modalWindow(), "network-folders");
    viewer::person::doubleClickRow(list(), 0);
  });
  see("its services", [list] { return list().model()->rowCount() == 2; });
  act([list, firstRow] {
    EXPECT_EQ(firstRow(), "Shaded_Relief_30m");
    viewer::person::clickRow(list(), 1);
    click(modalWindow(), "Info");
  });
  see("the information", [] { return viewer::person::modalWindow("Service Properties") != nullptr; });
  act([] {
    keepPicture(modalWindow(), "network-information");
    modalWindow().close();
  });
  see("the services again", [] { return modalWindow().findChild<QPushButton*>("Info") != nullptr; });
  act([] { viewer::person::press(modalWindow(), Qt::Key_Escape); });
  seeNoWindow();
  run();
}

TEST_F(ViewerNetwork, ExportsACoverage) {
  pickOfServer("Elevation/Terrain_30m");
  openExport();
  act([this] { fill("uiTxtFileName", file("terrain.Tif").string()); });
  act([] { click(exportWindow(), "Command1"); });
  see("the file", [this] { return std::filesystem::exists(file("terrain.Tif")); });
  see("what came of it", [] { return QApplication::activeModalWidget() != nullptr; });
  act([] { viewer::person::press(*QApplication::activeModalWidget(), Qt::Key_Escape); });
  seeNoWindow();
  run();
}

}  // namespace
}  // namespace vlclientui::test
