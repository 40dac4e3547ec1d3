// The viewer on a catalogue of STAC: the mosaic of three plain colors, as items.
#include <QLineEdit>
#include <QTabBar>
#include <QTreeWidget>

#include "apps/viewer/network/ViewerOfServers.h"
#include "servers/MapServer.h"

namespace vlclientui::test {
namespace {

using viewer::person::choose;
using viewer::person::find;

class ViewerStac : public ViewerOfServers {
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
  typeServer(server());
  see("the folder of the catalogue",
      [] { return listedServices().model()->rowCount() == 1 && firstService() == "Imagery"; });
  act([] { viewer::person::doubleClickRow(listedServices(), 0); });
  see("its collection",
      [] { return firstService() == "Valley" || listedServices().model()->rowCount() == 2; });
  act([] { keepPicture(modalWindow(), "stac-list"); });
  lookAtInformationAndLeave("stac-information");
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
  exportTo("items.Tif");
  run();
}

}  // namespace
}  // namespace vlclientui::test
