#include "client/network/NetworkAccess.h"

#include <utility>

#include "client/connections/ConnectionBook.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t mostTileBytes = std::size_t{64} << 20U;

TransportSettings withConnections(ConnectionBook& book) {
  TransportSettings settings;
  settings.prepareCredentials = [&book](const Server& server, const std::string& path) {
    book.prepare(server, path);
  };
  settings.credentials = [&book](const Server& server, const std::string& path) {
    return book.credentials(server, path);
  };
  return settings;
}

}  // namespace

NetworkAccess::NetworkAccess(TransportSettings settings, const std::filesystem::path& hostFile)
    : transport_(std::move(settings)), hosts_(hostFile), tiles_(mostTileBytes) {}

NetworkAccess::~NetworkAccess() = default;

NetworkAccess& NetworkAccess::shared() {
  static NetworkAccess access(withConnections(ConnectionBook::shared()), hostMemoryFile());
  return access;
}

std::shared_ptr<CoverageClient> NetworkAccess::coverages(const std::string& address) {
  const std::lock_guard lock(mutex_);
  auto& client = coverages_[address];
  if (!client) client = std::make_shared<CoverageClient>(transport_, address);
  return client;
}

void NetworkAccess::forget() {
  const std::lock_guard lock(mutex_);
  coverages_.clear();
  tiles_.forget();
}

OrProblem<std::shared_ptr<CoverageReader>> NetworkAccess::reader(const std::string& address,
                                                                 const std::string& id) {
  auto client = coverages(address);
  auto described = client->describe(id);
  if (auto* problem = std::get_if<CoverageProblem>(&described)) return std::move(*problem);
  auto& coverage = std::get<std::shared_ptr<const CoverageDescription>>(described);
  auto format = client->format(*coverage);
  if (auto* problem = std::get_if<CoverageProblem>(&format)) return std::move(*problem);
  return std::make_shared<CoverageReader>(std::move(client), std::move(coverage),
                                          std::get<std::shared_ptr<const CoverageFormat>>(format), tiles_,
                                          passages_);
}

}  // namespace vlclientui::client
