#pragma once

#include <QObject>
#include <QThreadPool>
#include <memory>
#include <vector>

#include "client/facade/CancelSwitch.h"
#include "client/facade/ServiceDrawing.h"
#include "viewer/values/ValuesText.h"

namespace vlclientui::viewer {

/// A service that is asked for its values.
struct AskedService {
  QString name;
  std::shared_ptr<const client::ServiceDrawing> drawing;
};

/// Reads values of services on other threads. What is asked next takes the place of what was asked before.
class ValuesReader : public QObject {
  Q_OBJECT

 public:
  explicit ValuesReader(QObject* parent = nullptr);
  /// Gives up what is being read, and waits for its end.
  ~ValuesReader() override;

  void ask(const std::vector<AskedService>& services, const client::AskedPlace& place);
  /// What has been read stays.
  void giveUp();

  /// In the order in which they were asked.
  [[nodiscard]] const std::vector<ReadValues>& values() const { return values_; }
  [[nodiscard]] bool isReading() const;

 signals:
  /// There is more than before, or no more to come.
  void changed();

 private:
  void take(int question, std::size_t number, const ReadValues& read);

  int question_ = 0;
  std::vector<ReadValues> values_;
  client::CancelSwitch work_;
  QThreadPool pool_;
};

}  // namespace vlclientui::viewer
