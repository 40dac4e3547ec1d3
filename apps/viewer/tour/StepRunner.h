#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

namespace vlclientui::viewer {

/// Runs steps one after another from the event loop, so that a step which opens a modal window is followed
/// by steps inside that window; all others follow once it is over. Each step and its outcome is printed. The
/// first that fails ends the run.
class StepRunner : public QObject {
 public:
  using QObject::QObject;

  /// Adds an action of a person. It fails by an exception.
  void act(const QString& what, std::function<void()> action);
  /// Adds a condition that must become true within half a minute. An exception means "not yet".
  void see(const QString& what, std::function<bool()> condition);

  /// Called when a step has failed, while its windows are still there.
  void onFailure(std::function<void()> look) { look_ = std::move(look); }

  /// Runs everything; needs no other event loop. @returns 0, or 1 when a step failed.
  int run();

 private:
  struct Step {
    QString what;
    std::function<bool()> tryIt;
    bool mayWait = false;
  };

  void next();
  void look(const Step& step);
  void goOn(const char* outcome, const Step& step);
  [[nodiscard]] bool attempt(const Step& step);
  [[nodiscard]] bool isHeldUp() const;
  void fail(const Step& step, const QString& reason);

  std::vector<Step> steps_;
  std::function<void()> look_;
  std::size_t at_ = 0;
  std::vector<QPointer<QWidget>> acting_;  ///< the window in front of each action that has not returned
  QElapsedTimer waiting_;
  QString lastReason_;
};

}  // namespace vlclientui::viewer
