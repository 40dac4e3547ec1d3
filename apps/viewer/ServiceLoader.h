#pragma once

#include <QImage>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <memory>
#include <optional>

#include "client/facade/CatalogueServer.h"
#include "host/Compose.h"
#include "host/Services.h"

namespace vlclientui::viewer {

/// What the viewer shows of a service.
struct LoadedService {
  QString title;
  QString details;  ///< one line: bands, pixel type, size
  std::optional<host::GeographicEnvelope> envelope;
  QImage picture;  ///< of the whole service; null when it cannot be read
};

/// Reads services off the user-interface thread.
class ServiceLoader : public QObject {
  Q_OBJECT

 public:
  explicit ServiceLoader(const host::ComposedHost& host, QObject* parent = nullptr);
  /// Waits for what is being read.
  ~ServiceLoader() override;

  /// Always ends in `loaded`, on the thread of this object. @returns the number that `loaded` will carry.
  int load(const QString& reference);

 signals:
  void loaded(int load, const vlclientui::viewer::LoadedService& service);

 private:
  std::shared_ptr<const Platform> platform_;
  std::shared_ptr<client::CatalogueServer> catalogue_;
  int loads_ = 0;
  QThreadPool pool_;
};

}  // namespace vlclientui::viewer
