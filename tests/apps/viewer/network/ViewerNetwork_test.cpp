// The viewer on a service of a network.
#include <QPixmap>
#include <QThread>
#include <QTreeWidget>
#include <algorithm>
#include <cstdlib>

#include "apps/viewer/network/ViewerOfServers.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"

namespace vlclientui::test {
namespace {

class ViewerNetwork : public ViewerOfServers {
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
    window_->resize(800, 450);
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

TEST_F(ViewerWaitingForPixels, TellsThatValuesAreReadUntilTheyAreGivenUp) {
  action("ShowValues").trigger();
  seeItWait();
  QTest::keyClick(&map(), Qt::Key_Return);
  auto& tree = *window_->findChild<QTreeWidget*>("Values");
  ASSERT_EQ(tree.topLevelItemCount(), 1);
  EXPECT_EQ(tree.topLevelItem(0)->text(1), "reading\u2026");
  click(dock("ValuesDock"), "CancelValues");
  EXPECT_EQ(tree.topLevelItem(0)->text(1), "canceled");
}

TEST_F(ViewerWaitingForPixels, TellsTheValuesThatTheServerHas) {
  action("ShowValues").trigger();
  seeDrawn();
  QTest::keyClick(&map(), Qt::Key_Return);
  auto& tree = *window_->findChild<QTreeWidget*>("Values");
  ASSERT_EQ(tree.topLevelItemCount(), 1);
  ASSERT_TRUE(QTest::qWaitFor([&] { return tree.topLevelItem(0)->childCount() > 0; }, 30'000));
  bool isNumber = false;
  tree.topLevelItem(0)->child(0)->text(1).split(' ').first().toDouble(&isNumber);
  EXPECT_TRUE(isNumber) << tree.topLevelItem(0)->child(0)->text(1).toStdString();
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
  typeServer(MapServer::shared().coverages());
  see("the folders of the server", [] { return listedServices().model()->rowCount() == 4; });
  act([] {
    EXPECT_EQ(firstService(), "Elevation");
    keepPicture(modalWindow(), "network-folders");
    viewer::person::doubleClickRow(listedServices(), 0);
  });
  see("its services", [] { return listedServices().model()->rowCount() == 2; });
  act([] { EXPECT_EQ(firstService(), "Shaded_Relief_30m"); });
  lookAtInformationAndLeave("network-information");
  run();
}

TEST_F(ViewerNetwork, ExportsACoverage) {
  pickOfServer("Elevation/Terrain_30m");
  exportTo("terrain.Tif");
  run();
}

}  // namespace
}  // namespace vlclientui::test
