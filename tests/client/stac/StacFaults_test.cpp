// What a server of a catalogue does wrong ends in words, and the same catalogue works after it.
#include <gtest/gtest.h>

#include "client/network/AddressProbe.h"
#include "client/stac/StacFixture.h"
#include "client/stac/StacItems.h"
#include "contracts/Silence.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::stac {
namespace {

using vlclientui::test::FaultProxy;

struct Fault {
  std::string name;   ///< as the proxy knows it
  std::string words;  ///< of the reason
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

class StacFault : public testing::TestWithParam<Fault> {
 protected:
  [[nodiscard]] std::string address() const { return proxy_.address("/catalog.json"); }

  FaultProxy proxy_{sampleCatalogue()};
  NetworkAccess access_{quickSettings()};
};

TEST_P(StacFault, MakesTheServerSilentUntilItIsOver) {
  StacServers servers(access_);
  ASSERT_EQ(access_.probe().kindOf(address()), AddressKind::Catalogue);
  static_cast<void>(access_.probe().takeAnswer(address()));
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  proxy_.always(GetParam().name);
  EXPECT_FALSE(servers.list(address()));
  EXPECT_NE(told.find(GetParam().words), std::string::npos) << told;
  proxy_.clear();
  const auto content = servers.list(address());
  ASSERT_TRUE(content);
  EXPECT_EQ(content->services.size(), 2U);
  EXPECT_EQ(proxy_.counts().open, 0U);
}

TEST_P(StacFault, OfItemsIsToldAndTheyComeAfterIt) {
  StacServers servers(access_);
  const std::string mosaic = address() + "/Imagery/Overlap_Study";
  ASSERT_TRUE(servers.list(address()));
  std::string told;
  {
    const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
    proxy_.always(GetParam().name);
    EXPECT_FALSE(servers.find(mosaic));
  }
  EXPECT_NE(told.find(" items can"), std::string::npos) << told;
  EXPECT_NE(told.find(GetParam().words), std::string::npos) << told;
  proxy_.clear();
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  const auto entry = servers.find(mosaic);
  ASSERT_TRUE(entry) << told;
  EXPECT_EQ(entry->definition.sources.size(), 3U);
}

INSTANTIATE_TEST_SUITE_P(Each, StacFault,
                         testing::Values(Fault{"status=500", "status 500"}, Fault{"status=404", "status 404"},
                                         Fault{"status=503", "status 503"}, Fault{"reset", "127.0.0.1"},
                                         Fault{"garbage", "127.0.0.1"}, Fault{"truncate", "127.0.0.1"},
                                         Fault{"truncatechunks", "127.0.0.1"}, Fault{"loop", "127.0.0.1"},
                                         Fault{"endless", "127.0.0.1"}, Fault{"bomb", "127.0.0.1"},
                                         Fault{"exception", "it is no JSON document"}));

TEST_F(StacFault, OfATypeThatIsWrongDoesNoHarm) {
  proxy_.always("type=text/html");
  StacServers servers(access_);
  ASSERT_TRUE(servers.list(address()));
}

TEST_F(StacFault, ThatLeadsToAnotherServerIsRefused) {
  StacServers servers(access_);
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  const std::string other = vlclientui::test::encoded(proxy_.otherAddress("/catalog.json"));
  EXPECT_FALSE(servers.list(proxy_.address("/fault/redirect=" + other + "/catalog.json")));
  EXPECT_NE(told.find("it is on another server, 127.0.0.1:"), std::string::npos) << told;
}

class StacPages : public platform::TemporaryFolder {
 protected:
  /// @param next where each page leads.
  [[nodiscard]] std::string problemWith(const std::string& features, const std::string& next) {
    write("collection.json",
          R"({"type":"Collection","id":"c","links":[{"rel":"items","href":"page.json"}]})");
    write("page.json", R"({"type":"FeatureCollection","features":[)" + features +
                           R"(],"links":[{"rel":"next","href":")" + next + "\"}]}");
    const FaultProxy proxy{std::filesystem::path(folder_)};
    auto tree = readStacTree(transport_, proxy.address("/collection.json"));
    const auto* found = std::get_if<StacTree>(&tree);
    if (found == nullptr || found->services.empty()) return "(no service)";
    const auto read = readStacItems(transport_, found->services.front());
    const auto* problem = std::get_if<StacProblem>(&read);
    return problem == nullptr ? "(none)" : problem->text;
  }

  Transport transport_{quickSettings()};
};

TEST_F(StacPages, ThatLeadBackToEachOtherEnd) {
  EXPECT_EQ(problemWith(R"({"type":"Feature","id":"a"})", "page.json?x=1"),
            "its pages lead back to each other");
  EXPECT_EQ(problemWith(R"({"type":"Feature","id":"a"})", "page.json"), "its pages lead back to each other");
}

TEST_F(StacPages, OfAnotherServerAreNotFollowed) {
  EXPECT_EQ(problemWith("", "http://127.0.0.2:1/page.json"), "the link leads to another server, 127.0.0.2:1");
}

// Each page of this server leads to one that nobody asked for yet.
TEST_F(StacPages, WithoutEndAndWithoutItemsEnd) {
  const StacApi api({"--endless"});
  auto tree = readStacTree(transport_, api.address() + "/collections/Ortho_Mosaic");
  ASSERT_TRUE(std::holds_alternative<StacTree>(tree));
  const auto read = readStacItems(transport_, std::get<StacTree>(tree).services.front());
  ASSERT_TRUE(std::holds_alternative<StacProblem>(read));
  EXPECT_EQ(std::get<StacProblem>(read).text, "its pages never end");
  EXPECT_LT(api.requests().size(), 20U);
}

TEST_F(StacPages, OfACatalogueThatIsTooLargeEnd) {
  const StacApi api({"--page=3"});
  auto tree = readStacTree(transport_, api.address() + "/collections/Ortho_Mosaic");
  ASSERT_TRUE(std::holds_alternative<StacTree>(tree));
  StacLimits limits;
  limits.allBytes = 5000;
  const auto read = readStacItems(transport_, std::get<StacTree>(tree).services.front(), limits);
  ASSERT_TRUE(std::holds_alternative<StacProblem>(read));
  EXPECT_EQ(std::get<StacProblem>(read).text, "the catalogue is too large");
}

}  // namespace
}  // namespace vlclientui::client::stac
