// Which of the texts that a reference begins with are asked.
#include <gtest/gtest.h>

#include "client/QuickTransport.h"
#include "client/network/AddressProbe.h"
#include "client/network/CoverageServers.h"
#include "client/network/NetworkAccess.h"
#include "client/ranges/RemoteFiles.h"
#include "client/ranges/WebServers.h"
#include "client/stac/StacServers.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::network {
namespace {

using vlclientui::test::FaultProxy;

bool isNever(const std::string& /*server*/) { return false; }

std::string deepReference(const std::string& server, int steps) {
  std::string reference = server;
  for (int i = 0; i < steps; ++i) reference += "/s" + std::to_string(i);
  return reference;
}

TEST(PossibleServers, OfAShortReferenceAreAskedAll) {
  const std::string reference = deepReference("http://h", 16);
  EXPECT_EQ(serversToAsk(reference, isNever), possibleServers(reference));
}

TEST(PossibleServers, OfALongReferenceAreAskedTheLongestAndTheShortest) {
  const std::string reference = deepReference("http://h", 300);
  const auto all = possibleServers(reference);
  const auto asked = serversToAsk(reference, isNever);
  ASSERT_EQ(asked.size(), mostServersAsked);
  EXPECT_EQ(asked.front(), all.front());
  EXPECT_EQ(asked[7], all[7]);
  EXPECT_EQ(asked[8], all[all.size() - 8]);
  EXPECT_EQ(asked.back(), "http://h");
}

TEST(PossibleServers, ThatAreKnownComeFirstWhereverTheyStand) {
  const std::string reference = deepReference("http://h", 300);
  const std::string middle = deepReference("http://h", 150);
  const auto one = serversToAsk(reference, [&](const auto& server) { return server == middle; });
  ASSERT_EQ(one.size(), mostServersAsked);
  EXPECT_EQ(one.front(), middle);
  EXPECT_EQ(one[1], possibleServers(reference).front());
  EXPECT_EQ(one.back(), "http://h");
  const auto all = serversToAsk(reference, [](const auto&) { return true; });
  ASSERT_EQ(all.size(), mostServersAsked);
  EXPECT_EQ(all.back(), possibleServers(reference)[mostServersAsked - 1]);
}

class AskedServers : public platform::TemporaryFolder {
 protected:
  bool isFound(const std::string& reference) {
    return stac_.find(reference) || web_.find(reference) || coverages_.find(reference);
  }

  NetworkAccess access_{vlclientui::test::quickSettings()};
  RemoteFiles files_{access_.transport()};
  StacServers stac_{access_};
  WebServers web_{access_, files_};
  CoverageServers coverages_{access_};
};

TEST_F(AskedServers, OfAWrongReferenceOfManyStepsAreFew) {
  const FaultProxy proxy{std::filesystem::path(folder_)};
  EXPECT_FALSE(isFound(deepReference(proxy.address(""), 300)));
  EXPECT_LE(proxy.counts().requests, 4 * mostServersAsked);
}

TEST_F(AskedServers, OfAHostThatIsAwayAreOne) {
  const std::string reference = deepReference("http://127.0.0.1:1", 5);
  EXPECT_FALSE(isFound(reference));
  const auto possible = possibleServers(reference);
  EXPECT_TRUE(access_.probe().isHostAway(possible.front()));
  for (std::size_t i = 1; i < possible.size(); ++i)
    EXPECT_FALSE(access_.probe().silence(addressOfServer(possible[i])->address)) << possible[i];
}

}  // namespace
}  // namespace vlclientui::client::network
