// What fails for a moment, or is given up, leaves no holes that stay.
#include <algorithm>
#include <chrono>
#include <stop_token>
#include <thread>

#include <gtest/gtest.h>

#include "client/stac/StacFixture.h"
#include "client/stac/StacItems.h"
#include "client/stac/StacMosaic.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::stac {
namespace {

using vlclientui::test::FaultProxy;

class StacHoles : public testing::Test {
 protected:
  [[nodiscard]] std::string address() const { return proxy_.address("/catalog.json"); }
  [[nodiscard]] std::string mosaic() const { return address() + "/Imagery/Overlap_Study"; }

  /// What the work gives when it is given up once something was asked for that has no answer.
  template <class Work>
  auto givenUpAt(const std::string& asked, Work work) {
    CancelToken token;
    const std::jthread person([&](const std::stop_token& end) {
      const auto isAsked = [&](const std::string& request) {
        return request.find(asked) != std::string::npos;
      };
      while (!end.stop_requested() && std::ranges::none_of(proxy_.requests(), isAsked)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
      }
      token.cancel();
    });
    const WaitScope scope(nullptr, token);
    return work();
  }

  FaultProxy proxy_{sampleCatalogue()};
  NetworkAccess access_{quickSettings()};
  StacServers servers_{access_};
};

TEST_F(StacHoles, DoNotStayWhereOneItemFailedForAMoment) {
  ASSERT_TRUE(servers_.list(address()));
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  for (const char* const fault : {"only=sheet_red;status=503", "only=sheet_red;reset"}) {
    proxy_.always(fault);
    EXPECT_FALSE(servers_.find(mosaic())) << fault;
    EXPECT_NE(told.find("its items cannot be had: "), std::string::npos) << told;
  }
  proxy_.clear();
  const auto entry = servers_.find(mosaic());
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->definition.sources.size(), 3U);
}

TEST_F(StacHoles, StayWhereAnItemIsNotThere) {
  ASSERT_TRUE(servers_.list(address()));
  proxy_.always("only=sheet_red;status=404");
  const auto entry = servers_.find(mosaic());
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->definition.sources.size(), 2U);
  ASSERT_EQ(entry->definition.problems.size(), 1U);
  EXPECT_NE(entry->definition.problems[0].reason.find("status 404"), std::string::npos);
}

TEST_F(StacHoles, DoNotStayWhereItsItemsWereGivenUp) {
  ASSERT_TRUE(servers_.list(address()));
  proxy_.always("only=sheet_red;hang");
  EXPECT_FALSE(givenUpAt("sheet_red", [&] { return servers_.find(mosaic()); }));
  proxy_.clear();
  const auto entry = servers_.find(mosaic());
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->definition.sources.size(), 3U);
}

TEST_F(StacHoles, AreNoListWhereItWasGivenUpHalfway) {
  proxy_.always("only=Overlap_Study;hang");
  EXPECT_FALSE(givenUpAt("Overlap_Study", [&] { return servers_.list(address()); }))
      << "silent, not a part of the list";
  proxy_.clear();
  const auto content = servers_.list(address());
  ASSERT_TRUE(content);
  EXPECT_EQ(content->services.size(), 2U);
}

TEST_F(StacHoles, OfAListAreLookedForAgainByAReference) {
  proxy_.always("only=Overlap_Study;status=503");
  const auto part = servers_.list(address());
  ASSERT_TRUE(part);
  EXPECT_EQ(part->services.size(), 1U);
  ASSERT_EQ(part->problems.size(), 1U);
  proxy_.clear();
  EXPECT_TRUE(servers_.find(mosaic())) << "though it is not in the list that is known";
}

class StacSearches : public platform::TemporaryFolder {
 protected:
  Transport transport_{quickSettings()};
};

TEST_F(StacSearches, OfMoreItemsThanTheLimitTellIt) {
  write("items.json", R"({"type":"FeatureCollection","features":[
      {"type":"Feature","id":"1","collection":"b"},{"type":"Feature","collection":"b"},
      {"type":"Feature","id":"2","collection":"a"},{"type":"Feature","id":"3","collection":"b"}]})");
  const vlclientui::test::StaticServer server(folder_);
  StacLimits limits;
  limits.items = 2;
  auto tree = readStacTree(transport_, server.address() + "/items.json", limits);
  ASSERT_TRUE(std::holds_alternative<StacTree>(tree));
  const auto& found = std::get<StacTree>(tree);
  ASSERT_EQ(found.services.size(), 2U);
  std::vector<std::string> reasons;
  for (const LeftOut& problem : found.problems) reasons.push_back(problem.reason);
  EXPECT_EQ(reasons, (std::vector<std::string>{
                         "1 of its items have no id",
                         "there are more items than are used at a time; these are the first 2"}));
  auto items = readStacItems(transport_, found.services.front(), limits);
  ASSERT_TRUE(std::holds_alternative<StacItems>(items));
  EXPECT_EQ(std::get<StacItems>(items).problems.size(), 2U) << "each of its mosaics tells it, too";
}

// A mosaic of a server whose searches fail as the test says.
class FailingStacSearches : public StacSearches {
 protected:
  FailingStacSearches() : mosaic_(transport_, service(), {.items = 8}) {}

  void SetUp() override { ASSERT_TRUE(std::holds_alternative<MosaicDefinition>(mosaic_.definition({}))); }

  StacApi api_{{"--page=3"}};
  FaultProxy proxy_{"127.0.0.1:" + std::to_string(api_.port())};
  StacMosaic mosaic_;

 private:
  [[nodiscard]] StacService service() const {
    StacService service;
    service.about.id = "Ortho_Mosaic";
    service.address = proxy_.address("/collections/Ortho_Mosaic");
    service.pages = service.address + "/items";
    return service;
  }
};

// The service answers for the whole, and fails for the area.
TEST_F(FailingStacSearches, EndADrawingInsteadOfLeavingAHole) {
  const Bounds area{8, 46, 9, 47};
  proxy_.always("only=bbox;status=503");
  EXPECT_THROW(static_cast<void>(mosaic_.learn(area)), RuntimeFailure);
  proxy_.always("only=bbox;status=404");
  EXPECT_FALSE(mosaic_.learn(area)) << "it has no such question";
  proxy_.clear();
  EXPECT_TRUE(mosaic_.learn({8, 46, 9, 46.9}));
}

// A second thread of the same mosaic, whose tile nobody needs any more.
TEST_F(FailingStacSearches, LetAWaitingThreadBeGivenUpBeforeTheAnswerIsThere) {
  proxy_.always("only=bbox;hold");
  const Bounds area{8, 46, 9, 47};
  bool hasLearnt = false;
  std::jthread first([&] { hasLearnt = mosaic_.learn(area); });
  while (proxy_.counts().open == 0) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  CancelToken token;
  bool hasOther = true;
  std::jthread second([&] {
    const WaitScope scope(nullptr, token);
    hasOther = mosaic_.learn(area);
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  token.cancel();
  second.join();  // while the first one has no answer
  EXPECT_FALSE(hasOther);
  EXPECT_EQ(proxy_.counts().open, 1U);
  proxy_.clear();
  first.join();
  EXPECT_TRUE(hasLearnt);
}

// An area with more items than the limit is asked for once, and what is missing is told.
TEST_F(StacSearches, OfAnAreaWithTooManyItemsAreNotRepeated) {
  const StacApi api({"--page=3"});
  StacService service;
  service.address = api.address() + "/collections/Ortho_Mosaic";
  service.pages = service.address + "/items";
  StacLimits limits;
  limits.items = 4;
  StacMosaic mosaic(transport_, service, limits);
  ASSERT_TRUE(std::holds_alternative<MosaicDefinition>(mosaic.definition({})));
  static_cast<void>(mosaic.learn({8, 46, 9, 47}));
  const std::size_t asked = api.requests().size();
  EXPECT_FALSE(mosaic.learn({8, 46, 9, 47}));
  EXPECT_EQ(api.requests().size(), asked);
  EXPECT_EQ(std::get<MosaicDefinition>(mosaic.definition({})).problems.size(), 2U);
}

// Whoever moves over all of it holds no more than the limit; what was let go is asked for again.
TEST_F(StacSearches, OfAreasThatWereShownBeforeAreLetGoWhereThereAreManyItems) {
  const StacApi api({"--page=2"});
  StacService service;
  service.about.id = "Ortho_Mosaic";
  service.address = api.address() + "/collections/Ortho_Mosaic";
  service.pages = service.address + "/items";
  auto whole = readStacItems(transport_, service);
  ASSERT_TRUE(std::holds_alternative<StacItems>(whole));
  StacLimits limits;
  limits.items = 8;
  limits.held = 6;
  StacMosaic mosaic(transport_, service, limits);
  ASSERT_TRUE(std::holds_alternative<MosaicDefinition>(mosaic.definition({})));
  std::vector<std::string> silences;
  const SilenceListener listener([&](const SilentEnd& end) { silences.push_back(end.reason); });
  const auto place = [&](std::size_t item) {
    const Bounds box = *std::get<StacItems>(whole).items.at(item).item.raster.geographic;
    const double x = (box.xMin + box.xMax) / 2;
    const double y = (box.yMin + box.yMax) / 2;
    return Bounds{x, y, x + 1e-6, y + 1e-6};
  };
  for (int turn = 0; turn < 2; ++turn) {
    for (std::size_t item = 2; item < 12; ++item) {
      static_cast<void>(mosaic.learn(place(item)));
      const auto sources = std::get<MosaicDefinition>(mosaic.definition({})).sources;
      EXPECT_LE(sources.size(), limits.held);
      const std::string id = std::get<StacItems>(whole).items[item].item.id;
      EXPECT_TRUE(std::ranges::any_of(sources, [&](const auto& source) { return source.name == id; })) << id;
      const std::size_t asked = api.requests().size();
      EXPECT_FALSE(mosaic.learn(place(item))) << "the last one stays";
      EXPECT_EQ(api.requests().size(), asked);
    }
  }
  ASSERT_FALSE(silences.empty());
  EXPECT_NE(silences[0].find("are let go"), std::string::npos) << silences[0];
}

}  // namespace
}  // namespace vlclientui::client::stac
