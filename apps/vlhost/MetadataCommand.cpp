#include "MetadataCommand.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <system_error>

#include "HeadlessSession.h"
#include "client/CatalogueImageService.h"
#include "client/CatalogueServer.h"
#include "contracts/RuntimeFailure.h"
#include "library/ClassFactory.h"
#include "properties/ServicePropertiesDialog.h"

namespace vlclientui::vlhost {
namespace {

namespace fs = std::filesystem;
using ServicePtr = std::shared_ptr<client::CatalogueImageService>;

std::string documentOf(client::CatalogueImageService& service, MetadataCommand::Document document) {
  switch (document) {
    case MetadataCommand::Document::Service:
      return service.GetMetaData("");
    case MetadataCommand::Document::ImageBasic:
      return service.GetImageMetadata("Basic");
    case MetadataCommand::Document::ImageFull:
      break;
  }
  return service.GetImageMetadata("Full");
}

/// A slip of the fingers must not replace a raster by what is known of it.
void checkIsNotOfTheService(const client::ImageServiceRecord& service, const std::string& reference,
                            const fs::path& target) {
  const auto isTarget = [&target](const fs::path& file) {
    std::error_code error;
    return fs::equivalent(file, target, error) && !error;
  };
  const bool isSource = std::ranges::any_of(service.sources, isTarget, &client::ImageSource::file);
  if (!isSource && !isTarget(service.file) && !isTarget(reference)) return;
  throw RuntimeFailure("The file " + target.string() +
                       " belongs to the service itself. Choose another file.");
}

/// The button of the metadata page, which saves the full document whatever it shows.
void saveOnPage(const HeadlessSession& session, const ServicePtr& service, const std::string& file) {
  const auto object =
      std::dynamic_pointer_cast<ServicePropertiesDialog>(createObject("ServicePropertiesDialog"));
  const auto dialog = queryInterface<IOVLServicePropertiesDialog>(ObjectPtr(object));
  const WindowHandle window = session.toolkit().addHostWindow("vlhost");
  if (!dialog->Init("", nullptr, service) ||
      !dialog->ShowPropertyPage(PropertyPageId::PropertyPageMetadata, window)) {
    throw RuntimeFailure(dialog->Status());
  }
  session.toolkit().chooseFile(file);
  object->metadataPage().controls().Save.userClicks();
}

void save(const HeadlessSession& session, const ServicePtr& service, MetadataCommand::Document chosen,
          const std::string& file) {
  if (chosen == MetadataCommand::Document::ImageFull) return saveOnPage(session, service, file);
  const auto document = session.host().platform->xml->createDocument();
  if (!document->loadXml(documentOf(*service, chosen))) {
    throw RuntimeFailure("The service tells nothing that could be saved");
  }
  document->save(file);
}

}  // namespace

int runMetadata(const MetadataCommand& command) {
  const HeadlessSession session;
  const host::ComposedHost& host = session.host();
  const auto service = std::make_shared<client::OVLCatalogueImageService>(
      host.catalogue, *host.platform->xml, wholeReference(command.reference),
      client::ImageServiceSettings{.definitionFolder = host.installation.definitions});
  if (command.file.empty()) {
    std::cout << documentOf(*service, command.document) << "\n" << std::flush;
    return std::cout ? 0 : 1;
  }
  const fs::path file = wholePath(command.file);
  checkIsNotOfTheService(service->record(), command.reference, file);
  save(session, service, command.document, file.string());
  session.tellMessages();
  if (!session.toolkit().failures().empty()) return 1;
  std::cout << "wrote " << file.string() << "\n";
  return 0;
}

}  // namespace vlclientui::vlhost
