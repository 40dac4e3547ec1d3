// The viewer on a service of a network.
#include <QAbstractItemView>
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
