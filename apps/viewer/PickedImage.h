#pragma once

#include <QObject>
#include <QSize>
#include <QString>
#include <QThreadPool>
#include <QTimer>
#include <functional>
#include <memory>

#include "PickedService.h"
#include "ShownImage.h"

namespace vlclientui::viewer {

/// Opens the picked service and draws it, off the user-interface thread. Of several pictures that are wanted
/// while one is being drawn only the last is drawn.
class PickedImage : public QObject {
  Q_OBJECT

 public:
  /// Opens a service, on another thread. Throws when it cannot be read.
  using Open = std::function<std::shared_ptr<PickedService>(const QString& reference, const QString& title)>;

  explicit PickedImage(Open open, QObject* parent = nullptr);
  /// Waits for what is being drawn.
  ~PickedImage() override;

  /// Lets go of the service and opens another. @param reference empty for none.
  void pick(const QString& reference, const QString& title);
  /// What the map shows from now on; it is drawn soon.
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
  /// The former service was let go; this one is not open yet.
  void closed();
  void opened();
  /// @param problem for a person.
  void failed(const QString& problem);
  void drawn(const vlclientui::viewer::ShownImage& image);

 private:
  void open(const QString& title);
  void draw();

  Open open_;
  QString reference_;
  std::shared_ptr<PickedService> service_;
  int pick_ = 0;  ///< counts the picks; what an earlier one comes to is dropped
  bool opening_ = false;
  bool working_ = false;
  bool again_ = false;
  host::GeographicEnvelope view_;
  QSize pixels_;
  QTimer soon_;
  QThreadPool pool_;
};

}  // namespace vlclientui::viewer
