#pragma once

#include <QWidget>

class QAction;
class QLabel;
class QPushButton;
class QSettings;

namespace vlclientui::viewer {

class MapCopies;

/// Small copies of large images in the status bar: offers them where they would be of use, and tells how it
/// goes with them. What a person chooses is remembered; a person who has chosen nothing is asked without a
/// window.
class CopyStatus : public QWidget {
  Q_OBJECT

 public:
  /// @param settings outlive it. @param parent may be null.
  CopyStatus(MapCopies& copies, QSettings& settings, QWidget* parent = nullptr);

  /// Whether copies are made: for a menu.
  [[nodiscard]] QAction& action() const { return *action_; }

 private:
  void choose(bool isWanted);
  void refresh();

  MapCopies& copies_;
  QSettings& settings_;
  QAction* action_;
  QLabel* text_;
  QPushButton* yes_;
  QPushButton* no_;
  QPushButton* giveUp_;
};

}  // namespace vlclientui::viewer
