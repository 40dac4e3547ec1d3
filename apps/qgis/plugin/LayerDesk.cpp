#include "qgis/plugin/LayerDesk.h"

#include <QDesktopServices>
#include <QMenu>
#include <QUrl>
#include <exception>
#include <utility>

#include <qgisinterface.h>
#include <qgsmapcanvas.h>
#include <qgsproject.h>

#include "contracts/RuntimeFailure.h"
#include "host/HandedOver.h"
#include "host/ShownText.h"
#include "qgis/plugin/CanvasPlaces.h"
#include "qgis/plugin/ServiceLayers.h"
#include "viewer/docks/WaitingInDocks.h"
#include "viewer/export/ExportResult.h"
#include "viewer/export/ExportServices.h"
#include "viewer/window/EditsQuestion.h"

namespace vlclientui::qgis {
namespace {

constexpr int pageWidth = 460;

QMainWindow& windowOf(QgisInterface& qgis) { return *qobject_cast<QMainWindow*>(qgis.mainWindow()); }

}  // namespace

LayerDesk::LayerDesk(host::ComposedHost host, QgisInterface& qgis)
    : host_(std::move(host)),
      qgis_(qgis),
      image_(new viewer::PickedImage(
          [composed = host_](const QString& reference, const QString& title) {
            return std::make_shared<viewer::PickedService>(composed, reference.toStdString(), title);
          },
          this)),
      docks_(std::make_unique<viewer::PropertyDocks>(
          host_, windowOf(qgis), [this](const std::string& properties) { return drawWith(properties); })) {
  settleDocks();
  connect(image_, &viewer::PickedImage::closed, this, [this] {
    docks_->showPagesOf(nullptr);
    emit changed();
  });
  connect(image_, &viewer::PickedImage::opened, this, [this] {
    docks_->showPagesOf(image_->service());
    emit changed();
  });
  connect(image_, &viewer::PickedImage::drawn, this, [this] { docks_->followImage(); });
  connect(image_, &viewer::PickedImage::failed, this,
          [this](const QString& problem) { emit complained(tr("Image service"), problem); });
  connect(docks_.get(), &viewer::PropertyDocks::complained, this,
          [this](const QString& problem) { emit complained(tr("Image service"), problem); });
  connect(&qgis_, &QgisInterface::currentLayerChanged, this, &LayerDesk::pick);
  connect(qgis_.mapCanvas(), &QgsMapCanvas::extentsChanged, this, &LayerDesk::followCanvas);
  connect(QgsProject::instance(), qOverload<QgsMapLayer*>(&QgsProject::layerWillBeRemoved), this,
          [this](QgsMapLayer* gone) {
            if (gone == layer_) pickNow(nullptr);
          });
  followCanvas();
  pick(qgis_.activeLayer());
}

LayerDesk::~LayerDesk() {
  image_->disconnect(this);
  docks_.reset();
  for (const QPointer<QDockWidget>& pane : panes_) delete pane.data();
}

// QGIS keeps places of panes by their names, and lists them in a menu of its own.
void LayerDesk::settleDocks() {
  auto* const panels = windowOf(qgis_).findChild<QMenu*>(QStringLiteral("mPanelMenu"));
  for (QAction* const toggle : docks_->toggles()) {
    auto* const pane = qobject_cast<QDockWidget*>(toggle->parent());
    if (pane == nullptr) continue;
    panes_.append(pane);
    pane->setObjectName(QStringLiteral("VLClientUI") + pane->objectName());
    pane->setWindowTitle(tr("Service %1").arg(pane->windowTitle().toLower()));
    windowOf(qgis_).restoreDockWidget(pane);
    if (panels != nullptr) panels->addAction(toggle);
    // As wide as its page wants to be, which QGIS's area may not be yet.
    connect(toggle, &QAction::triggered, pane, [this, pane](bool isOpened) {
      if (isOpened && pane->width() < pageWidth)
        windowOf(qgis_).resizeDocks({pane}, {pageWidth}, Qt::Horizontal);
    });
  }
}

void LayerDesk::pick(QgsMapLayer* wanted) {
  QgsRasterLayer* const layer = serviceLayer(wanted);
  if (layer == layer_ && layer != nullptr) return;
  if (layer_ != nullptr && docks_->waits()) {
    QMetaObject::invokeMethod(this, &LayerDesk::askBeforePicking, Qt::QueuedConnection);
    return;
  }
  pickNow(layer);
}

void LayerDesk::pickNow(QgsRasterLayer* wanted) {
  layer_ = wanted;
  if (wanted == nullptr) return image_->pick({}, {}, {});
  const LayerSource source = sourceOf(*wanted);
  image_->pick(QString::fromStdString(source.reference), wanted->name(), source.properties);
}

void LayerDesk::askBeforePicking() {
  QgsRasterLayer* const wanted = serviceLayer(qgis_.activeLayer());
  if (wanted == layer_ && wanted != nullptr) return;
  if (settleEdits()) return pickNow(serviceLayer(qgis_.activeLayer()));
  if (layer_) qgis_.setActiveLayer(layer_);
}

bool LayerDesk::settleEdits() {
  if (!layer_ || !docks_->waits()) return true;
  switch (viewer::askAboutEdits(layer_->name(), qgis_.mainWindow())) {
    case viewer::EditsWish::Apply:
      docks_->apply();
      return !docks_->waits();
    case viewer::EditsWish::Discard:
      docks_->revert();
      return true;
    case viewer::EditsWish::Stay:
      break;
  }
  return false;
}

// The service's documents tell of the image that the map shows.
void LayerDesk::followCanvas() {
  const QgsMapCanvas& canvas = *qgis_.mapCanvas();
  image_->setView(inDegrees(canvas.extent(), canvas.mapSettings().destinationCrs()),
                  canvas.mapSettings().outputSize());
}

bool LayerDesk::drawWith(const std::string& properties) {
  if (!layer_ || !image_->service()) return false;
  try {
    image_->follow(host::withoutBlankViewPoint(properties, *host_.platform->xml));
    drawLayerBy(*layer_, image_->service()->ServiceProperties());
    emit said(tr("Service properties applied"));
    return true;
  } catch (const std::exception& failure) {
    emit complained(tr("Service properties"), QString::fromStdString(host::shownText(host_, failure.what())));
    return false;
  }
}

void LayerDesk::changeIn(const std::function<bool(IOVLServicePropertiesDialog&)>& showWindow) {
  const auto service = image_->service();
  if (!service) return;
  try {
    const viewer::WaitingInDocks ofDocks = viewer::takeHandedOver();
    const auto dialog = viewer::openPropertiesDialog(service);
    const bool isChosen = showWindow(*dialog);
    if (service != image_->service()) return;
    if (isChosen && drawWith(dialog->GetUpdatedProperties())) return docks_->revert();
    viewer::giveBack(ofDocks);
  } catch (const std::exception& failure) {
    emit complained(tr("Service properties"), QString::fromStdString(host::shownText(host_, failure.what())));
  }
}

void LayerDesk::showProperties() {
  changeIn([](IOVLServicePropertiesDialog& dialog) {
    const auto outcome = dialog.ShowPropertiesModalDialog();
    if (outcome < 0) throw RuntimeFailure(dialog.Status());
    return outcome == 1;
  });
}

// The window returns nothing; its viewpoint comes back with the properties.
void LayerDesk::showViewPoint() {
  changeIn([](IOVLServicePropertiesDialog& dialog) {
    return dialog.ShowViewPointModalDialog() != boolean16False && !host::handedOver().viewPointX.empty();
  });
}

void LayerDesk::exportImage(const std::vector<host::NamedPlace>& places) {
  using Attempt = viewer::PickedService::Attempt;
  if (!layer_) return;
  const LayerSource source = sourceOf(*layer_);
  try {
    const auto outcome = viewer::exportService(host_, source.reference, layer_->name(), source.properties,
                                               places, QgsProject::instance()->absolutePath().toStdString());
    const bool isTried = outcome.attempt == Attempt::Written || outcome.attempt == Attempt::Failed;
    if (outcome.request.empty() || !isTried) return emit said(tr("Nothing exported"));
    const QString file = QString::fromStdString(outcome.file.string());
    viewer::ExportResult window(outcome, qgis_.mainWindow());
    connect(&window, &viewer::ExportResult::addToMapWanted, this, [&] { emit fileWanted(file); });
    connect(&window, &viewer::ExportResult::openFolderWanted, this, [&] {
      QDesktopServices::openUrl(
          QUrl::fromLocalFile(QString::fromStdString(outcome.file.parent_path().string())));
    });
    window.exec();
  } catch (const std::exception& failure) {
    emit complained(tr("Export"), QString::fromStdString(host::shownText(host_, failure.what())));
  }
}

}  // namespace vlclientui::qgis
