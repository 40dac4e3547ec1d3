#pragma once

#include <QList>
#include <QObject>
#include <filesystem>
#include <functional>
#include <memory>

#include "host/Compose.h"
#include "viewer/list/ServiceList.h"
#include "viewer/map/MapView.h"
#include "viewer/project/SessionKeeper.h"
#include "viewer/window/UnsavedQuestion.h"

class QAction;
class QMainWindow;
class QMenu;
class QSettings;

namespace vlclientui::viewer {

/// What the desk needs of the main window.
struct DeskParts {
  QMainWindow& window;
  ServiceListModel& services;
  ServiceList& list;
  MapView& map;
  /// Whether no edit waits any more.
  std::function<bool()> settleEdits;
  /// Releases the picked service, for others take the place of these.
  std::function<void()> unpick;
  std::function<void(const std::filesystem::path&)> openFile;
  /// Begins with the services of a server.
  std::function<void(const QString& server)> offerServer;
};

/// Projects of the main window: opened, saved, dropped on it, and the last session, which comes back.
class ProjectDesk : public QObject {
  Q_OBJECT

 public:
  /// @param folder of the session and of the settings of the viewer.
  ProjectDesk(host::ComposedHost host, DeskParts parts, std::filesystem::path folder);
  ~ProjectDesk() override;

  /// Brings the last session back and keeps this one from now on.
  void keepSession();
  /// Keeps at once what waits to be kept. @returns whether the window may close: a map that would be lost
  /// then is asked about.
  [[nodiscard]] bool mayEnd();
  /// Whether services or system of the map differ from those of the project; looking around changes nothing.
  [[nodiscard]] bool isUnsaved() const;
  /// Puts its services in place of those of the list. Changes that no project holds are asked about.
  void open(const std::filesystem::path& file);
  /// Rasters, services, folders and projects.
  void take(const std::vector<std::filesystem::path>& files);

  [[nodiscard]] Project snapshot() const;
  [[nodiscard]] const QList<QAction*>& actions() const { return actions_; }
  [[nodiscard]] QMenu& recentProjects() const { return *recentProjects_; }
  [[nodiscard]] QMenu& recentServers() const { return *recentServers_; }
  /// What of the viewer is kept beside projects.
  [[nodiscard]] QSettings& settings() const { return *settings_; }
  /// Where the last export went; empty before the first one.
  [[nodiscard]] std::filesystem::path exportFolder() const;
  void noteExport(const std::filesystem::path& file);

 signals:
  /// Something for the status bar.
  void told(const QString& news);
  /// @param problem for a message.
  void failed(const QString& problem);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void makeActions();
  void begin();
  void openByHand();
  /// @returns whether it is saved, as the next two.
  bool save();
  bool saveAs();
  bool saveTo(const std::filesystem::path& file);
  [[nodiscard]] bool letGo();
  [[nodiscard]] bool settle(UnsavedWish wish);
  [[nodiscard]] std::unique_ptr<SessionKeeper> makeKeeper(SessionFile file);
  void followProject(const std::filesystem::path& file);
  void showTitle();
  void markChanges();
  /// @returns what is to be told of it afterwards, for a message; empty for nothing.
  [[nodiscard]] QString show(const Project& project);
  [[nodiscard]] QString showMap(const Project& project);
  void tellMissing();
  void setFile(const std::filesystem::path& file);
  void listProjects();
  void listServers();

  host::ComposedHost host_;
  DeskParts parts_;
  std::filesystem::path folder_;
  std::filesystem::path file_;  ///< of the project; empty for one that has none yet
  Project saved_;               ///< as its file has it
  bool isToKeep_ = false;       ///< the session, that is
  QString unkept_;              ///< why it is not; empty where it is
  bool isToTell_ = false;       ///< of missing services, once all are read
  std::unique_ptr<QSettings> settings_;
  std::unique_ptr<SessionKeeper> keeper_;
  QList<QAction*> actions_;
  QMenu* recentProjects_;
  QMenu* recentServers_;
};

}  // namespace vlclientui::viewer
