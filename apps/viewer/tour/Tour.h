#pragma once

#include <QWidget>
#include <filesystem>

#include "viewer/tour/StepRunner.h"
#include "viewer/window/ViewerWindow.h"

class QAbstractItemView;

namespace vlclientui::viewer {

/// A walk through the viewer, the add-service window, the export window and the properties pages, acted on
/// the real widgets by keys and clicks. Leaves pictures, documents and an exported file in a folder.
class Tour {
 public:
  /// @param folder made when it is missing; files of an earlier tour are replaced.
  /// @param settingsFolder where the library keeps the user's settings file.
  Tour(ViewerWindow& viewer, std::filesystem::path folder, std::filesystem::path settingsFolder);

  /// Shows the viewer, walks, prints each step. @returns 0, or 1 when a step did not do what it should.
  int run();

 private:
  void planFirstLook();
  void planBrowsing();
  void planInformation();
  void planSilentServers();
  void planPicking();
  void planViewer();
  void planRectangle();
  void planRefusals();
  void planExport();
  void planLargeService();
  void planCanceledExport();
  void planProperties();
  void planLock();
  void planLockedSheet();
  void planEndOfLock();
  void planFilter();
  void planEnd();

  void ask(const QString& server);
  void seeRows(const QString& what, QStringList Tour::*expected);
  void seeSelected(int count);
  void enterFolder(const QString& name);
  void goUp();
  void openPane(const QString& name);
  void applyPane(const QString& name);
  void openExportWindow(int service);
  void bringToFront();
  void chooseIn(const QString& list, const QString& entry);
  void fill(const QString& box, const QString& text);
  void answer(const QString& title, const QString& part, const QString& pictureName);
  void clickIn(const QString& title, const QString& button);
  [[nodiscard]] QString textOf(const QString& box) const;
  /// As the user's locale writes it. @throws RuntimeFailure for a text that is none.
  [[nodiscard]] double numberIn(const QString& box) const;
  void fillNumber(const QString& box, double number);
  void defineLargeMosaic() const;
  void checkCanceledExport() const;
  void checkExportedFile() const;
  void clickTool(const QString& action);
  void savePicture(const QString& name, QWidget& widget) const;
  /// When the map is drawn.
  void pictureOfViewer(const QString& name);
  void picture(const QString& name, std::function<QWidget&()> widget);
  void pictureOfDialog(const QString& name);
  void checkDocuments() const;

  [[nodiscard]] QWidget& dialog() const;
  [[nodiscard]] QAbstractItemView& list() const;
  /// Row of a folder or service. @throws person::Astray when the list has none of that name.
  [[nodiscard]] int rowOf(const QString& name) const;

  ViewerWindow& viewer_;
  std::filesystem::path folder_;
  std::filesystem::path emptyFolder_;
  std::filesystem::path largeFolder_;
  std::filesystem::path settingsFile_;
  std::filesystem::path exportedFile_;
  std::filesystem::path canceledFile_;
  StepRunner runner_;
  QStringList rootRows_;    // of the sample catalogue, as first seen
  QStringList rowsBefore_;  // of the list, before a folder was entered
};

}  // namespace vlclientui::viewer
