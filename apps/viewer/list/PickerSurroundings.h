#pragma once

#include <QObject>
#include <QPointer>
#include <vector>

#include "client/facade/CatalogueServerClient.h"

class QLabel;
class QToolButton;
class QWidget;

namespace vlclientui::viewer {

/// While it lives, the add-service window that opens gets a line of the host's above its list: the folder in
/// which the list stands, a way back to the one above, and what the server's list left out.
class PickerSurroundings : public QObject {
  Q_OBJECT

 public:
  PickerSurroundings();
  ~PickerSurroundings() override;

  void setLeftOut(std::vector<client::LeftOut> leftOut);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void stand(QWidget& control);
  void follow(QWidget& list);
  void goBack();
  void showLeftOut();
  void tellLeftOut();

  std::vector<client::LeftOut> leftOut_;
  QPointer<QWidget> line_;
  QPointer<QWidget> list_;
  QToolButton* back_ = nullptr;
  QLabel* place_ = nullptr;
  QToolButton* more_ = nullptr;
};

}  // namespace vlclientui::viewer
