// How often a catalogue is asked while a person picks one of its mosaics, opens it and draws it.
#include <algorithm>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "client/ServiceFixture.h"
#include "client/facade/NetworkServers.h"
#include "client/network/NetworkAccess.h"
#include "client/stac/StacFixture.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::stac {
namespace {

using vlclientui::test::FaultProxy;
using vlclientui::test::GetImage;

/// Counts what the web server of the samples is asked for.
class CountingServer : public FaultProxy {
 public:
  CountingServer() : FaultProxy("127.0.0.1:" + std::to_string(sampleServer().port())) {}
};

class StacRequests : public vlclientui::test::ServiceFixture {
 protected:
  StacRequests() { addNetworkServers(*server_); }

  /// Lists the server, tells of the service, shows it small, opens it and exports it.
  void pickAndOpen(const std::string& server, const std::string& name) {
    ASSERT_TRUE(server_->content(server));
    const std::string reference = "ImageService://" + server + "/" + name;
    EXPECT_FALSE(server_->factsOf(reference).srsId.empty());
    EXPECT_FALSE(server_->renderThumbnail(reference, 32, 32).rgba.empty());
    const auto opened = service(reference);
    GetImage request;
    request.extent = opened->record().facts.envelope;
    request.columns = request.rows = 40;
    request.fileName = out("picked.tif");
    opened->ExportProperties(request.document());
    EXPECT_TRUE(opened->ExportImage()) << opened->status();
  }

  /// Documents by their paths, without parameters.
  template <class Server>
  [[nodiscard]] static std::map<std::string, int> documentsAsked(const Server& server) {
    std::map<std::string, int> counts;
    for (const std::string& request : server.requests()) {
      const std::string path = request.substr(0, request.find('?'));
      const bool isImage = path.find(".tif") != std::string::npos;
      if (!isImage) ++counts[path];
    }
    return counts;
  }
};

TEST_F(StacRequests, AskForEachDocumentOfAStaticCatalogueOnce) {
  const CountingServer proxy;
  pickAndOpen(proxy.address("/catalog.json"), "Imagery/Overlap_Study");
  const auto counts = documentsAsked(proxy);
  EXPECT_EQ(counts.count("GET /catalog.json"), 1U);
  EXPECT_EQ(counts.count("GET /Imagery/Overlap_Study/sheet_red.json"), 1U);
  for (const auto& [path, count] : counts) EXPECT_EQ(count, 1) << path;
}

TEST_F(StacRequests, AskForEachDocumentOfAnApiOnce) {
  const StacApi api;
  pickAndOpen(api.address() + "/", "Overlap_Study");
  const auto counts = documentsAsked(api);
  EXPECT_EQ(counts.count("GET /collections/Overlap_Study/items"), 1U);
  for (const auto& [path, count] : counts) EXPECT_EQ(count, 1) << path;
}

// Nobody listed the server before, as after a restart.
TEST_F(StacRequests, AskForEachDocumentOnceWhereAReferenceIsOpened) {
  const CountingServer proxy;
  const auto opened = service("ImageService://" + proxy.address("/catalog.json") + "/Imagery/Overlap_Study");
  EXPECT_EQ(opened->record().sources.size(), 3U);
  for (const auto& [path, count] : documentsAsked(proxy)) EXPECT_EQ(count, 1) << path;
}

}  // namespace
}  // namespace vlclientui::client::stac
