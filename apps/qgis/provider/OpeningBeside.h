#pragma once

#include <QObject>
#include <memory>

#include "qgis/provider/LayerService.h"

namespace vlclientui::qgis {

/// Opens a service on a thread of its own, so that nobody waits for it. Ends in `done`, once.
class OpeningBeside : public QObject {
  Q_OBJECT

 public:
  explicit OpeningBeside(const LayerSource& source);
  /// Gives it up, without `done`.
  ~OpeningBeside() override;

 signals:
  /// @param service null where it cannot be opened. @param problem why, for a person.
  void done(const std::shared_ptr<const vlclientui::qgis::LayerService>& service, const QString& problem);

 private:
  struct Shared;
  std::shared_ptr<Shared> shared_;
};

}  // namespace vlclientui::qgis
