#include "client/facade/CatalogueClientLibrary.h"

#include <cstdint>
#include <utility>

#include "client/connections/ConnectionBook.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

constexpr auto messagePath = "//Message";

std::string withSeparator(std::string folder) {
  if (!folder.empty() && folder.back() != '\\' && folder.back() != '/') folder += '\\';
  return folder;
}

class FolderPaths : public InstallPaths {
 public:
  explicit FolderPaths(InstallFolders folders) : folders_(std::move(folders)) {}

  std::string GetPath(std::int32_t kind) override {
    switch (kind) {
      case 0:
        return withSeparator(folders_.definitions);
      case 1:
        return folders_.home;
      case 15:
        return folders_.help;
      default:
        throw RuntimeFailure("There is no folder of kind " + std::to_string(kind));
    }
  }

 private:
  InstallFolders folders_;
};

// The messages of a status one below the other; a status without messages is its own text.
class StatusText : public ClientStatus {
 public:
  explicit StatusText(const XmlService& xml) : xml_(xml) {}

  std::string GetText(const std::string& statusXml) override {
    const auto document = xml_.createDocument();
    if (!document->loadXml(statusXml)) throw RuntimeFailure("The status is no XML document");
    std::string text;
    for (const XmlNodePtr& message : document->selectNodes(messagePath)) {
      if (!text.empty()) text += '\n';
      text += message->text();
    }
    return text.empty() ? document->documentElement()->text() : text;
  }

 private:
  const XmlService& xml_;
};

}  // namespace

CatalogueClientLibrary::CatalogueClientLibrary(const XmlService& xml, InstallFolders folders)
    : xml_(xml), folders_(std::move(folders)) {}

std::unique_ptr<InstallPaths> CatalogueClientLibrary::createInstallPaths() {
  return std::make_unique<FolderPaths>(folders_);
}

std::unique_ptr<ClientStatus> CatalogueClientLibrary::createClientStatus() {
  return std::make_unique<StatusText>(xml_);
}

std::string CatalogueClientLibrary::serverToShow(const std::string& typed) {
  return ConnectionBook::shared().withoutSecrets(typed);
}

}  // namespace vlclientui::client
