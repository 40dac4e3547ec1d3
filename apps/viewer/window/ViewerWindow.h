#pragma once

#include <QMainWindow>
#include <filesystem>

#include "contracts/RuntimeFailure.h"
#include "host/Compose.h"
#include "host/DesktopWindows.h"
#include "viewer/colors/ColorsDesk.h"
#include "viewer/docks/PropertyDocks.h"
#include "viewer/export/ExportServices.h"
#include "viewer/list/ServicePane.h"
#include "viewer/map/MapView.h"
#include "viewer/map/PickedImage.h"
#include "viewer/tools/MapTools.h"
#include "viewer/values/ValuesDock.h"
#include "viewer/window/HandedOverPane.h"
#include "viewer/window/ProjectDesk.h"
#include "viewer/window/ViewerActions.h"

namespace vlclientui::viewer {

/// The viewer's window: the picked services with their pictures, a map of them, and the document that the
/// add-service dialog handed over.
class ViewerWindow : public QMainWindow {
  Q_OBJECT

 public:
  /// @param documents the folder into which the selected services are written; made when it is missing.
  ViewerWindow(host::ComposedHost composed, std::filesystem::path documents);
  ~ViewerWindow() override;

  [[nodiscard]] const ServiceListModel& services() const { return *services_; }
  [[nodiscard]] const host::ComposedHost& host() const { return composed_; }
  [[nodiscard]] const std::filesystem::path& selectedServicesFile() const { return selectedServicesFile_; }

  /// Lists the services of a selected-services document and keeps the document; an empty text adds nothing.
  /// @throws RuntimeFailure when it is no document. That it cannot be kept is told in passing.
  void takeSelectedServices(const std::string& selectedServices);
  /// Lists a raster, a mosaic definition or a saved service (.VLRef) and picks it, or opens a project. One
  /// that is listed already is read anew.
  void openFile(const std::filesystem::path& file);
  /// Brings the last session back, and keeps this one.
  void keepSession();
  /// Begins with the services of a server: a host, an address or a folder.
  void offerServer(const std::string& server);
  /// Whether the picked service is being opened, or something on the map drawn.
  [[nodiscard]] bool isDrawing() const { return image_->isBusy() || map_->isDrawingServices(); }

  // The actions of menu and toolbar.
  void addServices();
  void removeService();
  void zoomToService();
  void openService();
  void exportPickedService();
  void showServiceProperties();
  void showViewPointDialog();
  void showConnections();
  /// Draws and reads all anew, from files that may have changed.
  void reload();

  /// Null until it is open.
  [[nodiscard]] const std::shared_ptr<PickedService>& pickedService() const { return image_->service(); }
  /// Draws the picked service with these properties. What does not work is told in a message.
  bool drawWith(const std::string& properties);
  /// @param page of the help, its file name without the ending.
  void showHelp(const char* page);
  void showAbout();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  /// Whole or not at all. @returns why it cannot be written; empty when it is.
  [[nodiscard]] QString writeSelectedServices(const std::string& selectedServices) const;
  [[nodiscard]] std::vector<std::string> presentProperties() const;
  [[nodiscard]] std::vector<host::NamedPlace> placesToExport() const;
  void showExportOutcome(const ExportOutcome& outcome);
  void listAnew(const std::filesystem::path& file);
  void enableActions();
  void followMap();
  void makeValues();
  [[nodiscard]] std::unique_ptr<ProjectDesk> makeDesk();
  void pickRow(int row);
  /// Null for none.
  void pickNow(const ServiceListModel::Row* row);
  void askBeforePicking();
  /// Whether no edit of the picked service waits any more; a person is asked what becomes of them.
  [[nodiscard]] bool settleEdits();
  [[nodiscard]] bool mayLose(const QString& question);
  /// Shows a window of a dialog object of its own, and draws the service with what it leaves.
  void changeIn(const std::function<bool(IOVLServicePropertiesDialog&)>& showWindow);
  void tell(const QString& title, const RuntimeFailure& problem);
  /// Tells something in the status bar for a while.
  void say(const QString& news);
  [[nodiscard]] QString shown(const std::string& text) const;
  void showImage(const ShownImage& image);
  [[nodiscard]] int currentRow() const;
  /// Null for none.
  [[nodiscard]] const ServiceListModel::Row* pickedRow() const;
  /// Tells why the map shows nothing of the picked service, where that is so.
  void tellOfPlace();

  host::ComposedHost composed_;
  std::filesystem::path selectedServicesFile_;
  ServiceListModel* services_;
  ServicePane* servicePane_;
  ServiceList* list_;
  MapView* map_;
  MapTools* tools_;
  ValuesDock* values_ = nullptr;
  ColorsDesk* colors_ = nullptr;
  HandedOverPane* handedOver_;
  std::unique_ptr<ProjectDesk> desk_;
  ViewerActions actions_ = {};
  PickedImage* image_;
  host::NewsListener news_;
  std::unique_ptr<PropertyDocks> docks_;  ///< goes before the widgets in which its pages stand
};

}  // namespace vlclientui::viewer
