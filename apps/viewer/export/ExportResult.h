#pragma once

#include <QDialog>

#include "viewer/export/ExportServices.h"

class QDialogButtonBox;
class QGridLayout;

namespace vlclientui::viewer {

/// Shows how an export went and the `GetImage` element that the export window handed back. For a file that
/// was written it offers to lay it into the map and to open its folder.
class ExportResult : public QDialog {
  Q_OBJECT

 public:
  explicit ExportResult(const ExportOutcome& outcome, QWidget* parent = nullptr);

 signals:
  /// The window closes then.
  void addToMapWanted();
  /// The window stays.
  void openFolderWanted();

 private:
  [[nodiscard]] QWidget* headline(const ExportOutcome& outcome) const;
  [[nodiscard]] QGridLayout* facts(const ExportOutcome& outcome) const;
  [[nodiscard]] QDialogButtonBox* buttons(bool exported);
};

}  // namespace vlclientui::viewer
