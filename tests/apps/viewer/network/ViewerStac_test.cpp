// The viewer on a catalogue of STAC: the mosaic of three plain colors, as items.
#include <QAbstractItemView>
#include <QLineEdit>
#include <QTabBar>
#include <QTreeWidget>

#include "apps/viewer/ViewerDocksFixture.h"
#include "servers/MapServer.h"

namespace vlclientui::test {
namespace {

using viewer::person::choose;
using viewer::person::find;

class ViewerStac : public ViewerDocksFixture {
 protected:
  [[nodiscard]] static std::string server() {
    static const StaticServer web(serverFilesFolder() + "/stac");
    return web.address() + "/catalog.json";
  }
  void pickItems() {
    pick("ImageService://" + server() + "/" + overlaps);
    seeDrawn();
    window_->zoomToService();
    seeDrawn();
  }
  void orderBy(const QString& attribute, const QString& base) {
    if (!dock("PropertiesDock").isVisible()) open("PropertiesDock");
    chooseMethod("By Attribute");
    choose(find<QComboBox>(dock("PropertiesDock"), "TileOrderField"), attribute);
    window_->activateWindow();
    viewer::person::typeInto(find<QLineEdit>(dock("PropertiesDock"), "TileOrderBase"), base);
    apply("PropertiesDock");
  }
};

TEST_F(ViewerStac, ListsTheCollectionsOfACatalogueThatIsTyped) {
  const auto list = []() -> QAbstractItemView& { return find<QAbstractItemView>(modalWindow(), ""); };
  const auto firstRow = [list] { return list().model()->index(0, 0).data().toString(); };
  act([this] { action("AddServices").trigger(); });
  see("the services", [list] { return list().model()->rowCount() > 0; });
  act([] {
    auto& box = find<QComboBox>(modalWindow(), "uiTxtBoxServerName");
    viewer::person::typeInto(*box.lineEdit(), QString::fromStdString(server()));
    viewer::person::press(*box.lineEdit(), Qt::Key_Return);
  });
  see("the folder of the catalogue",
      [list, firstRow] { return list().model()->rowCount() == 1 && firstRow() == "Imagery"; });
  act([list] { viewer::person::doubleClickRow(list(), 0); });
  see("its collection",
      [list, firstRow] { return firstRow() == "Valley" || list().model()->rowCount() == 2; });
  act([list] {
    keepPicture(modalWindow(), "stac-list");
    viewer::person::clickRow(list(), 1);
    click(modalWindow(), "Info");
  });
  see("the information", [] { return viewer::person::modalWindow("Service Properties") != nullptr; });
  act([] {
    keepPicture(modalWindow(), "stac-information");
    modalWindow().close();
  });
  see("the services again", [] { return modalWindow().findChild<QPushButton*>("Info") != nullptr; });
  act([] { viewer::person::press(modalWindow(), Qt::Key_Escape); });
  seeNoWindow();
  run();
}

TEST_F(ViewerStac, DrawsTheNewestItemOnTop) {
  pickItems();
  EXPECT_EQ(imageColor(), red);
  keepPicture(*window_, "stac-map");
}

TEST_F(ViewerStac, OrdersItemsByTheirDatesAndOtherProperties) {
  pickItems();
  orderBy("datetime", "2020-06-30");
  EXPECT_EQ(imageColor(), blue);
  keepPicture(*window_, "stac-by-date");
  orderBy("datetime", "2019-08-01");
  EXPECT_EQ(imageColor(), green);
  orderBy("eo:cloud_cover", "20");
  EXPECT_EQ(imageColor(), blue);
}

TEST_F(ViewerStac, TellsOfItsItems) {
  pickItems();
  open("MetadataDock");
  seeDrawn();
  auto& nodes = find<QTreeWidget>(dock("MetadataDock"), "uiTreeView");
  ASSERT_EQ(nodes.topLevelItemCount(), 4);
  window_->activateWindow();
  QTest::mouseClick(nodes.viewport(), Qt::LeftButton, Qt::NoModifier,
                    nodes.visualItemRect(nodes.topLevelItem(3)).center());
  QCoreApplication::processEvents();
  const auto& rasters = find<QComboBox>(dock("MetadataDock"), "RasterList");
  ASSERT_EQ(rasters.count(), 3);
  EXPECT_EQ(rasters.itemText(0), "sheet_green - sheet_green");
  EXPECT_EQ(rasters.itemText(2), "sheet_red - sheet_red");
  keepPicture(dock("MetadataDock"), "stac-items");
  auto& tabs = find<QTabBar>(dock("MetadataDock"), "TabStrip1");
  for (int tab = 0; tab < tabs.count(); ++tab) {
    QTest::mouseClick(&tabs, Qt::LeftButton, Qt::NoModifier, tabs.tabRect(tab).center());
    QCoreApplication::processEvents();
    keepPicture(dock("MetadataDock"), "stac-item-" + tabs.tabText(tab));
  }
}

TEST_F(ViewerStac, ExportsTheMosaic) {
  pickItems();
  openExport();
  act([this] { fill("uiTxtFileName", file("items.Tif").string()); });
  act([] { click(exportWindow(), "Command1"); });
  see("the file", [this] { return std::filesystem::exists(file("items.Tif")); });
  see("what came of it", [] { return QApplication::activeModalWidget() != nullptr; });
  act([] { viewer::person::press(*QApplication::activeModalWidget(), Qt::Key_Escape); });
  seeNoWindow();
  run();
}

}  // namespace
}  // namespace vlclientui::test
