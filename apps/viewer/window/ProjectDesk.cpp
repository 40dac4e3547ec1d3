#include "viewer/window/ProjectDesk.h"

#include <QAction>
#include <QDropEvent>
#include <QFileDialog>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QSettings>
#include <QUrl>
#include <algorithm>
#include <system_error>
#include <utility>

#include "client/mapping/MapSystem.h"
#include "contracts/RuntimeFailure.h"
#include "viewer/network/RecentServers.h"
#include "viewer/project/ProjectDocument.h"
#include "viewer/window/UnsavedQuestion.h"

namespace vlclientui::viewer {
namespace {

namespace fs = std::filesystem;

constexpr const char* recentKey = "recentProjects";
constexpr const char* exportKey = "exportFolder";
constexpr const char* geometryKey = "geometry";
constexpr const char* layoutKey = "layout";
constexpr qsizetype mostRecent = 10;
constexpr qsizetype mostOfSystem = 60;  // of a whole definition, in a message

QString shownPath(const fs::path& path) { return QString::fromStdString(path.string()); }
fs::path pathOf(const QString& text) { return text.toStdString(); }

std::vector<fs::path> filesIn(const QMimeData& data) {
  std::vector<fs::path> files;
  for (const QUrl& address : data.urls())
    if (address.isLocalFile()) files.push_back(pathOf(address.toLocalFile()));
  return files;
}

// Files may define a system of their own under a code; then the code does not tell it all.
std::string textOf(const client::MapSystem& system) {
  return client::mapSystemOf(system.id) == system ? system.id : system.wkt;
}

// Of a name that the file dialog did not ask about.
bool mayReplace(const QString& file, QWidget& window) {
  std::error_code error;
  if (!fs::exists(pathOf(file), error)) return true;
  return QMessageBox::question(&window, ProjectDesk::tr("Save the project"),
                               ProjectDesk::tr("%1 exists. Replace it?").arg(file)) == QMessageBox::Yes;
}

}  // namespace

ProjectDesk::ProjectDesk(host::ComposedHost host, DeskParts parts, fs::path folder)
    : host_(std::move(host)),
      parts_(std::move(parts)),
      folder_(std::move(folder)),
      settings_(std::make_unique<QSettings>(shownPath(folder_ / "viewer.ini"), QSettings::IniFormat)),
      recentProjects_(new QMenu(tr("&Recent projects"), &parts_.window)),
      recentServers_(new QMenu(tr("Recent &servers"), &parts_.window)) {
  recentProjects_->setObjectName("RecentProjects");
  recentServers_->setObjectName("RecentServers");
  connect(recentProjects_, &QMenu::aboutToShow, this, &ProjectDesk::listProjects);
  connect(recentServers_, &QMenu::aboutToShow, this, &ProjectDesk::listServers);
  connect(&parts_.services, &QAbstractItemModel::dataChanged, this, &ProjectDesk::tellMissing);
  connect(&parts_.services, &ServiceListModel::changed, this, &ProjectDesk::markChanges);
  // Of the view only another system is a change.
  connect(&parts_.map, &MapView::viewChanged, this, [this, before = std::string()]() mutable {
    const std::string& system = parts_.map.frame().system().wkt;
    if (std::exchange(before, system) != system) markChanges();
  });
  makeActions();
  parts_.window.setAcceptDrops(true);
  parts_.window.installEventFilter(this);
}

ProjectDesk::~ProjectDesk() = default;

void ProjectDesk::makeActions() {
  const auto add = [this](const char* name, const QString& text, const QKeySequence& key, auto slot) {
    auto* const action = new QAction(text, &parts_.window);
    action->setObjectName(name);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, slot);
    actions_ += action;
  };
  add("NewProject", tr("&New project"), Qt::CTRL | Qt::SHIFT | Qt::Key_N, &ProjectDesk::begin);
  add("OpenProject", tr("Open &project\u2026"), Qt::CTRL | Qt::SHIFT | Qt::Key_O, &ProjectDesk::openByHand);
  add("SaveProject", tr("&Save project"), QKeySequence::Save, &ProjectDesk::save);
  add("SaveProjectAs", tr("Save project &as\u2026"), Qt::CTRL | Qt::SHIFT | Qt::Key_S, &ProjectDesk::saveAs);
}

Project ProjectDesk::snapshot() const {
  Project project;
  project.services = parts_.services.services();
  const int row = parts_.list.currentIndex().row();
  if (row >= 0) project.picked = static_cast<std::size_t>(row);
  const MapFrame& frame = parts_.map.frame();
  project.system = textOf(frame.system());
  // Across the antimeridian it has no degrees from west to east; then the whole world is kept.
  const auto view = frame.view();
  if (view.xMin < view.xMax && view.yMin < view.yMax) project.view = view;
  if (!frame.isInDegrees()) project.area = frame.area();
  return project;
}

bool ProjectDesk::isUnsaved() const {
  const Project present = snapshot();
  const bool isAny = !present.services.empty() || !file_.empty();
  return isAny && (present.services != saved_.services || present.system != saved_.system);
}

void ProjectDesk::markChanges() { parts_.window.setWindowModified(isUnsaved()); }

void ProjectDesk::keepSession() {
  parts_.window.restoreGeometry(settings_->value(geometryKey).toByteArray());
  parts_.window.restoreState(settings_->value(layoutKey).toByteArray());
  SessionFile file(host_.platform, folder_ / (std::string("session") + projectEnding));
  const SessionFile::Found found = file.find();
  isToKeep_ = true;
  unkept_ = found.mayBeReplaced ? QString() : QString::fromStdString(found.problem);
  if (found.mayBeReplaced) keeper_ = makeKeeper(std::move(file));
  const QString mapProblem = found.project ? show(*found.project) : QString();
  if (found.project) followProject(found.project->file);
  if (!found.problem.empty()) emit failed(QString::fromStdString(found.problem));
  if (!mapProblem.isEmpty()) emit failed(mapProblem);
}

std::unique_ptr<SessionKeeper> ProjectDesk::makeKeeper(SessionFile file) {
  // The map and the project that it is one of go together, whatever happens in between.
  const auto session = [this] {
    Project present = snapshot();
    present.file = file_.string();
    return present;
  };
  auto keeper = std::make_unique<SessionKeeper>(std::move(file), session);
  connect(keeper.get(), &SessionKeeper::failed, this,
          [this](const QString& problem) { emit told(tr("The session cannot be kept: %1").arg(problem)); });
  connect(&parts_.services, &ServiceListModel::changed, keeper.get(), &SessionKeeper::noteChange);
  connect(&parts_.map, &MapView::viewChanged, keeper.get(), &SessionKeeper::noteChange);
  connect(parts_.list.selectionModel(), &QItemSelectionModel::currentChanged, keeper.get(),
          &SessionKeeper::noteChange);
  return keeper;
}

// The session that came back was one of this project. A file that is gone holds nothing of it.
void ProjectDesk::followProject(const fs::path& file) {
  if (file.empty()) return;
  file_ = file;
  saved_ = {};
  try {
    saved_ = openProject(*host_.platform->xml, file);
  } catch (const RuntimeFailure&) {
  }
  showTitle();
}

bool ProjectDesk::mayEnd() {
  if (!isToKeep_) return true;
  if (keeper_) keeper_->finish();
  settings_->setValue(geometryKey, parts_.window.saveGeometry());
  settings_->setValue(layoutKey, parts_.window.saveState());
  settings_->sync();
  const QString problem = keeper_ ? keeper_->problem() : unkept_;
  return problem.isEmpty() || !isUnsaved() || settle(askAboutUnkept(problem, &parts_.window));
}

bool ProjectDesk::settle(UnsavedWish wish) {
  return wish == UnsavedWish::Discard || (wish == UnsavedWish::Save && save());
}

// Others are to take the place of these services.
bool ProjectDesk::letGo() {
  if (!parts_.settleEdits()) return false;
  if (isUnsaved() && !settle(askAboutUnsaved(shownPath(file_.stem()), &parts_.window))) return false;
  parts_.unpick();
  return true;
}

void ProjectDesk::begin() {
  if (!letGo()) return;
  parts_.services.clear();
  parts_.map.noteSystemChosen(false);
  if (const auto degrees = client::mapSystemOf(client::degreesCode)) parts_.map.setSystem(*degrees);
  parts_.map.showWorld();
  setFile({});
  emit told(tr("A new project"));
}

void ProjectDesk::openByHand() {
  const QString file = QFileDialog::getOpenFileName(&parts_.window, tr("Open a project"), {},
                                                    tr("Projects (*%1);;All files (*)").arg(projectEnding));
  if (!file.isEmpty()) open(pathOf(file));
}

void ProjectDesk::open(const fs::path& file) {
  const fs::path whole = fs::absolute(file).lexically_normal();
  try {
    const Project project = openProject(*host_.platform->xml, whole);
    if (!letGo()) return;
    const QString problem = show(project);
    setFile(whole);
    emit told(tr("Opened %1").arg(shownPath(whole)));
    if (!problem.isEmpty()) emit failed(problem);
  } catch (const RuntimeFailure& failure) {
    emit failed(QString::fromStdString(failure.description()));
  }
}

QString ProjectDesk::show(const Project& project) {
  parts_.services.clear();
  for (const ProjectService& service : project.services) parts_.services.addBelow(service);
  if (project.picked) parts_.list.pick(static_cast<int>(*project.picked));
  isToTell_ = true;
  return showMap(project);
}

QString ProjectDesk::showMap(const Project& project) {
  MapView& map = parts_.map;
  const auto degrees = client::mapSystemOf(client::degreesCode);
  const auto system = project.system.empty() ? degrees : client::mapSystemOf(project.system);
  if (system) map.setSystem(*system);
  const bool isUsed = map.frame().system() == system;
  // Without services it stands there because somebody chose it.
  map.noteSystemChosen(isUsed && project.services.empty() && !map.frame().isInDegrees());
  if (!isUsed && degrees) map.setSystem(*degrees);
  if (isUsed && project.area) {
    map.showArea(*project.area);
  } else {
    map.showView(project.view);
  }
  if (isUsed) return {};
  return tr("\"%1\" is no coordinate system of a map. The map is shown in degrees.")
      .arg(QString::fromStdString(project.system).left(mostOfSystem));
}

void ProjectDesk::tellMissing() {
  if (!isToTell_ || parts_.services.isLoading()) return;
  isToTell_ = false;
  const auto& rows = parts_.services.rows();
  const auto missing =
      std::ranges::count(rows, ServiceListModel::State::Unreadable, &ServiceListModel::Row::state);
  if (missing == 0) return;
  emit told(missing == 1
                ? tr("1 service of the project cannot be read; it stays in the list")
                : tr("%1 services of the project cannot be read; they stay in the list").arg(missing));
}

bool ProjectDesk::save() { return file_.empty() ? saveAs() : saveTo(file_); }

bool ProjectDesk::saveAs() {
  QString file = QFileDialog::getSaveFileName(&parts_.window, tr("Save the project"), shownPath(file_),
                                              tr("Projects (*%1)").arg(projectEnding));
  if (file.isEmpty()) return false;
  if (!isProjectFile(pathOf(file))) {
    file += projectEnding;
    if (!mayReplace(file, parts_.window)) return false;
  }
  return saveTo(pathOf(file));
}

bool ProjectDesk::saveTo(const fs::path& file) {
  try {
    saveProject(snapshot(), *host_.platform->xml, file);
    setFile(file);
    emit told(tr("Saved %1").arg(shownPath(file)));
    return true;
  } catch (const RuntimeFailure& failure) {
    emit failed(QString::fromStdString(failure.description()));
    return false;
  }
}

// The map is now as the file has it.
void ProjectDesk::setFile(const fs::path& file) {
  file_ = file;
  saved_ = snapshot();
  showTitle();
  if (keeper_) keeper_->noteChange();
  if (file.empty()) return;
  QStringList recent = settings_->value(recentKey).toStringList();
  recent.removeAll(shownPath(file));
  recent.prepend(shownPath(file));
  settings_->setValue(recentKey, recent.mid(0, mostRecent));
}

// Where the place holder stands desktops show the mark of changes.
void ProjectDesk::showTitle() {
  parts_.window.setWindowTitle(file_.empty() ? tr("Viewer[*]")
                                             : tr("%1[*] \u2013 Viewer").arg(shownPath(file_.stem())));
  markChanges();
}

fs::path ProjectDesk::exportFolder() const { return pathOf(settings_->value(exportKey).toString()); }

void ProjectDesk::noteExport(const fs::path& file) {
  settings_->setValue(exportKey, shownPath(file.parent_path()));
}

void ProjectDesk::listProjects() {
  recentProjects_->clear();
  for (const QString& file : settings_->value(recentKey).toStringList()) {
    QAction* const entry = recentProjects_->addAction(QString(file).replace('&', "&&"));
    std::error_code error;
    entry->setEnabled(fs::exists(pathOf(file), error));
    connect(entry, &QAction::triggered, this, [this, file] { open(pathOf(file)); });
  }
  if (recentProjects_->isEmpty()) recentProjects_->addAction(tr("None yet"))->setEnabled(false);
}

void ProjectDesk::listServers() {
  recentServers_->clear();
  for (const std::string& text : serversOfLate()) {
    const QString server = QString::fromStdString(text);
    connect(recentServers_->addAction(QString(server).replace('&', "&&")), &QAction::triggered, this,
            [this, server] { parts_.offerServer(server); });
  }
  if (recentServers_->isEmpty()) recentServers_->addAction(tr("None yet"))->setEnabled(false);
}

void ProjectDesk::take(const std::vector<fs::path>& files) {
  for (const fs::path& file : files) {
    std::error_code error;
    if (fs::is_directory(file, error)) {
      parts_.offerServer(shownPath(file));
    } else if (isProjectFile(file)) {
      open(file);
    } else {
      parts_.openFile(file);
    }
  }
}

// Windows open behind a drop, so it has to be over first.
bool ProjectDesk::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::DragEnter || event->type() == QEvent::Drop) {
    auto& drop = static_cast<QDropEvent&>(*event);
    const std::vector<fs::path> files = filesIn(*drop.mimeData());
    if (files.empty()) return QObject::eventFilter(watched, event);
    drop.setDropAction(Qt::CopyAction);
    drop.accept();
    if (event->type() == QEvent::Drop)
      QMetaObject::invokeMethod(
          this, [this, files] { take(files); }, Qt::QueuedConnection);
    return true;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace vlclientui::viewer
