#pragma once

#include <memory>
#include <string>

#include "contracts/VorlaneClient.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// Where an installation keeps its files; each with drive and backslashes.
struct InstallFolders {
  std::string definitions;  ///< of VLClient.XADef and VLClient.Xfdef; with or without separator at the end
  std::string home;
  std::string help;
};

/// The helper objects of the client library for one installation.
class CatalogueClientLibrary : public ClientLibrary {
 public:
  /// @param xml must outlive this object and what it makes.
  CatalogueClientLibrary(const XmlService& xml, InstallFolders folders);

  [[nodiscard]] std::unique_ptr<InstallPaths> createInstallPaths() override;
  [[nodiscard]] std::unique_ptr<ClientStatus> createClientStatus() override;
  [[nodiscard]] std::string serverToShow(const std::string& typed) override;

 private:
  const XmlService& xml_;
  InstallFolders folders_;
};

}  // namespace vlclientui::client
