// The viewer on a service of a network.
#include <QPixmap>

#include "apps/ViewerDocksFixture.h"
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

TEST_F(ViewerNetwork, DrawsACoverageAsTheSameRasterOfThisMachine) {
  pickSample("World/EGM96_Geoid");
  seeDrawn();
  const QImage local = map().grab().toImage();
  pickOfServer("World/EGM96_Geoid");
  ASSERT_EQ(window_->services().rowCount(), 2);
  EXPECT_EQ(map().grab().toImage(), local);
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
