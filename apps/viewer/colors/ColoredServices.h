#pragma once

#include <QObject>
#include <QString>
#include <memory>
#include <optional>
#include <string>

#include "client/facade/ServiceDrawing.h"

namespace vlclientui::viewer {

/// The services whose colors a person chooses, as a host has them: in a list, or as layers of a map.
class ColoredServices : public QObject {
  Q_OBJECT

 public:
  struct Service {
    QString name;
    std::shared_ptr<const client::ServiceDrawing> drawing;  ///< null while there is none
    bool isUnreadable = false;
    std::string stretch;  ///< chosen before; empty where the service decides
  };

  using QObject::QObject;

  /// @param reference as the host calls it. @returns nothing for one that it does not have.
  [[nodiscard]] virtual std::optional<Service> find(const QString& reference) const = 0;
  /// @param stretch as Service has it.
  virtual void keep(const QString& reference, const std::string& stretch) = 0;

 signals:
  /// Another drawing, or another service.
  void changed();
};

}  // namespace vlclientui::viewer
