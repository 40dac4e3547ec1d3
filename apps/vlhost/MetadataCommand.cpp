#include "MetadataCommand.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <system_error>

#include "ServiceDialog.h"
#include "Telling.h"
#include "client/facade/CatalogueServer.h"
#include "contracts/RuntimeFailure.h"

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

void refuseReferenceItself(const std::string& reference, const fs::path& target) {
  std::error_code error;
  if (!fs::equivalent(reference, target, error) || error) return;
  throw RuntimeFailure("The file " + target.string() +
                       " belongs to the service itself. Choose another file.");
}

/// The button of the metadata page, which saves the full document whatever it shows.
void saveOnPage(const HeadlessSession& session, const ServicePtr& service, const std::string& file) {
  ServiceDialog dialog(session, service);
  dialog.show(PropertyPageId::PropertyPageMetadata);
  session.toolkit().chooseFile(file);
  dialog.pages().metadataPage().controls().Save.userClicks();
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
  const auto service = openService(session, command.reference);
  if (command.file.empty()) {
    const std::string document = documentOf(*service, command.document);
    std::cout << (command.format == DocumentOutput::Json
                      ? documentJson(document, *session.host().platform->xml)
                      : document + "\n");
    return 0;
  }
  const fs::path file = wholePath(command.file);
  service->refuseOwnFiles({file});
  refuseReferenceItself(command.reference, file);
  save(session, service, command.document, file.string());
  session.tellMessages();
  if (!session.toolkit().failures().empty()) return 1;
  std::cout << "wrote " << terminalText(file.string()) << "\n";
  return 0;
}

}  // namespace vlclientui::vlhost
