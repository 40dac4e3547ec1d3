#include "ServiceDialog.h"

#include "ServicesCommand.h"
#include "contracts/RuntimeFailure.h"
#include "library/ClassFactory.h"

namespace vlclientui::vlhost {

std::shared_ptr<client::CatalogueImageService> openService(const HeadlessSession& session,
                                                           const std::string& reference) {
  const host::ComposedHost& host = session.host();
  refuseMissingSamples(host.installation, reference);
  return std::make_shared<client::OVLCatalogueImageService>(
      host.catalogue, *host.platform->xml, wholeReference(reference),
      client::ImageServiceSettings{.definitionFolder = host.installation.definitions});
}

ServiceDialog::ServiceDialog(const HeadlessSession& session, const ObjectPtr& service)
    : session_(session),
      object_(std::dynamic_pointer_cast<ServicePropertiesDialog>(createObject("ServicePropertiesDialog"))),
      operations_(queryInterface<IOVLServicePropertiesDialog>(ObjectPtr(object_))) {
  check(operations_->Init("", nullptr, service));
}

void ServiceDialog::show(PropertyPageId page) {
  check(operations_->ShowPropertyPage(page, session_.toolkit().addHostWindow("vlhost")));
}

/// Some failures show a box, others set the status.
void ServiceDialog::check(Boolean16 done) const {
  if (done != boolean16False) return;
  const auto& boxes = session_.toolkit().messages();
  throw RuntimeFailure(boxes.empty() ? operations_->Status() : boxes.back().text);
}

}  // namespace vlclientui::vlhost
