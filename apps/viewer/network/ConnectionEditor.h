#pragma once

#include <QDialog>
#include <functional>

#include "viewer/network/ConnectionDraft.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace vlclientui::viewer {

/// A window in which a person describes one connection.
class ConnectionEditor : public QDialog {
  Q_OBJECT

 public:
  /// Saves what was described. @returns why it is refused; empty closes the window.
  using Save = std::function<QString(const client::ConnectionEdit&)>;

  /// @param file of connections, as it is shown.
  ConnectionEditor(ConnectionDraft draft, std::string file, Save save, QWidget* parent = nullptr);

  /// What the desktop's secret store says of itself, once it is known.
  void tellOfDesktop(const std::string& problem);

  void accept() override;

 private:
  void build();
  void fill();
  void read();
  void takeAddress();
  void showFields();
  void showWords();
  void makeRoom();
  void say(const QString& problem);

  ConnectionDraft draft_;
  ConnectionDraft::DesktopProblem desktop_;
  std::string file_;
  Save save_;
  QFormLayout* fields_;
  QLineEdit* name_;
  QLineEdit* address_;
  QComboBox* signIn_;
  QLineEdit* user_;
  QLineEdit* tokenName_;
  QLineEdit* secret_;
  QComboBox* keeping_;
  QLabel* words_;
  QLabel* problem_;
};

}  // namespace vlclientui::viewer
