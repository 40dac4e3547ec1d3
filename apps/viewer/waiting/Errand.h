#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>

#include "client/facade/CancelSwitch.h"

namespace vlclientui::viewer {

/// A piece of work that may wait for others, on a thread of its own, so that windows stay usable. Ends in
/// `done`, once, on the thread of this object.
class Errand : public QObject {
  Q_OBJECT

 public:
  /// @returns what is to be told of it. A failure that it throws is told, too. It must hold all that it uses,
  /// for it may outlive this object.
  using Work = std::function<std::string()>;

  enum class End { Well, Failed, GivenUp };

  explicit Errand(Work work, QObject* parent = nullptr);
  /// Gives it up, without `done`, and waits for its end for a short time. What is deaf then runs on alone.
  ~Errand() override;

  void start();
  /// Ends it at once for whoever waits; the work ends soon by itself.
  void giveUp();

 signals:
  /// It takes longer than people wait without a sign.
  void overdue();
  /// @param words what the work returned, or why it failed; empty where it was given up.
  void done(vlclientui::viewer::Errand::End end, const QString& words);

 private:
  struct Shared;

  void takeEnd();
  void finish(End end, const QString& words);

  Work work_;
  std::shared_ptr<Shared> shared_;
  bool isOver_ = false;
};

}  // namespace vlclientui::viewer
