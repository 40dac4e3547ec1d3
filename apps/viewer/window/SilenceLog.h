#pragma once

#include <QMainWindow>
#include <QObject>
#include <QString>
#include <QTime>
#include <deque>
#include <memory>

#include "contracts/Silence.h"
#include "contracts/System.h"

namespace vlclientui::viewer {

/// What ended without a word in the windows of the viewer: the last routines, newest first. Hears the thread
/// that it is made on.
class SilenceLog : public QObject {
  Q_OBJECT

 public:
  struct Entry {
    QTime time;
    QString routine;
    QString reason;
  };
  /// Older entries are forgotten.
  static constexpr std::size_t limit = 200;

  /// @param system gives paths their shown form.
  SilenceLog(const std::shared_ptr<const System>& system, QObject* parent);
  [[nodiscard]] const std::deque<Entry>& entries() const { return entries_; }
  /// A line for each entry: time, routine, reason, with tabs between.
  [[nodiscard]] QString text() const;

 signals:
  void told();

 private:
  std::deque<Entry> entries_;
  SilenceListener listener_;
};

/// Keeps a log for a window: the last reason stands in its status bar for a while, behind whatever else is
/// told there, and "Messages..." at the end of a menu opens the list.
/// @param menu the title of the menu, without its mnemonic. @returns the log, a child of the window.
SilenceLog* followSilence(QMainWindow& window, const std::shared_ptr<const System>& system,
                          const QString& menu);

}  // namespace vlclientui::viewer
