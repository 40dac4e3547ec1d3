#include "client/stac/StacFixture.h"

#include <sstream>

#include "servers/WebAnswer.h"
#include "support/TestFolders.h"

namespace vlclientui::client::stac {
namespace {

std::vector<std::string> wordsFor(const std::vector<std::string>& options) {
  std::vector<std::string> words = {vlclientui::test::pythonProgram(),
                                    sourceFolder() + "/tests/servers/stac_api.py", sampleCatalogue().string(),
                                    "--images=" + sampleServer().address()};
  words.insert(words.end(), options.begin(), options.end());
  return words;
}

}  // namespace

std::filesystem::path sampleCatalogue() { return serverFilesFolder() + "/stac"; }

const vlclientui::test::StaticServer& sampleServer() {
  static const vlclientui::test::StaticServer server(sampleCatalogue());
  return server;
}

StacApi::StacApi(const std::vector<std::string>& options) : ServerProcess(wordsFor(options)) {}

std::vector<std::string> StacApi::requests() const {
  std::istringstream text(vlclientui::test::fetchPlainly(address() + "/control/requests").body);
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> namesOf(const CatalogueContent& content) {
  std::vector<std::string> names;
  for (const ServiceRecord& service : content.services) names.push_back(service.name);
  return names;
}

std::vector<std::string> idsOf(const std::vector<StacFound>& items) {
  std::vector<std::string> ids;
  for (const StacFound& found : items) ids.push_back(found.item.id);
  return ids;
}

}  // namespace vlclientui::client::stac
