#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QListView>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTreeWidget>

#include "viewer/tour/Person.h"
#include "viewer/tour/Tour.h"

// The part of the tour that changes how a mosaic is drawn: by its viewpoint, and by a lock on the metadata
// page.

namespace vlclientui::viewer {
namespace {

namespace fs = std::filesystem;
using person::find;

// The colors of the sheets of the sample, where all three lie over each other.
const QColor western(196, 60, 52);
const QColor northern(70, 150, 74);

QDockWidget& dock(const ViewerWindow& viewer, const QString& name) { return find<QDockWidget>(viewer, name); }

// Beside the viewpoint's mark.
QColor middleOf(const ViewerWindow& viewer) {
  auto& map = find<MapView>(viewer, "MapView");
  const ShownImage& image = map.image();
  if (!image.isShown || map.isDrawingServices()) throw person::Astray("the map shows no image");
  const QPointF upper = map.toPixel(image.corners[0].x, image.corners[0].y);
  const QPointF lower = map.toPixel(image.corners[2].x, image.corners[2].y);
  return map.picture(image.reference).pixelColor(((upper + lower) / 2 * map.devicePixelRatioF()).toPoint());
}

}  // namespace

void Tour::openPane(const QString& name) {
  runner_.act("open the pane " + name,
              [this, name] { viewer_.findChild<QDockWidget*>(name)->toggleViewAction()->trigger(); });
  runner_.see("its page", [this, name] { return find<QWidget>(viewer_, name + "Place").isVisible(); });
}

void Tour::applyPane(const QString& name) {
  runner_.act("click \"Apply\"",
              [this, name] { person::click(find<QPushButton>(dock(viewer_, name), "ApplyProperties")); });
}

void Tour::planProperties() {
  const fs::path overlaps = viewer_.host().installation.catalogue / "Imagery" / "Overlap_Study.VLDef";
  runner_.act("open the mosaic of plain colors", [this, overlaps] {
    viewer_.resize(1280, 800);
    viewer_.openFile(overlaps);
  });
  runner_.see("its picture", [this] { return !viewer_.services().isLoading() && !viewer_.isDrawing(); });
  openPane("PropertiesDock");
  openPane("ViewPointDock");
  runner_.act("zoom to it", [this] { clickTool("ZoomToService"); });
  runner_.act("choose \"Closest to Viewpoint\"", [this] {
    person::choose(find<QComboBox>(dock(viewer_, "PropertiesDock"), "MosaicMethod"), "Closest to Viewpoint");
  });
  runner_.act("go back to the viewer", [this] { viewer_.activateWindow(); });
  applyPane("PropertiesDock");
  runner_.see("the middle sheet on top",
              [this] { return !viewer_.isDrawing() && middleOf(viewer_) == northern; });
  runner_.act("step to the left",
              [this] { person::click(find<QAbstractButton>(dock(viewer_, "ViewPointDock"), "MoveLeft")); });
  applyPane("ViewPointDock");
  runner_.see("the western sheet on top",
              [this] { return !viewer_.isDrawing() && middleOf(viewer_) == western; });
  pictureOfViewer("viewer-viewpoint");
}

void Tour::planLock() {
  runner_.act("close the pane of the viewpoint",
              [this] { viewer_.findChild<QDockWidget*>("ViewPointDock")->toggleViewAction()->trigger(); });
  openPane("MetadataDock");
  runner_.see("the map drawn for its new size", [this] { return !viewer_.isDrawing(); });
  runner_.act("click \"Source\"", [this] {
    auto& tree = find<QTreeWidget>(dock(viewer_, "MetadataDock"), "uiTreeView");
    QTreeWidgetItem* last = nullptr;
    for (QTreeWidgetItemIterator at(&tree); *at != nullptr; ++at) last = *at;
    if (last == nullptr) throw person::Astray("the tree is empty");
    tree.setCurrentItem(last);
    tree.setFocus();
    person::press(tree, Qt::Key_Return);
  });
  runner_.see("the three sheets", [this] {
    return !viewer_.isDrawing() && find<QComboBox>(dock(viewer_, "MetadataDock"), "RasterList").count() == 3;
  });
  // In one go: an image that is drawn in between would have its first sheet picked again.
  runner_.act("pick the second and lock the mosaic to it", [this] {
    auto& rasters = find<QComboBox>(dock(viewer_, "MetadataDock"), "RasterList");
    person::choose(rasters, rasters.itemText(1));
    viewer_.activateWindow();
    person::click(find<QAbstractButton>(dock(viewer_, "MetadataDock"), "Command7"));
  });
  planLockedSheet();
  planEndOfLock();
}

void Tour::planLockedSheet() {
  runner_.see("that sheet alone", [this] {
    const auto service = viewer_.pickedService();
    return !viewer_.isDrawing() && service->ServiceProperties().find("LockRaster") != std::string::npos &&
           middleOf(viewer_) == northern;
  });
  // The page followed the image and shows its first raster.
  runner_.act("pick it again and see its attributes", [this] {
    auto& metadata = dock(viewer_, "MetadataDock");
    auto& rasters = find<QComboBox>(metadata, "RasterList");
    person::choose(rasters, rasters.itemText(1));
    viewer_.activateWindow();
    auto& tabs = find<QTabBar>(metadata, "TabStrip1");
    for (int tab = 0; tab < tabs.count(); ++tab) {
      if (tabs.tabText(tab) == "Attributes") {
        QTest::mouseClick(&tabs, Qt::LeftButton, Qt::NoModifier, tabs.tabRect(tab).center());
      }
    }
  });
  runner_.see("its attributes",
              [this] { return find<QTreeWidget>(dock(viewer_, "MetadataDock"), "ListView1").isVisible(); });
  pictureOfViewer("viewer-lock");
}

void Tour::planEndOfLock() {
  runner_.act("close the panes and remove the mosaic", [this] {
    for (const char* name : {"PropertiesDock", "MetadataDock"}) {
      viewer_.findChild<QDockWidget*>(QLatin1String(name))->close();
    }
    viewer_.findChild<QAction*>("RemoveService")->trigger();
    viewer_.resize(1200, 720);
  });
  runner_.see("three services again", [this] { return viewer_.services().rowCount() == 3; });
  runner_.act("zoom to the land cover again",
              [this] { person::doubleClickRow(find<QListView>(viewer_, "ServiceList"), 1); });
}

}  // namespace vlclientui::viewer
