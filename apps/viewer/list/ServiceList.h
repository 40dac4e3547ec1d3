#pragma once

#include <QListView>
#include <vector>

#include "viewer/list/ServiceListModel.h"

namespace vlclientui::viewer {

/// The list of services: the current one is picked, several may be selected. Check boxes show and hide; rows
/// are dragged, or moved by Ctrl+Up and Ctrl+Down. Its actions act on what is selected, and are its context
/// menu.
class ServiceList : public QListView {
  Q_OBJECT

 public:
  explicit ServiceList(ServiceListModel& services, QWidget* parent = nullptr);

  /// Makes it the current one, and the only one that is selected.
  void pick(int row);
  /// From the top: what is selected, else the picked one.
  [[nodiscard]] std::vector<int> selectedRows() const;

  // The actions.
  void moveUp();
  void moveDown();
  void moveToTop();
  void moveToBottom();
  /// Hides them where all are visible, else shows them.
  void toggleVisible();
  void rename();
  /// @param opacity 0 to 1.
  void setOpacity(double opacity);
  void askOpacity();

  /// Those that change the list, for a menu of the window too.
  [[nodiscard]] const QList<QAction*>& changing() const { return changing_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void makeActions();
  [[nodiscard]] QAction* opacityAction();
  void enableActions();
  void moveSelected(int before);
  [[nodiscard]] int rowBefore(QPoint place) const;

  ServiceListModel& services_;
  QList<QAction*> changing_;
};

}  // namespace vlclientui::viewer
