#pragma once

#include <QMainWindow>
#include <filesystem>

#include "ExportServices.h"
#include "MapView.h"
#include "ServiceListModel.h"
#include "host/Compose.h"

class QLabel;
class QListView;
class QPlainTextEdit;
class QStackedWidget;

namespace vlclientui::viewer {

/// The viewer's window: the picked services with their pictures, a map of them, and the document that the
/// add-service dialog handed over.
class ViewerWindow : public QMainWindow {
  Q_OBJECT

 public:
  /// @param documents the folder into which the selected services are written; made when it is missing.
  ViewerWindow(host::ComposedHost composed, std::filesystem::path documents);

  [[nodiscard]] const ServiceListModel& services() const { return *services_; }
  [[nodiscard]] const host::ComposedHost& host() const { return composed_; }
  [[nodiscard]] const std::filesystem::path& selectedServicesFile() const { return selectedServicesFile_; }

  /// Lists the services of a selected-services document and keeps the document; an empty text adds nothing.
  /// @throws RuntimeFailure when it is no document or cannot be kept.
  void takeSelectedServices(const std::string& selectedServices);

  // The actions of menu and toolbar.
  void addServices();
  void removeService();
  void zoomToService();
  void exportPickedService();
  void showHelp();
  void showAbout();

 private:
  void buildActions();
  void buildRectangleActions();
  void buildMenus(QAction* add, QAction* world);
  void buildToolBar(QAction* add, QAction* world);
  QAction* addAction(const QString& name, const QString& text, const QKeySequence& key,
                     void (ViewerWindow::*slot)());
  QWidget* buildServicePane();
  QWidget* buildDocumentPane();
  void writeSelectedServices(const std::string& selectedServices);
  void showDocument(const std::string& xml);
  [[nodiscard]] std::vector<host::NamedPlace> placesToExport() const;
  void showExportOutcome(const ExportOutcome& outcome);
  void addExportedFile(const std::filesystem::path& file);
  void showView();
  void enableActions();
  [[nodiscard]] int currentRow() const;

  host::ComposedHost composed_;
  std::filesystem::path selectedServicesFile_;
  ServiceListModel* services_;
  QStackedWidget* servicePane_ = nullptr;
  QListView* list_ = nullptr;
  MapView* map_;
  QPlainTextEdit* document_ = nullptr;
  QLabel* viewLabel_;
  QAction* remove_ = nullptr;
  QAction* zoomToService_ = nullptr;
  QAction* export_ = nullptr;
  QAction* drawRectangle_ = nullptr;
  QAction* clearRectangle_ = nullptr;
};

}  // namespace vlclientui::viewer
