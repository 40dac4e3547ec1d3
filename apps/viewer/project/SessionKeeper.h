#pragma once

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <functional>
#include <mutex>

#include "viewer/project/SessionFile.h"

namespace vlclientui::viewer {

/// Keeps the session while it changes: a few seconds after a change, off the thread of the windows.
class SessionKeeper : public QObject {
  Q_OBJECT

 public:
  using Snapshot = std::function<Project()>;

  /// @param snapshot called on this thread.
  SessionKeeper(SessionFile file, Snapshot snapshot, QObject* parent = nullptr);
  /// Waits until what was begun is written.
  ~SessionKeeper() override;

  /// Something is other than it was; it is kept soon, and with it all that changes until then.
  void noteChange();
  /// Keeps now what waits to be kept, and what could not be kept before. Returns once it is, or after some
  /// seconds; then the destructor waits.
  void finish();
  /// Why it could not be kept the last time; empty where it is kept.
  [[nodiscard]] QString problem() const;

 signals:
  /// @param problem for a person.
  void failed(const QString& problem);

 private:
  void keep();
  void takeProblem(const QString& problem);

  SessionFile file_;
  Snapshot snapshot_;
  QTimer soon_;
  QThreadPool pool_;
  QString problem_;  ///< of the last time
  mutable std::mutex mutex_;
};

}  // namespace vlclientui::viewer
