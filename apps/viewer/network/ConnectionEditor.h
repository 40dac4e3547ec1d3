#pragma once

#include <QDialog>
#include <functional>
#include <memory>

#include "viewer/network/ConnectionDraft.h"
#include "viewer/waiting/Errand.h"
#include "viewer/waiting/WaitLine.h"

class QComboBox;
class QDialogButtonBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace vlclientui::viewer {

/// A window in which a person describes one connection.
class ConnectionEditor : public QDialog {
  Q_OBJECT

 public:
  /// Saves what was described, on another thread, since the desktop may take its time. @returns what is to be
  /// told of it. @throws RuntimeFailure with why it is refused.
  using Save = std::function<std::string(const client::ConnectionEdit&)>;

  /// @param file of connections, as it is shown.
  ConnectionEditor(ConnectionDraft draft, std::string file, Save save, QWidget* parent = nullptr);

  /// What the desktop's secret store says of itself, once it is known.
  void tellOfDesktop(const std::string& problem);

  /// Of the connection that was saved.
  [[nodiscard]] const std::string& name() const { return draft_.connection.name; }
  /// What is to be told of it.
  [[nodiscard]] const QString& saved() const { return saved_; }

  /// Saves; closes the window once that has gone well.
  void accept() override;
  /// Of a save that waits: gives it up. Else closes the window.
  void reject() override;

 private:
  void build();
  void fill();
  void read();
  void takeAddress();
  void showFields();
  void showWords();
  void makeRoom();
  void say(const QString& problem);
  void save();
  void endSave(Errand::End end, const QString& words);
  void showSaving(bool isSaving);

  ConnectionDraft draft_;
  ConnectionDraft::DesktopProblem desktop_;
  std::string file_;
  Save save_;
  QString saved_;
  std::unique_ptr<Errand> saving_;
  WaitLine* wait_;
  QDialogButtonBox* buttons_;
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
