#pragma once

#include <QObject>
#include <QString>
#include <filesystem>

class QWidget;

namespace vlclientui::viewer {

/// Proposes its file in a folder of the host to an export window that stands, or to its content in a pane.
/// @param folder native; an empty one, or one that is gone, leaves the library's own.
void proposeFile(const QWidget& window, const std::filesystem::path& folder);

/// While it lives, the export window that opens tells in its title what is exported, and proposes its file in
/// a folder of the host. A name that a person has typed stays.
class ExportWindowSetup : public QObject {
 public:
  /// @param subject behind the window's own title; empty for none.
  /// @param folder native; an empty one, or one that is gone, leaves the library's own.
  ExportWindowSetup(QString subject, std::filesystem::path folder);
  ~ExportWindowSetup() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QString subject_;
  std::filesystem::path folder_;
};

}  // namespace vlclientui::viewer
