#pragma once

#include <QImage>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <map>
#include <memory>
#include <optional>

#include "client/facade/CancelSwitch.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/ServiceDrawing.h"
#include "host/Compose.h"
#include "host/Services.h"

namespace vlclientui::viewer {

/// What the viewer shows of a service.
struct LoadedService {
  QString title;
  QString details;  ///< one line: bands, pixel type, size
  std::optional<host::GeographicEnvelope> envelope;
  QImage picture;  ///< of the whole service; null when it cannot be drawn
  std::shared_ptr<const client::ServiceDrawing> drawing =
      nullptr;              ///< for the map; null when it cannot be read
  QString problem;          ///< why it cannot be read, or there is no picture of it
  bool isOfServer = false;  ///< its pixels come from servers
};

/// Reads services off the user-interface thread.
class ServiceLoader : public QObject {
  Q_OBJECT

 public:
  explicit ServiceLoader(const host::ComposedHost& host, QObject* parent = nullptr);
  /// Gives up what is being read, and waits for its end.
  ~ServiceLoader() override;

  /// Tells `known` if it can be read, and ends in `loaded`, both on the thread of this object, unless it is
  /// given up. @returns the number that both will carry.
  /// @param properties that it is drawn by on the map; empty for its own.
  int load(const QString& reference, const std::string& properties = {});
  /// Makes the picture anew, as the service is drawn now. Ends in `loaded` unless it is given up.
  /// @param known what was told of the service; it has a drawing. @returns the number that `loaded` will
  /// carry.
  int loadPicture(const QString& reference, const LoadedService& known);
  /// Nobody wants it any more. Does nothing for one that has ended.
  void giveUp(int load);

 signals:
  /// What it is and how it is drawn, before there is a picture of it.
  void known(int load, const vlclientui::viewer::LoadedService& service);
  void loaded(int load, const vlclientui::viewer::LoadedService& service);

 private:
  void takePicture(const QString& reference, LoadedService& service) const;
  void tell(int load, const LoadedService& service);
  void take(int load, const LoadedService& service);
  [[nodiscard]] bool isWanted(int load) const;

  std::shared_ptr<const Platform> platform_;
  std::shared_ptr<client::CatalogueServer> catalogue_;
  int loads_ = 0;
  std::map<int, client::CancelSwitch> open_;  ///< that have not ended, by their numbers
  QThreadPool pool_;
};

}  // namespace vlclientui::viewer
