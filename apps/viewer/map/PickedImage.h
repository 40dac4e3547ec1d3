#pragma once

#include <QObject>
#include <QSize>
#include <QString>
#include <QThreadPool>
#include <QTimer>
#include <functional>
#include <memory>

#include "client/facade/CancelSwitch.h"
#include "viewer/map/ShownImage.h"
#include "viewer/services/PickedService.h"

namespace vlclientui::viewer {

/// Opens the picked service on another thread, and tells it there what of it the map shows: its documents
/// tell of that image. Requests that arrive meanwhile replace each other: only the last is followed.
class PickedImage : public QObject {
  Q_OBJECT

 public:
  /// Opens a service, on another thread. Throws when it cannot be read.
  using Open = std::function<std::shared_ptr<PickedService>(const QString& reference, const QString& title)>;

  explicit PickedImage(Open open, QObject* parent = nullptr);
  /// Gives up what is being opened or drawn, and waits for its end.
  ~PickedImage() override;

  /// Releases the service and opens another. @param reference empty for none. @param properties that were
  /// applied to it before; empty for its own. Those that it cannot follow any more are told by `failed`.
  void pick(const QString& reference, const QString& title, const std::string& properties = {});
  /// Sets what the map shows; the service hears of it soon.
  void setView(const host::GeographicEnvelope& view, QSize pixels);
  /// Draws it with these properties from now on.
  /// @throws RuntimeFailure for a text that is no properties document, or when no service is open.
  void follow(const std::string& properties);

  /// Null until the service is open.
  [[nodiscard]] const std::shared_ptr<PickedService>& service() const { return service_; }
  [[nodiscard]] const QString& reference() const { return reference_; }
  /// Whether something is being opened or drawn, or soon will be.
  [[nodiscard]] bool isBusy() const { return opening_ || working_ || soon_.isActive(); }

 signals:
  /// The former service is released, the new one not open yet.
  void closed();
  void opened();
  /// @param problem for a person.
  void failed(const QString& problem);
  void drawn(const vlclientui::viewer::ShownImage& image);

 private:
  void giveUp();
  void open(const QString& title, const std::string& properties);
  void drawAgainSoon();
  void draw();

  Open open_;
  QString reference_;
  std::shared_ptr<PickedService> service_;
  int pick_ = 0;  ///< counts picks; results of earlier ones are dropped
  bool opening_ = false;
  bool working_ = false;
  bool again_ = false;
  client::CancelSwitch work_;  ///< of what is being opened or drawn
  host::GeographicEnvelope view_;
  QSize pixels_;
  QTimer soon_;
  QThreadPool pool_;
};

}  // namespace vlclientui::viewer
