#include "qgis/plugin/LayerDesk.h"

#include <QDesktopServices>
#include <QMenu>
#include <QUrl>
#include <algorithm>
#include <exception>
#include <utility>

#include <qgisinterface.h>
#include <qgsmapcanvas.h>
#include <qgsproject.h>

#include "contracts/RuntimeFailure.h"
#include "host/HandedOver.h"
#include "host/RunDialogs.h"
#include "host/ShownText.h"
#include "qgis/plugin/CanvasPlaces.h"
#include "qgis/plugin/MetadataWindow.h"
#include "qgis/plugin/ServiceLayers.h"
#include "viewer/docks/WaitingInDocks.h"
#include "viewer/export/ExportResult.h"
#include "viewer/export/ExportServices.h"
#include "viewer/export/SaveJob.h"
#include "viewer/waiting/DoneBeside.h"
#include "viewer/window/EditsQuestion.h"

namespace vlclientui::qgis {
namespace {

constexpr int pageWidth = 460;

QMainWindow& windowOf(QgisInterface& qgis) { return *qobject_cast<QMainWindow*>(qgis.mainWindow()); }

}  // namespace

LayerDesk::LayerDesk(host::ComposedHost host, QgisInterface& qgis, ExportPane::Places places)
    : host_(std::move(host)),
      qgis_(qgis),
      places_(std::move(places)),
      image_(new viewer::PickedImage(
          [composed = host_](const QString& reference, const QString& title) {
            return std::make_shared<viewer::PickedService>(composed, reference.toStdString(), title);
          },
          this)),
      docks_(std::make_unique<viewer::PropertyDocks>(
          host_, windowOf(qgis), [this](const std::string& properties) { return drawWith(properties); },
          viewer::PropertyDocks::Steps::AtOnce)),
      exports_(new ExportPane(host_, places_, &windowOf(qgis))) {
  settleDocks();
  connect(exports_, &ExportPane::exported, this, &LayerDesk::tellExport);
  followService();
  followQgis();
}

void LayerDesk::followService() {
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
}

void LayerDesk::followQgis() {
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
  QMainWindow& window = windowOf(qgis_);
  for (QAction* const toggle : docks_->toggles()) {
    auto* const pane = qobject_cast<QDockWidget*>(toggle->parent());
    pane->setObjectName(QStringLiteral("VLClientUI") + pane->objectName());
    pane->setWindowTitle(tr("Service %1").arg(pane->windowTitle().toLower()));
  }
  window.addDockWidget(Qt::RightDockWidgetArea, exports_);
  window.tabifyDockWidget(qobject_cast<QDockWidget*>(docks_->toggles().last()->parent()), exports_);
  exports_->hide();
  for (QAction* const toggle : paneToggles()) settleDock(*toggle);
}

void LayerDesk::settleDock(QAction& toggle) {
  auto* const pane = qobject_cast<QDockWidget*>(toggle.parent());
  panes_.append(pane);
  windowOf(qgis_).restoreDockWidget(pane);
  auto* const panels = windowOf(qgis_).findChild<QMenu*>(QStringLiteral("mPanelMenu"));
  if (panels != nullptr) panels->addAction(&toggle);
  // As wide as its page wants to be, which QGIS's area may not be yet.
  connect(&toggle, &QAction::triggered, pane, [this, pane](bool isOpened) {
    if (!isOpened) return;
    pane->raise();
    const int wanted = std::max(pageWidth, pane->sizeHint().width());
    if (pane->width() < wanted) windowOf(qgis_).resizeDocks({pane}, {wanted}, Qt::Horizontal);
  });
}

QList<QAction*> LayerDesk::paneToggles() const {
  return docks_->toggles() + QList<QAction*>{exports_->toggleViewAction()};
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
  if (wanted == nullptr) {
    exports_->showFor(std::nullopt);
    return image_->pick({}, {}, {});
  }
  const LayerSource source = sourceOf(*wanted);
  exports_->showFor(ExportPane::Subject{source, wanted->name()});
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

// Panes and windows have what the layer draws: other properties are taken back where it cannot be drawn by
// them.
bool LayerDesk::drawWith(const std::string& properties) {
  const auto service = image_->service();
  if (!layer_ || !service) return false;
  const std::string former = service->ServiceProperties();
  try {
    image_->follow(host::withoutBlankViewPoint(properties, *host_.platform->xml));
    const QPointer<QgsRasterLayer> layer = layer_;
    drawLayerBy(*layer, service->ServiceProperties());
    if (layer && layer == layer_) exports_->follow(sourceOf(*layer).properties);
    emit said(tr("Service properties applied"));
    return true;
  } catch (const std::exception& failure) {
    // Events ran, and may have brought another service.
    if (service == image_->service()) image_->follow(former);
    tellFailure(tr("Service properties"), failure);
    return false;
  }
}

void LayerDesk::tellFailure(const QString& title, const std::exception& failure) {
  emit complained(title, QString::fromStdString(host::shownText(host_, failure.what())));
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
    tellFailure(tr("Service properties"), failure);
  }
}

// For a recording.
std::vector<std::string> LayerDesk::presentProperties() const {
  return {"properties", image_->service()->ServiceProperties()};
}

void LayerDesk::showProperties() {
  changeIn([this](IOVLServicePropertiesDialog& dialog) {
    const host::ToldDialog told("properties", image_->reference().toStdString(), presentProperties());
    const auto outcome = dialog.ShowPropertiesModalDialog();
    if (outcome < 0) throw RuntimeFailure(dialog.Status());
    return outcome == 1;
  });
}

// The window returns nothing; its viewpoint comes back with the properties.
void LayerDesk::showViewPoint() {
  changeIn([this](IOVLServicePropertiesDialog& dialog) {
    const host::ToldDialog told("viewpoint", image_->reference().toStdString(), presentProperties());
    return dialog.ShowViewPointModalDialog() != boolean16False && !host::handedOver().viewPointX.empty();
  });
}

void LayerDesk::showMetadata() {
  const auto service = image_->service();
  if (!service) return;
  const auto lock = [this, service](const std::string& properties) {
    if (service == image_->service()) static_cast<void>(drawWith(properties));
  };
  try {
    qgis::showMetadata(host_, service, layer_->name(), lock, qgis_.mainWindow());
  } catch (const std::exception& failure) {
    tellFailure(tr("Service metadata"), failure);
  }
}

void LayerDesk::exportImage() {
  if (!layer_) return;
  const LayerSource source = sourceOf(*layer_);
  const QString title = layer_->name();
  const auto prepared = std::make_shared<viewer::PreparedExport>();
  const auto open = [prepared, host = host_, source, title, places = places_()] {
    *prepared = viewer::prepareExport(host, source.reference, title, source.properties, places);
  };
  try {
    if (!viewer::doBesideWindows(title, open)) return emit said(tr("Nothing exported"));
    tellExport(
        viewer::showExport(host_, *prepared, title, QgsProject::instance()->absolutePath().toStdString()));
  } catch (const std::exception& failure) {
    tellFailure(tr("Export"), failure);
  }
}

void LayerDesk::tellExport(const viewer::ExportOutcome& outcome) {
  using Attempt = viewer::PickedService::Attempt;
  const bool isTried = outcome.attempt == Attempt::Written || outcome.attempt == Attempt::Failed;
  if (outcome.request.empty() || !isTried) return emit said(tr("Nothing exported"));
  const QString file = QString::fromStdString(outcome.file.string());
  viewer::ExportResult window(outcome, qgis_.mainWindow());
  connect(&window, &viewer::ExportResult::addToMapWanted, this, [&] { emit fileWanted(file); });
  connect(&window, &viewer::ExportResult::openFolderWanted, this, [&] {
    QDesktopServices::openUrl(
        QUrl::fromLocalFile(QString::fromStdString(outcome.file.parent_path().string())));
  });
  connect(&window, &viewer::ExportResult::saveJobWanted, this,
          [&] { viewer::saveJobByPerson(*outcome.job, *host_.platform->xml, &window); });
  window.exec();
}

}  // namespace vlclientui::qgis
