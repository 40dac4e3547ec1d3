#pragma once

#include <QDialog>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>

#include "host/ConnectionTrial.h"
#include "viewer/network/ConnectionEditor.h"
#include "viewer/waiting/Errand.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QTreeWidget;

namespace vlclientui::viewer {

/// The connections of the user: listed, added, changed, removed and tried. Whatever waits for a server or for
/// the desktop's secret store does so on a thread of its own, and can be given up.
class ConnectionsWindow : public QDialog {
  Q_OBJECT

 public:
  /// @param book must outlive the window, and what it gave up: a store that is deaf keeps its thread.
  ConnectionsWindow(client::ConnectionBook& book, std::shared_ptr<client::CatalogueServer> catalogue,
                    QWidget* parent = nullptr);

  /// Whether it waits for a server or for the desktop.
  [[nodiscard]] bool isWaiting() const { return errand_ != nullptr; }

 private:
  using EndOfErrand = std::function<void(Errand::End, const QString& words)>;

  QWidget* buildList();
  QWidget* buildButtons();
  QWidget* buildWait();
  QPushButton* button(const char* name, const QString& text, const QString& toolTip,
                      void (ConnectionsWindow::*slot)());
  void askDesktop();
  void listAgain(const std::string& picked);
  void enableButtons();
  void add();
  void edit();
  void remove();
  void tryPicked();
  void giveUp();
  void describe(ConnectionDraft draft);
  void removeNow(const QString& name);
  void endRemoving(const QString& name, Errand::End end, const QString& words);
  /// Does work on another thread; the wait shows at once, or after a while.
  enum class Waiting { Seen, SeenLate };
  void begin(Errand::Work work, Waiting waiting, EndOfErrand end);
  /// Whether the step went well; why not is told at the foot of the window.
  template <class Step>
  bool succeeds(Step step);
  [[nodiscard]] std::optional<client::Connection> picked() const;

  client::ConnectionBook& book_;
  std::shared_ptr<client::CatalogueServer> catalogue_;
  QTreeWidget* list_ = nullptr;
  QPushButton* edit_ = nullptr;
  QPushButton* remove_ = nullptr;
  QPushButton* try_ = nullptr;
  QPushButton* giveUp_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QLabel* news_ = nullptr;
  QPointer<ConnectionEditor> editor_;
  ConnectionDraft::DesktopProblem desktop_;
  std::unique_ptr<Errand> asking_;
  std::unique_ptr<Errand> errand_;
};

}  // namespace vlclientui::viewer
