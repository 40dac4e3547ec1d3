#include "viewer/window/ViewerWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMessageBox>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/Control.h"
#include "frame/General.h"
#include "host/HandedOver.h"
#include "host/RunDialogs.h"
#include "host/ShownText.h"
#include "viewer/docks/WaitingInDocks.h"
#include "viewer/network/ConnectionsWindow.h"
#include "viewer/network/RecentServers.h"
#include "viewer/tools/FirstServices.h"
#include "viewer/window/AboutBox.h"
#include "viewer/window/CopyStatus.h"
#include "viewer/window/EditsQuestion.h"
#include "viewer/window/MapStatus.h"
#include "viewer/window/RunRecording.h"
#include "viewer/window/SilenceLog.h"
#include "viewer/window/TitledPane.h"

namespace vlclientui::viewer {
namespace {

constexpr int newsTime = 10'000;  // milliseconds that a text stands in the status bar
constexpr const char* helpPage = "Using_the_viewer";

PickedImage::Open opener(const host::ComposedHost& host) {
  return [host](const QString& reference, const QString& title) {
    return std::make_shared<PickedService>(host, reference.toStdString(), title);
  };
}

}  // namespace

ViewerWindow::ViewerWindow(host::ComposedHost composed, std::filesystem::path documents)
    : composed_(std::move(composed)),
      selectedServicesFile_(documents / "selected-services.xml"),
      services_(new ServiceListModel(composed_, this)),
      servicePane_(new ServicePane(*services_)),
      list_(&servicePane_->list()),
      map_(new MapView(*services_)),
      tools_(new MapTools(*map_, *list_, *services_, this)),
      handedOver_(new HandedOverPane),
      image_(new PickedImage(opener(composed_), this)),
      news_(composed_, [this](const QString& news) { say(news); }) {
  setWindowTitle(tr("Viewer[*]"));
  resize(1200, 720);
  setDockNestingEnabled(true);
  host::openHelpByKey(*this, helpPage);
  auto* right = new QSplitter(Qt::Vertical);
  right->addWidget(titledPane(tr("&Map"), *map_, *map_));
  right->addWidget(handedOver_);
  right->setStretchFactor(0, 1);
  right->setSizes({460, 150});
  auto* halves = new QSplitter;
  halves->addWidget(titledPane(tr("Servi&ces"), *servicePane_, *list_));
  halves->addWidget(right);
  halves->setStretchFactor(1, 1);
  halves->setSizes({300, 900});
  setCentralWidget(halves);
  docks_ = std::make_unique<PropertyDocks>(composed_, *this,
                                           [this](const auto& properties) { return drawWith(properties); });
  desk_ = makeDesk();
  makeValues();
  auto* const copies = new CopyStatus(map_->copies(), desk_->settings());
  statusBar()->addPermanentWidget(copies);
  colors_ = new ColorsDesk(*services_, *list_, *map_, *this);
  actions_ = buildActions(*this, {*map_, *tools_, *colors_, *list_, docks_->toggles(), values_->toggle(),
                                  handedOver_->toggle(), desk_->actions(), copies->action(),
                                  desk_->recentProjects(), desk_->recentServers(), desk_->settings()});
  followSilence(*this, composed_.platform->system, tr("Help"));
  followRecording(*this, composed_.platform->system, tr("File"));
  new MapStatus(*map_, *statusBar());
  new FirstServices(*services_, *map_, this);
  say(tr("Ready"));
  followMap();
  enableActions();
  map_->showWorld();
}

// In the map's own menu it begins where that was opened.
void ViewerWindow::makeValues() {
  values_ = new ValuesDock(*services_, *map_, this);
  addDockWidget(Qt::RightDockWidgetArea, values_);
  values_->hide();
  auto* const here = new QAction(tr("&Values here"), this);
  here->setObjectName("ValuesHere");
  connect(here, &QAction::triggered, this, [this] { values_->showAt(tools_->menuPlace()); });
  tools_->addToMenu({here});
}

std::unique_ptr<ProjectDesk> ViewerWindow::makeDesk() {
  auto desk = std::make_unique<ProjectDesk>(
      composed_,
      DeskParts{*this, *services_, *list_, *map_, [this] { return settleEdits(); },
                [this] { pickNow(nullptr); }, [this](const std::filesystem::path& file) { openFile(file); },
                [this](const QString& server) { offerServer(server.toStdString()); }},
      selectedServicesFile_.parent_path());
  connect(desk.get(), &ProjectDesk::told, this, &ViewerWindow::say);
  connect(desk.get(), &ProjectDesk::failed, this,
          [this](const QString& problem) { tell(tr("Project"), RuntimeFailure(problem.toStdString())); });
  return desk;
}

void ViewerWindow::keepSession() { desk_->keepSession(); }

void ViewerWindow::offerServer(const std::string& server) {
  putServerFirst(*composed_.platform, server);
  QTimer::singleShot(0, this, &ViewerWindow::addServices);
}

// Pages must not outlive the picked service, nor stay in a widget that is destroyed.
ViewerWindow::~ViewerWindow() {
  disconnect(list_->selectionModel(), nullptr, this, nullptr);
  docks_.reset();
}

void ViewerWindow::followMap() {
  connect(map_, &MapView::rectangleChanged, this, &ViewerWindow::enableActions);
  connect(services_, &QAbstractItemModel::dataChanged, this, [this](const QModelIndex& loaded) {
    if (loaded.row() == currentRow()) tellOfPlace();
    enableActions();
  });
  // The list goes with the last service; the keyboard must not.
  connect(services_, &QAbstractItemModel::rowsRemoved, this, [this] {
    if (services_->rowCount() == 0) map_->setFocus();
  });
  connect(list_, &QListView::activated, this, &ViewerWindow::zoomToService);
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &ViewerWindow::enableActions);
  connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { pickRow(current.row()); });
  connect(map_, &MapView::problemChanged, this, [this](const QString& reference, const QString& problem) {
    services_->noteProblem(reference, problem);
    if (!problem.isEmpty()) say(shown(problem.toStdString()));
  });
  connect(map_, &MapView::viewChanged, image_, [this] { image_->setView(map_->view(), map_->pixels()); });
  connect(image_, &PickedImage::closed, this, [this] {
    docks_->showPagesOf(nullptr);
    map_->showImage({});
  });
  connect(image_, &PickedImage::opened, this, [this] {
    services_->drawAsOpened(image_->reference(), image_->service()->presentDrawing());
    docks_->showPagesOf(image_->service());
  });
  connect(image_, &PickedImage::opened, this, &ViewerWindow::enableActions);
  connect(image_, &PickedImage::drawn, this, &ViewerWindow::showImage);
  connect(image_, &PickedImage::failed, this, [this](const QString& problem) { say(problem); });
  connect(docks_.get(), &PropertyDocks::complained, this, [this](const QString& problem) { say(problem); });
}

// The pages may hold edits of the former service; what becomes of them is asked once the list is at rest.
void ViewerWindow::pickRow(int row) {
  const auto* const wanted = row < 0 ? nullptr : &services_->rows()[static_cast<std::size_t>(row)];
  const bool isOther = wanted == nullptr || wanted->reference != image_->reference();
  if (isOther && services_->rowOf(image_->reference()) >= 0 && docks_->waits()) {
    QMetaObject::invokeMethod(this, &ViewerWindow::askBeforePicking, Qt::QueuedConnection);
    return;
  }
  if (isOther) pickNow(wanted);
  tellOfPlace();
  enableActions();
}

void ViewerWindow::pickNow(const ServiceListModel::Row* row) {
  map_->mark(row == nullptr ? QString() : row->reference);
  if (row == nullptr) return image_->pick({}, {}, {});
  image_->pick(row->reference, row->name(), row->shown.properties);
}

void ViewerWindow::askBeforePicking() {
  if (settleEdits()) {
    pickNow(pickedRow());
    tellOfPlace();
  } else {
    list_->pick(services_->rowOf(image_->reference()));
  }
  enableActions();
}

bool ViewerWindow::settleEdits() {
  if (!docks_->waits()) return true;
  const int row = services_->rowOf(image_->reference());
  const QString name = row < 0 ? QString() : services_->rows()[static_cast<std::size_t>(row)].name();
  switch (askAboutEdits(name, this)) {
    case EditsWish::Apply:
      docks_->apply();
      return !docks_->waits();
    case EditsWish::Discard:
      docks_->revert();
      return true;
    case EditsWish::Stay:
      break;
  }
  return false;
}

bool ViewerWindow::mayLose(const QString& question) {
  return !docks_->waits() || askToLoseEdits(question, this);
}

void ViewerWindow::closeEvent(QCloseEvent* event) {
  if (!settleEdits() || !mayEndRecording(*this) || !desk_->mayEnd()) return event->ignore();
  QMainWindow::closeEvent(event);
}

const ServiceListModel::Row* ViewerWindow::pickedRow() const {
  const int row = currentRow();
  return row < 0 ? nullptr : &services_->rows()[static_cast<std::size_t>(row)];
}

void ViewerWindow::tellOfPlace() {
  const auto* const picked = pickedRow();
  if (picked == nullptr || picked->state != ServiceListModel::State::Ready || picked->service.envelope)
    return;
  say(tr("%1 has no place on the map: its coordinate system is missing or unknown").arg(picked->name()));
}

// A picked one that could not be opened may open now.
void ViewerWindow::reload() {
  services_->readAgain();
  map_->reload();
  const auto* const picked = pickedRow();
  if (picked != nullptr && !image_->service() && !image_->isBusy()) pickNow(picked);
}

void ViewerWindow::zoomToService() {
  const auto* const picked = pickedRow();
  if (picked != nullptr && picked->service.envelope) map_->showExtent(*picked->service.envelope);
  tellOfPlace();
}

void ViewerWindow::showImage(const ShownImage& image) {
  map_->showImage(image);
  docks_->followImage();
}

bool ViewerWindow::drawWith(const std::string& properties) {
  try {
    image_->follow(host::withoutBlankViewPoint(properties, *composed_.platform->xml));
    services_->draw(image_->reference(), image_->service()->presentDrawing());
    const int row = services_->rowOf(image_->reference());
    if (row >= 0) services_->keepProperties(row, image_->service()->ServiceProperties());
    say(tr("Service properties applied"));
    return true;
  } catch (const RuntimeFailure& failure) {
    tell(tr("Service properties"), failure);
    return false;
  }
}

void ViewerWindow::changeIn(const std::function<bool(IOVLServicePropertiesDialog&)>& showWindow) {
  const auto service = image_->service();
  if (!service) return;
  try {
    const WaitingInDocks ofDocks = takeHandedOver();
    const auto dialog = openPropertiesDialog(service);
    const bool isChosen = showWindow(*dialog);
    if (service != image_->service()) return;
    if (isChosen && drawWith(dialog->GetUpdatedProperties())) return docks_->revert();
    giveBack(ofDocks);
  } catch (const RuntimeFailure& failure) {
    tell(tr("Service properties"), failure);
  }
}

// For a recording.
std::vector<std::string> ViewerWindow::presentProperties() const {
  return {"properties", image_->service() ? image_->service()->ServiceProperties() : std::string()};
}

void ViewerWindow::showServiceProperties() {
  changeIn([this](IOVLServicePropertiesDialog& dialog) {
    const host::ToldDialog told("properties", image_->reference().toStdString(), presentProperties());
    const auto outcome = dialog.ShowPropertiesModalDialog();
    if (outcome < 0) throw RuntimeFailure(dialog.Status());
    return outcome == 1;
  });
}

// The window returns nothing; its viewpoint comes back with the properties.
void ViewerWindow::showViewPointDialog() {
  changeIn([this](IOVLServicePropertiesDialog& dialog) {
    const host::ToldDialog told("viewpoint", image_->reference().toStdString(), presentProperties());
    return dialog.ShowViewPointModalDialog() != boolean16False && !host::handedOver().viewPointX.empty();
  });
}

void ViewerWindow::showConnections() {
  ConnectionsWindow(client::ConnectionBook::shared(), composed_.catalogue, this).exec();
}

void ViewerWindow::tell(const QString& title, const RuntimeFailure& problem) {
  QMessageBox box(QMessageBox::Critical, title, shown(problem.description()), QMessageBox::Ok, this);
  host::openHelpByKey(box, helpPage);
  box.exec();
}

void ViewerWindow::say(const QString& news) { statusBar()->showMessage(news, newsTime); }

QString ViewerWindow::shown(const std::string& text) const {
  return QString::fromStdString(host::shownText(composed_, text));
}

void ViewerWindow::showHelp(const char* page) { LaunchHelp(keyCode::f1, keyModifier::control, true, page); }

void ViewerWindow::showAbout() { viewer::showAbout(composed_.installation, *this); }

void ViewerWindow::enableActions() {
  const auto* const picked = pickedRow();
  actions_.remove->setEnabled(!list_->selectedRows().empty());
  actions_.zoomToService->setEnabled(picked != nullptr && picked->service.envelope);
  actions_.exportService->setEnabled(picked != nullptr);
  const bool isOpen = image_->service() != nullptr;
  actions_.properties->setEnabled(isOpen);
  actions_.viewPoint->setEnabled(isOpen);
  actions_.clearRectangle->setEnabled(map_->rectangle().has_value());
}

int ViewerWindow::currentRow() const { return list_->currentIndex().row(); }

}  // namespace vlclientui::viewer
