#pragma once

#include <QDialog>
#include <QPointer>
#include <atomic>
#include <memory>
#include <optional>

#include "host/ConnectionTrial.h"
#include "viewer/network/ConnectionEditor.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QThread;
class QTreeWidget;

namespace vlclientui::viewer {

/// The connections of the user: listed, added, changed, removed and tried. A trial waits for its server on a
/// thread of its own, and can be given up.
class ConnectionsWindow : public QDialog {
  Q_OBJECT

 public:
  /// @param book must outlive the window.
  ConnectionsWindow(client::ConnectionBook& book, std::shared_ptr<client::CatalogueServer> catalogue,
                    QWidget* parent = nullptr);
  ~ConnectionsWindow() override;

  [[nodiscard]] bool isTrying() const { return trial_ != nullptr; }

 private:
  /// Shared with the thread that tries.
  struct Trial {
    std::atomic<bool> isGivenUp{false};
    host::TrialOutcome outcome;
  };

  QWidget* buildList();
  QWidget* buildButtons();
  QWidget* buildTrial();
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
  void endTrial();
  void describe(ConnectionDraft draft);
  QString save(const client::ConnectionEdit& edit);
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
  QThread* asking_ = nullptr;
  QThread* trying_ = nullptr;
  std::shared_ptr<Trial> trial_;
};

}  // namespace vlclientui::viewer
