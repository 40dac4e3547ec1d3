#pragma once

#include <memory>
#include <string>

#include "HeadlessSession.h"
#include "client/facade/CatalogueImageService.h"
#include "properties/ServicePropertiesDialog.h"

namespace vlclientui::vlhost {

/// The service of the reference, as the newer generation. @throws RuntimeFailure when it leads nowhere.
[[nodiscard]] std::shared_ptr<client::CatalogueImageService> openService(const HeadlessSession& session,
                                                                         const std::string& reference);

/// The dialog object of one service, whose pages stand in windows of this host.
class ServiceDialog {
 public:
  /// @throws RuntimeFailure with what a person is told when the object cannot be prepared.
  ServiceDialog(const HeadlessSession& session, const ObjectPtr& service);

  /// @throws RuntimeFailure with what a person is told when the page cannot be shown.
  void show(PropertyPageId page);

  [[nodiscard]] IOVLServicePropertiesDialog& operations() const { return *operations_; }
  [[nodiscard]] ServicePropertiesDialog& pages() const { return *object_; }

 private:
  void check(Boolean16 done) const;

  const HeadlessSession& session_;
  std::shared_ptr<ServicePropertiesDialog> object_;
  std::shared_ptr<IOVLServicePropertiesDialog> operations_;
};

}  // namespace vlclientui::vlhost
