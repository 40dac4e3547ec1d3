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
  /// Whether edits that wait are settled, so that other services may take the place of these.
  std::function<bool()> settleEdits;
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
  /// Keeps at once what waits to be kept.
  void finish();
  /// Puts its services in place of those of the list.
  void open(const std::filesystem::path& file);
  /// Rasters, services, folders and projects.
  void take(const std::vector<std::filesystem::path>& files);

  [[nodiscard]] Project snapshot() const;
  [[nodiscard]] const QList<QAction*>& actions() const { return actions_; }
  [[nodiscard]] QMenu& recentProjects() const { return *recentProjects_; }
  [[nodiscard]] QMenu& recentServers() const { return *recentServers_; }
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
  void save();
  void saveAs();
  void saveTo(const std::filesystem::path& file);
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
  bool isToTell_ = false;       ///< of missing services, once all are read
  std::unique_ptr<QSettings> settings_;
  std::unique_ptr<SessionKeeper> keeper_;
  QList<QAction*> actions_;
  QMenu* recentProjects_;
  QMenu* recentServers_;
};

}  // namespace vlclientui::viewer
