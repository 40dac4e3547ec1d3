#include "qgis/plugin/ServicesPlugin.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMainWindow>
#include <QToolBar>
#include <chrono>
#include <cstring>
#include <exception>
#include <utility>

#include <link.h>
#include <qgisinterface.h>
#include <qgsapplication.h>
#include <qgsmapcanvas.h>
#include <qgsmessagebar.h>
#include <qgsprocessingregistry.h>
#include <qgsproviderregistry.h>

#include "client/connections/ConnectionBook.h"
#include "host/ShownText.h"
#include "library/HostThread.h"
#include "qgis/plugin/CanvasPlaces.h"
#include "qgis/plugin/DrawnExtent.h"
#include "qgis/plugin/LayerColors.h"
#include "qgis/plugin/LayerDesk.h"
#include "qgis/plugin/ServiceAlgorithms.h"
#include "qgis/plugin/ServiceLayers.h"
#include "qgis/provider/LayerHost.h"
#include "qgis/provider/ProviderMetadata.h"
#include "viewer/colors/ColorsIcon.h"
#include "viewer/list/AddServices.h"
#include "viewer/list/PickerClient.h"
#include "viewer/list/PickerSurroundings.h"
#include "viewer/map/PersonsCopies.h"
#include "viewer/network/ConnectionsWindow.h"
#include "viewer/waiting/DoneBeside.h"
#include "viewer/waiting/Workers.h"
#include "viewer/window/RunRecording.h"
#include "viewer/window/ToolIcons.h"

namespace vlclientui::qgis {
namespace {

constexpr std::chrono::seconds untilWorkEnds(3);

/// Whether the library for the other Qt is in this process. Both have the same names, which must not mix.
bool isOtherKindLoaded() {
  const auto isIt = [](dl_phdr_info* library, std::size_t /*size*/, void* /*data*/) {
    return std::strstr(library->dlpi_name, "libVLClientUIHost.so") != nullptr ? 1 : 0;
  };
  return dl_iterate_phdr(isIt, nullptr) != 0;
}

}  // namespace

QString ServicesPlugin::pluginName() { return tr("Image services"); }

QString ServicesPlugin::pluginDescription() {
  return tr(
      "Services of rasters and mosaics as layers, with their properties, viewpoint, metadata and export");
}

ServicesPlugin::ServicesPlugin(QgisInterface& qgis)
    : QgisPlugin(pluginName(), pluginDescription(), tr("Raster"), QStringLiteral(VLCLIENTUI_VERSION),
                 QgisPlugin::UI),
      qgis_(qgis) {}

ServicesPlugin::~ServicesPlugin() = default;

void ServicesPlugin::initGui() {
  if (isOtherKindLoaded())
    return tell(pluginName(),
                tr("VLClientUI for Qt 6 is in this process already, as its module of Python is. "
                   "Start QGIS anew, and use that module outside of QGIS."));
  // One that QGIS found by itself stays.
  auto metadata = std::make_unique<ProviderMetadata>();
  if (QgsProviderRegistry::instance()->registerProvider(metadata.get()))
    static_cast<void>(metadata.release());
  // Not every end of QGIS unloads its plugins before its windows go.
  connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &ServicesPlugin::unload);
  try {
    host_ = host::start(host::composeDesktopPlatform({}));
    const auto wait = [](const QString& what, std::function<void()> work) {
      return viewer::doBesideWindows(what, std::move(work)) ? Patiently::Done : Patiently::GivenUp;
    };
    useForLayers(host_, {wait, viewer::runOnWorker, viewer::personsCopies()});
    build();
    algorithms_ = new ServiceAlgorithms;
    QgsApplication::processingRegistry()->addProvider(algorithms_);
  } catch (const std::exception& failure) {
    tell(pluginName(), QString::fromUtf8(failure.what()));
  }
}

// Nothing that was recorded goes with QGIS unasked.
bool ServicesPlugin::eventFilter(QObject* watched, QEvent* event) {
  const bool isEnd = event->type() == QEvent::Close && watched == qgis_.mainWindow();
  if (!isEnd || !recording_ || recording_->end()) return QObject::eventFilter(watched, event);
  event->ignore();
  return true;
}

// The last chance, where QGIS ends by its menu or the plugin is turned off: no way leads back from there.
void ServicesPlugin::settleRecording() {
  if (!recording_ || recording_->end()) return;
  const QString file =
      recording_->keepIn(QgsApplication::qgisSettingsDirPath() + QStringLiteral("vlclientui"));
  if (!file.isEmpty()) say(tr("The recording was kept in %1").arg(file));
}

// May come twice. Layers that are opened from now on do without windows.
void ServicesPlugin::unload() {
  settleRecording();
  if (algorithms_) QgsApplication::processingRegistry()->removeProvider(algorithms_);
  for (QAction* const action : all_) {
    qgis_.removePluginRasterMenu(pluginName(), action);
    qgis_.removeAddLayerAction(action);
  }
  delete bar_;
  bar_ = nullptr;
  all_.clear();
  qDeleteAll(own_);
  own_.clear();
  ofServices_.clear();
  ofOpenOnes_.clear();
  recording_.reset();
  // A pane that comes to the front while others go looks at what is drawn.
  colors_.reset();
  desk_.reset();
  drawn_.reset();
  useForLayers({});
  startThread(nullptr);
  host_ = {};
  // Given-up work has all that it uses until it has come to its end.
  static_cast<void>(viewer::workersEnd(untilWorkEnds));
}

void ServicesPlugin::build() {
  drawn_ = std::make_unique<DrawnExtent>(*qgis_.mapCanvas());
  desk_ = std::make_unique<LayerDesk>(host_, qgis_, [this] { return places(); });
  recording_ = std::make_unique<viewer::RunRecording>(*qobject_cast<QMainWindow*>(qgis_.mainWindow()),
                                                      host_.platform->system);
  colors_ = std::make_unique<LayerColors>(*qgis_.mainWindow());
  bar_ = qgis_.addToolBar(pluginName());
  bar_->setObjectName(QStringLiteral("VLClientUIBar"));
  buildActions();
  connect(desk_.get(), &LayerDesk::changed, this, &ServicesPlugin::enableActions);
  connect(desk_.get(), &LayerDesk::said, this, &ServicesPlugin::say);
  qgis_.mainWindow()->installEventFilter(this);
  connect(recording_.get(), &viewer::RunRecording::said, this, &ServicesPlugin::say);
  connect(desk_.get(), &LayerDesk::complained, this, &ServicesPlugin::tell);
  connect(colors_.get(), &LayerColors::complained, this, &ServicesPlugin::tell);
  connect(desk_.get(), &LayerDesk::fileWanted, this,
          [this](const QString& path) { qgis_.addRasterLayer(path); });
  enableActions();
}

QAction* ServicesPlugin::add(const QIcon& icon, const QString& text, const QString& name, const QString& hint,
                             void (ServicesPlugin::*act)()) {
  auto* const action = new QAction(icon, text, qgis_.mainWindow());
  action->setObjectName(QStringLiteral("VLClientUI") + name);
  action->setToolTip(hint);
  connect(action, &QAction::triggered, this, act);
  all_.append(action);
  own_.append(action);
  return action;
}

void ServicesPlugin::buildActions() {
  const auto theme = [](const char* name) { return QgsApplication::getThemeIcon(QString::fromLatin1(name)); };
  QAction* const services = add(viewer::worldIcon(), tr("&Add image services..."), "AddServices",
                                tr("Pick services of a server or folder"), &ServicesPlugin::addServices);
  qgis_.insertAddLayerAction(services);
  ofOpenOnes_ = {
      add(viewer::propertiesIcon(), tr("Service &properties..."), "Properties",
          tr("How the service of the layer is made"), &ServicesPlugin::showProperties),
      add(viewer::viewPointIcon(), tr("&Viewpoint..."), "ViewPoint",
          tr("From where the mosaic of the layer is seen"), &ServicesPlugin::showViewPoint),
      add(viewer::metadataIcon(), tr("&Metadata..."), "Metadata",
          tr("What is told of the service and of the image on the map"), &ServicesPlugin::showMetadata)};
  ofServices_ = {add(theme("/mActionFileSaveAs.svg"), tr("&Export..."), "Export",
                     tr("Write an image of the service, in its own pixels"), &ServicesPlugin::exportImage),
                 add(viewer::colorsIcon(), tr("Co&lors..."), "Colors",
                     tr("Choose bands, contrast and colors of the layer"), &ServicesPlugin::showColors),
                 add(theme("/mIconRaster.svg"), tr("Add its val&ues as a layer"), "AddValues",
                     tr("The bands as they are stored, for styles and computations of QGIS"),
                     &ServicesPlugin::addValues)};
  add(QIcon(), tr("Co&nnections..."), "Connections",
      tr("Servers by names of your own, with their passwords and tokens"), &ServicesPlugin::showConnections);
  for (QAction* const action : {drawn_->draw(), drawn_->clear()}) all_.append(action);
  all_ += desk_->paneToggles();
  all_.append(recording_.get());
  for (QAction* const action : all_) qgis_.addPluginToRasterMenu(pluginName(), action);
  for (QAction* const action : {services, drawn_->draw()}) bar_->addAction(action);
  for (QAction* const action : ofOpenOnes_ + ofServices_) bar_->addAction(action);
  const QList<QIcon> icons{viewer::propertiesIcon(), viewer::viewPointIcon(), viewer::metadataIcon(),
                           theme("/mActionFileSaveAs.svg")};
  int pane = 0;
  for (QAction* const toggle : desk_->paneToggles()) toggle->setIcon(icons.value(pane++));
}

void ServicesPlugin::enableActions() {
  for (QAction* const action : ofOpenOnes_) action->setEnabled(desk_->isOpen());
  for (QAction* const action : ofServices_) action->setEnabled(desk_->layer() != nullptr);
  colors_->follow(desk_->layer());
  qgis_.mainWindow()->findChild<QAction*>(QStringLiteral("VLClientUIColors"))->setEnabled(colors_->isAny());
}

// A rectangle that was drawn says more of what is wanted than the map around it.
void ServicesPlugin::addServices() {
  viewer::PickerSurroundings surroundings;
  const auto client = std::make_shared<viewer::PickerClient>(
      host_.catalogue, [&surroundings](const auto& leftOut) { surroundings.setLeftOut(leftOut); });
  try {
    const auto selected = viewer::pickServices(
        client, viewer::viewExtentDocument(places().back().place, host_.platform->system->localeFormat()));
    const auto references = viewer::referencesIn(*host_.platform->xml, selected);
    addLayersOf(references);
  } catch (const std::exception& failure) {
    tell(tr("Add image services"), QString::fromStdString(host::shownText(host_, failure.what())));
  }
}

void ServicesPlugin::showConnections() {
  viewer::ConnectionsWindow(client::ConnectionBook::shared(), host_.catalogue, qgis_.mainWindow()).exec();
}

// One that cannot be read does not stop the others.
void ServicesPlugin::addLayersOf(const std::vector<std::string>& references) {
  QStringList problems;
  for (const std::string& reference : references) {
    try {
      qgis_.setActiveLayer(addServiceLayer({reference}));
    } catch (const std::exception& failure) {
      problems.append(QString::fromStdString(host::shownText(host_, failure.what())));
    }
  }
  const auto added = static_cast<int>(references.size()) - static_cast<int>(problems.size());
  if (added == 1) say(tr("1 service added"));
  if (added > 1) say(tr("%1 services added").arg(added));
  if (problems.isEmpty()) return;
  const QString count =
      references.size() == 1 ? QString() : tr("%1 of %2: ").arg(problems.size()).arg(references.size());
  tell(tr("Services that cannot be added"), count + problems.join(QStringLiteral(" ")));
}

void ServicesPlugin::addValues() {
  const QgsRasterLayer* const layer = desk_->layer();
  if (layer == nullptr) return;
  LayerSource source = sourceOf(*layer);
  source.content = LayerContent::Values;
  source.stretch.clear();
  try {
    addServiceLayer(source, tr("%1, values").arg(layer->name()));
  } catch (const std::exception& failure) {
    tell(tr("Values of a service"), QString::fromUtf8(failure.what()));
  }
}

void ServicesPlugin::showProperties() { desk_->showProperties(); }
void ServicesPlugin::showViewPoint() { desk_->showViewPoint(); }
void ServicesPlugin::showMetadata() { desk_->showMetadata(); }
void ServicesPlugin::showColors() { colors_->show(); }
void ServicesPlugin::exportImage() { desk_->exportImage(); }

std::vector<host::NamedPlace> ServicesPlugin::places() const {
  const QgsMapCanvas& canvas = *qgis_.mapCanvas();
  std::vector<host::NamedPlace> all{{tr("Current map view").toStdString(),
                                     inDegrees(canvas.extent(), canvas.mapSettings().destinationCrs())}};
  if (drawn_->place()) all.push_back({tr("Drawn rectangle").toStdString(), *drawn_->place()});
  return all;
}

void ServicesPlugin::tell(const QString& title, const QString& problem) const {
  qgis_.messageBar()->pushMessage(title, problem, Qgis::MessageLevel::Warning, 0);
}

void ServicesPlugin::say(const QString& news) const {
  qgis_.messageBar()->pushMessage(pluginName(), news, Qgis::MessageLevel::Success, qgis_.messageTimeout());
}

}  // namespace vlclientui::qgis
