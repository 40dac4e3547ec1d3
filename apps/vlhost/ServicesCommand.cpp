#include "ServicesCommand.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <system_error>

#include "HeadlessSession.h"
#include "ServiceReport.h"
#include "Telling.h"
#include "client/facade/CatalogueServerClient.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/ServerSilence.h"
#include "contracts/Silence.h"

namespace vlclientui::vlhost {
namespace {

namespace fs = std::filesystem;

constexpr const char* scheme = "ImageService://";

// On a command line a folder may be named from where one stands; a server text always says the whole.
std::string serverText(const std::string& given) {
  std::error_code error;
  const bool isRelativeFolder = fs::path(given).is_relative() && fs::is_directory(given, error);
  return isRelativeFolder ? wholePath(given).string() : given;
}

bool leadsToBuiltIn(std::string text) {
  if (text.starts_with(scheme)) text.erase(0, std::string(scheme).size());
  const std::string server = text.substr(0, text.find_first_of("/\\"));
  return server == "127.0.0.1" || server == "localhost";
}

std::string reasonOfFolder(const fs::path& folder) {
  std::error_code error;
  const fs::file_status status = fs::status(folder, error);
  if (!fs::exists(status))
    return status.type() == fs::file_type::not_found ? "there is no such folder" : error.message();
  return fs::is_directory(status) ? "the folder cannot be read" : "it is no folder";
}

// A server answers with what it could read, but of a folder that cannot be listed that is nothing.
void refuseUnreadable(const std::optional<fs::path>& folder, const std::vector<client::LeftOut>& problems) {
  const auto isFolderItself = [&](const client::LeftOut& problem) {
    return folder && problem.path == folder->lexically_normal().string();
  };
  const auto found = std::ranges::find_if(problems, isFolderItself);
  if (found != problems.end()) throw RuntimeFailure("'" + found->path + "': " + found->reason);
}

std::string report(OutputFormat format, const HeadlessSession& session, const std::string& server,
                   const std::string& answer) {
  if (format == OutputFormat::Xml) return answer + "\n";
  const auto services = host::readServices(*session.host().platform->xml, answer);
  if (format == OutputFormat::Table) return serviceTable(services, server);
  return serviceJson(services, session.host().catalogue->factsByName(server), server);
}

}  // namespace

std::string reasonOfSilence(const host::Installation& installation, const std::string& server) {
  if (leadsToBuiltIn(server) && !fs::is_directory(installation.catalogue)) {
    return "The samples are missing: there is no folder '" + installation.catalogue.string() +
           "'. Install them, or name a folder of rasters in VLCLIENTUI_CATALOGUE.";
  }
  const std::string silence = "the server '" + server + "' does not answer";
  return fs::path(server).is_absolute() ? silence + ": " + reasonOfFolder(server) : silence;
}

void refuseMissingSamples(const host::Installation& installation, const std::string& text) {
  if (!leadsToBuiltIn(text) || fs::is_directory(installation.catalogue)) return;
  throw RuntimeFailure(reasonOfSilence(installation, "localhost"));
}

int runServices(const ServicesCommand& command) {
  const HeadlessSession session;
  const std::string server = session.host().catalogue->withoutSecrets(serverText(command.server));
  client::OVLCatalogueServerClient client(session.host().catalogue);
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  const std::string answer = client.GetServerInfo(host::serverInfoRequest(server));
  refuseUnreadable(session.host().catalogue->folderOf(server), client.problems());
  for (const auto& problem : client.problems()) tell("left out " + problem.path + ": " + problem.reason);
  if (answer.empty()) {
    const bool isToldWhy = reasonOfServerSilence(told).has_value();
    throw RuntimeFailure(isToldWhy ? told : reasonOfSilence(session.host().installation, server));
  }
  std::cout << report(command.format, session, server, answer);
  return 0;
}

}  // namespace vlclientui::vlhost
