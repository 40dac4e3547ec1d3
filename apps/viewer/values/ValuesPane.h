#pragma once

#include <QWidget>

#include "viewer/list/ServiceListModel.h"
#include "viewer/map/MapView.h"
#include "viewer/values/ValuesReader.h"

class QLabel;
class QPushButton;
class QTreeWidget;

namespace vlclientui::viewer {

/// The values of all visible services under a click on the map, while it is shown. What takes long is told,
/// and can be canceled; all of it, or what is selected, can be copied.
class ValuesPane : public QWidget {
  Q_OBJECT

 public:
  ValuesPane(const ServiceListModel& services, MapView& map, QWidget* parent = nullptr);

  /// Reads the values there. @param place in coordinates of the map.
  void ask(client::MapPoint place);
  [[nodiscard]] bool isReading() const { return reader_->isReading(); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void showValues();
  void showAnswer(int number);
  void copy();

  const ServiceListModel& services_;
  MapView& map_;
  ValuesReader* reader_;
  QLabel* place_;
  QTreeWidget* tree_;
  std::vector<ReadValues::State> shown_;  ///< of each service
  std::vector<QStringList> open_;         ///< of each service: what a person has opened
  QPushButton* copy_;
  QPushButton* cancel_;
};

}  // namespace vlclientui::viewer
