#pragma once

#include <QObject>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <vector>

#include "client/facade/CancelSwitch.h"
#include "client/facade/ServiceDrawing.h"
#include "client/mapping/ServiceColors.h"

namespace vlclientui::viewer {

/// Reads on another thread what colors are chosen from. What is asked next takes the place of what was asked
/// before.
class ColorsReader : public QObject {
  Q_OBJECT

 public:
  using Drawing = std::shared_ptr<const client::ServiceDrawing>;

  explicit ColorsReader(QObject* parent = nullptr);
  /// Gives up what is being read, and waits for its end.
  ~ColorsReader() override;

  void readColors(const Drawing& drawing);
  void readWords(const Drawing& drawing);
  void readSpreads(const Drawing& drawing, const std::vector<int>& bands);
  void giveUp();

 signals:
  void colorsRead(const vlclientui::client::ServiceColors& colors);
  void wordsRead(const vlclientui::client::ServiceWords& words);
  void spreadsRead(const std::vector<int>& bands, const std::vector<vlclientui::client::BandSpread>& spreads);
  /// @param problem for a person.
  void failed(const QString& problem);

 private:
  /// @param work on another thread; what it returns is done on that of this object.
  void begin(std::function<std::function<void()>()> work);

  int question_ = 0;
  client::CancelSwitch work_;
  QThreadPool pool_;
};

}  // namespace vlclientui::viewer
