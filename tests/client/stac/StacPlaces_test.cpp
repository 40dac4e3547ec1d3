// A catalogue on a host that a person names alone.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/stac/StacFixture.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::stac {
namespace {

using vlclientui::test::FaultProxy;

// The first page of the host is no list of files, which would be a server of its own.
constexpr auto noListing = "without=Index";

class StacPlaces : public platform::TemporaryFolder {
 protected:
  void writeCatalogue(const std::string& place) const {
    const std::filesystem::path file = path(place);
    std::filesystem::create_directories(file.parent_path());
    write(place,
          R"({"type":"Catalog","stac_version":"1.0.0","id":"r","links":[{"rel":"child","href":"/c.json"}]})");
    write("c.json", R"({"type":"Collection","id":"c","links":[]})");
    write("page.html", "<html>Welcome</html>");
  }
  [[nodiscard]] std::string hostFile() const { return path("hosts/hosts.json"); }
  [[nodiscard]] static bool isListed(NetworkAccess& access, const std::string& server) {
    const auto content = StacServers(access).list(server);
    return content && namesOf(*content) == std::vector<std::string>{"c"};
  }
};

TEST_F(StacPlaces, AreTriedOnAHostThatIsNamedAlone) {
  for (const std::string place : {"stac", "api/stac/v1", "stac/v1", "api/stac", "catalog.json"}) {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    writeCatalogue(place);
    const FaultProxy proxy{std::filesystem::path(folder_)};
    proxy.always(noListing);
    NetworkAccess access{quickSettings()};
    EXPECT_TRUE(isListed(access, proxy.place())) << place;
    EXPECT_LE(proxy.counts().requests, 8U) << "first page, five places, and what is in the catalogue";
  }
}

TEST_F(StacPlaces, AreRememberedAlsoByTheNextProgram) {
  writeCatalogue("stac/v1");
  const FaultProxy proxy{std::filesystem::path(folder_)};
  proxy.always(noListing);
  {
    NetworkAccess access{quickSettings(), hostFile()};
    ASSERT_TRUE(isListed(access, proxy.place()));
  }
  NetworkAccess access{quickSettings(), hostFile()};
  const std::size_t before = proxy.requests().size();
  EXPECT_TRUE(isListed(access, proxy.place()));
  const auto asked = proxy.requests();
  EXPECT_EQ((std::vector<std::string>(asked.begin() + static_cast<std::ptrdiff_t>(before), asked.end())),
            (std::vector<std::string>{"GET /stac/v1", "GET /c.json"}));
}

TEST_F(StacPlaces, ThatAreNotThereAnyMoreAreLookedForAgain) {
  writeCatalogue("stac/v1");
  const FaultProxy proxy{std::filesystem::path(folder_)};
  proxy.always(noListing);
  {
    NetworkAccess access{quickSettings(), hostFile()};
    ASSERT_TRUE(isListed(access, proxy.place()));
  }
  std::filesystem::rename(path("stac/v1"), path("catalog.json"));
  NetworkAccess access{quickSettings(), hostFile()};
  EXPECT_TRUE(isListed(access, proxy.place()));
}

TEST_F(StacPlaces, LeaveAHostToOthersWhereTheirsIsRemembered) {
  writeCatalogue("stac");
  const FaultProxy proxy{std::filesystem::path(folder_)};
  NetworkAccess access{quickSettings()};
  access.hosts().remember(proxy.place(), proxy.address("/cgi-bin/mapserv"));
  EXPECT_FALSE(isListed(access, proxy.place()));
  EXPECT_EQ(proxy.counts().requests, 0U);
}

TEST_F(StacPlaces, AreNotTriedOnAHostThatIsAwayOrIsSomethingElse) {
  writeCatalogue("stac");
  const FaultProxy proxy{std::filesystem::path(folder_)};
  NetworkAccess access{quickSettings()};
  EXPECT_FALSE(isListed(access, proxy.address("/page.html")));
  EXPECT_EQ(proxy.counts().requests, 1U) << "an address is no host";
  proxy.clear();
  proxy.always("reset");
  EXPECT_FALSE(isListed(access, proxy.place()));
  for (const std::string& request : proxy.requests()) EXPECT_EQ(request, "GET /");
}

}  // namespace
}  // namespace vlclientui::client::stac
