#pragma once

#include <QDialog>

#include "viewer/export/ExportServices.h"

class QDialogButtonBox;
class QGridLayout;

namespace vlclientui::viewer {

/// Shows how an export went: file, size, time, or why there is none. For a file that was written it offers to
/// lay it into the map, to open its folder and to copy its path. It can be saved as a job. The
/// `GetImage` element that the export window handed back stands behind "Details".
class ExportResult : public QDialog {
  Q_OBJECT

 public:
  explicit ExportResult(const ExportOutcome& outcome, QWidget* parent = nullptr);

 signals:
  /// The window closes then.
  void addToMapWanted();
  /// The window stays.
  void openFolderWanted();
  /// The window stays.
  void saveJobWanted();

 private:
  [[nodiscard]] QWidget* details(const std::string& request);
  [[nodiscard]] QWidget* headline(const ExportOutcome& outcome) const;
  [[nodiscard]] QGridLayout* facts(const ExportOutcome& outcome) const;
  [[nodiscard]] QDialogButtonBox* buttons(const ExportOutcome& outcome);
};

}  // namespace vlclientui::viewer
