// What a coverage service does wrong, between a real one and the client.
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>

#include <cpl_string.h>
#include <cpl_vsi.h>
#include <gtest/gtest.h>

#include "client/QuickTransport.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/CatalogueServerClient.h"
#include "client/facade/NetworkServers.h"
#include "client/network/CoverageReader.h"
#include "client/network/CoverageServers.h"
#include "client/network/NetworkAccess.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "platform/LibXmlService.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"

namespace vlclientui::client::network {
namespace {

using vlclientui::test::FaultProxy;
using vlclientui::test::MapServer;

struct Fault {
  std::string name;   ///< as the proxy knows it
  std::string words;  ///< of the reason
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

class NetworkFault : public testing::TestWithParam<Fault> {
 protected:
  [[nodiscard]] std::string address() const { return proxy_.address("/wcs"); }
  /// Why the north-west tile cannot be had; empty when it can.
  static std::string readTile(CoverageReader& reader) {
    std::size_t tiles = 0;
    const std::string reason =
        reader.read({0, 0, 0, 0, 0}, [&](int, int, const std::vector<std::byte>&) { ++tiles; });
    EXPECT_EQ(tiles, reason.empty() ? 1U : 0U);
    return reason;
  }

  FaultProxy proxy_{MapServer::shared().address().substr(7)};
  NetworkAccess access_{vlclientui::test::quickSettings()};
};

TEST_P(NetworkFault, OfPixelsIsToldAndTheSameTileComesAfterIt) {
  const auto opened = access_.reader(address(), "World.EGM96_Geoid");
  ASSERT_TRUE(std::holds_alternative<std::shared_ptr<CoverageReader>>(opened));
  CoverageReader& reader = *std::get<std::shared_ptr<CoverageReader>>(opened);
  proxy_.always(GetParam().name);
  EXPECT_NE(readTile(reader).find(GetParam().words), std::string::npos) << readTile(reader);
  proxy_.clear();
  EXPECT_EQ(readTile(reader), "");
  EXPECT_EQ(proxy_.counts().open, 0U);
}

TEST_P(NetworkFault, OfTheListMakesTheServerSilentUntilItIsOver) {
  CoverageServers servers(access_);
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  proxy_.always(GetParam().name);
  EXPECT_FALSE(servers.list(address()));
  EXPECT_NE(told.find("does not answer: "), std::string::npos) << told;
  proxy_.clear();
  const auto listed = servers.list(address());
  ASSERT_TRUE(listed);
  EXPECT_EQ(listed->services.size(), 7U);
}

// What this process has open or runs, and images in its memory.
struct Held {
  std::ptrdiff_t threads = 0;
  std::ptrdiff_t handles = 0;
  int images = 0;

  static Held now() {
    const auto countOf = [](const char* what) {
      const std::filesystem::directory_iterator list(std::string("/proc/self/") + what);
      return std::distance(begin(list), end(list));
    };
    const CPLStringList images(VSIReadDir("/vsimem/"));
    return {countOf("task"), countOf("fd"), images.Count()};
  }
  bool operator==(const Held&) const = default;
};

void PrintTo(const Held& held, std::ostream* out) {
  *out << held.threads << " threads, " << held.handles << " handles, " << held.images << " images";
}

TEST_P(NetworkFault, LeavesNoThreadSocketImageOrSecretBehind) {
  const Held before = Held::now();
  std::string words;
  const SilenceListener listener([&](const SilentEnd& end) { words += end.reason; });
  {
    NetworkAccess access(vlclientui::test::quickSettings());
    const std::string secret = proxy_.address("/wcs?token=geheim");
    const auto opened = access.reader(secret, "World.EGM96_Geoid");
    ASSERT_TRUE(std::holds_alternative<std::shared_ptr<CoverageReader>>(opened));
    proxy_.always(GetParam().name);
    words += readTile(*std::get<std::shared_ptr<CoverageReader>>(opened));
    EXPECT_FALSE(CoverageServers(access).list(secret));
  }
  proxy_.clear();
  EXPECT_EQ(Held::now(), before);
  EXPECT_NE(words, "");
  EXPECT_EQ(words.find("geheim"), std::string::npos) << words;
}

INSTANTIATE_TEST_SUITE_P(Each, NetworkFault,
                         testing::Values(Fault{"exception", "The coverage cannot be read today."},
                                         Fault{"status=500", "status 500"}, Fault{"status=404", "status 404"},
                                         Fault{"status=503", "status 503"}, Fault{"reset", "127.0.0.1"},
                                         Fault{"close", "127.0.0.1"}, Fault{"garbage", "127.0.0.1"},
                                         Fault{"truncate", "127.0.0.1"}, Fault{"truncatechunks", "127.0.0.1"},
                                         Fault{"loop", "127.0.0.1"}, Fault{"endless", "127.0.0.1"},
                                         Fault{"bomb", "127.0.0.1"}));

class FirstContact : public NetworkFault {};

// The description of the first version tells which formats there are; each of them is tried.
INSTANTIATE_TEST_SUITE_P(With, FirstContact,
                         testing::Values(Fault{"only=VERSION=1.0.0&COVERAGE;status=503", "status 503"},
                                         Fault{"only=VERSION=1.0.0&COVERAGE;reset", "127.0.0.1"},
                                         Fault{"only=GEOTIFF_INT16;reset", "127.0.0.1"},
                                         Fault{"only=GEOTIFF_INT16;status=500", "status 500"},
                                         Fault{"only=GEOTIFF_INT16;truncate", "127.0.0.1"}));

TEST_P(FirstContact, ThatFailsChoosesNoPoorerImages) {
  proxy_.always(GetParam().name);
  const auto failed = access_.reader(address(), "Elevation.Terrain_30m");
  const auto* problem = std::get_if<CoverageProblem>(&failed);
  ASSERT_NE(problem, nullptr) << std::get<std::shared_ptr<CoverageReader>>(failed)->format().name;
  EXPECT_NE(problem->text.find(GetParam().words), std::string::npos) << problem->text;
  proxy_.clear();
  const auto opened = access_.reader(address(), "Elevation.Terrain_30m");
  ASSERT_TRUE(std::holds_alternative<std::shared_ptr<CoverageReader>>(opened));
  EXPECT_EQ(std::get<std::shared_ptr<CoverageReader>>(opened)->format().dataType, "Int16");
}

TEST_F(NetworkFault, OfATypeThatIsWrongDoesNoHarm) {
  const auto opened = access_.reader(address(), "World.EGM96_Geoid");
  ASSERT_TRUE(std::holds_alternative<std::shared_ptr<CoverageReader>>(opened));
  proxy_.always("type=text/html");
  EXPECT_EQ(readTile(*std::get<std::shared_ptr<CoverageReader>>(opened)), "");
}

TEST_F(NetworkFault, ThatPassesIsNotNoticed) {
  const auto opened = access_.reader(address(), "World.EGM96_Geoid");
  ASSERT_TRUE(std::holds_alternative<std::shared_ptr<CoverageReader>>(opened));
  proxy_.arm(2, "status=503");
  EXPECT_EQ(readTile(*std::get<std::shared_ptr<CoverageReader>>(opened)), "");
}

class CoverageWaits : public testing::Test {
 protected:
  CoverageWaits() { addNetworkServers(*server_); }

  [[nodiscard]] std::string request() const {
    return "<Vorlane><Client><ServerInfo><Request><Server>" + proxy_.address("/wcs") +
           "</Server></Request></ServerInfo></Client></Vorlane>";
  }

  FaultProxy proxy_{MapServer::shared().address().substr(7)};
  platform::LibXmlService xml_{platform::PathTranslation("/home/u")};
  std::shared_ptr<CatalogueServer> server_ = std::make_shared<CatalogueServer>(xml_, CatalogueSettings());
};

TEST_F(CoverageWaits, AreToldAndGivenUp) {
  proxy_.always("hang");
  std::vector<ServerWait> asked;
  OVLCatalogueServerClient client(server_, [&] {
    return [&](const ServerWait& wait) {
      asked.push_back(wait);
      return asked.size() < 3;
    };
  });
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  EXPECT_EQ(client.GetServerInfo(request()), "");
  ASSERT_EQ(asked.size(), 3U);
  EXPECT_EQ(asked.front().host, proxy_.place());
  EXPECT_GE(asked.front().waited, std::chrono::milliseconds(500));
  EXPECT_NE(told.find("does not answer"), std::string::npos) << told;
  proxy_.clear();
  EXPECT_NE(client.GetServerInfo(request()), "") << "the next call begins anew";
}

TEST_F(CoverageWaits, AreNotToldOfCallsThatAreQuick) {
  int made = 0;
  int asked = 0;
  OVLCatalogueServerClient client(server_, [&] {
    ++made;
    return [&](const ServerWait&) { return ++asked > 0; };
  });
  EXPECT_EQ(client.GetServerInfo("<Vorlane><Client><ServerInfo><Request><Server>/nowhere</Server></Request>"
                                 "</ServerInfo></Client></Vorlane>"),
            "");
  EXPECT_EQ(made, 1);
  EXPECT_EQ(asked, 0);
}

class SilentReference : public testing::TestWithParam<Fault> {
 protected:
  SilentReference() { addNetworkServers(*server_); }

  [[nodiscard]] std::string refusal(const std::string& address,
                                    const std::string& name = "World/EGM96_Geoid") const {
    try {
      static_cast<void>(server_->factsOf("ImageService://" + address + "/" + name));
      return {};
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
  }

  FaultProxy proxy_{MapServer::shared().address().substr(7)};
  platform::LibXmlService xml_{platform::PathTranslation("/home/u")};
  std::shared_ptr<CatalogueServer> server_ = std::make_shared<CatalogueServer>(xml_, CatalogueSettings());
};

TEST_P(SilentReference, IsToldWithTheReasonOfItsServer) {
  proxy_.always(GetParam().name);
  const std::string told = refusal(proxy_.address("/wcs"));
  EXPECT_EQ(told.find("The image service ImageService://" + proxy_.address("/wcs") +
                      "/World/EGM96_Geoid cannot be reached: the server 'http://" + proxy_.place()),
            0U)
      << told;
  EXPECT_NE(told.find(GetParam().words), std::string::npos) << told;
  proxy_.clear();
  EXPECT_EQ(refusal(proxy_.address("/wcs")), "");
}

INSTANTIATE_TEST_SUITE_P(Faults, SilentReference,
                         testing::Values(Fault{"reset", "does not answer: "},
                                         Fault{"status=503", "status 503"}, Fault{"endless", "127.0.0.1"},
                                         Fault{"status=401", "a connection to this address can keep it"}));

TEST_F(SilentReference, OfAHostThatTakesNoConnectionsSaysSo) {
  const std::string told = refusal("127.0.0.1:9");
  EXPECT_NE(told.find("cannot be reached: the server '127.0.0.1:9' does not answer: "), std::string::npos)
      << told;
}

TEST_F(SilentReference, ThatIsAnsweredIsNotThereAtAll) {
  const std::string address = proxy_.address("/wcs");
  EXPECT_EQ(refusal(address, "World/Nowhere"),
            "There is no image service ImageService://" + address + "/World/Nowhere");
}

}  // namespace
}  // namespace vlclientui::client::network
