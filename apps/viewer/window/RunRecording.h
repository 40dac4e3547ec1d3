#pragma once

#include <QAction>
#include <memory>
#include <string>

#include "contracts/System.h"

class QMainWindow;

namespace vlclientui::runs {
class RunRecorder;
}

namespace vlclientui::viewer {

/// The entry of a menu that begins to write down what a person does in the library's windows, and at the next
/// click ends that and keeps it in a file which `vlhost run` does again.
class RunRecording : public QAction {
  Q_OBJECT

 public:
  RunRecording(QMainWindow& window, std::shared_ptr<const System> system);
  ~RunRecording() override;

  [[nodiscard]] bool isRecording() const { return recorder_ != nullptr; }
  /// Ends it and has it saved. @returns false where the person neither saves nor drops it: it goes on.
  bool end();
  /// Ends it in a file of its own, where nobody can be asked any more. @param folder is made.
  /// @returns the file; empty where there is nothing to keep, or it cannot be written.
  QString keepIn(const QString& folder);

 signals:
  /// In passing.
  void said(const QString& news);

 private:
  void clicked();
  void describe();
  [[nodiscard]] bool isKept(const std::string& text);
  [[nodiscard]] bool mayDrop();
  void over();

  QMainWindow& window_;
  std::shared_ptr<const System> system_;
  std::unique_ptr<runs::RunRecorder> recorder_;
};

/// @param menu the title of the menu that gets the entry, before its last one.
void followRecording(QMainWindow& window, const std::shared_ptr<const System>& system, const QString& menu);

/// For a window that is about to close: ends its recording, if there is one. @returns false to stay.
[[nodiscard]] bool mayEndRecording(const QMainWindow& window);

}  // namespace vlclientui::viewer
