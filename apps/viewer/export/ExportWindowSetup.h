#pragma once

#include <QObject>
#include <QString>
#include <filesystem>

class QLineEdit;

namespace vlclientui::viewer {

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
  void propose(QLineEdit& line) const;

  QString subject_;
  std::filesystem::path folder_;
};

}  // namespace vlclientui::viewer
