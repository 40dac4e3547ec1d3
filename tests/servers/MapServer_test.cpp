#include "servers/MapServer.h"

#include <gtest/gtest.h>

#include "servers/WebAnswer.h"

namespace vlclientui::test {
namespace {

const std::vector<std::string> services = {"Elevation.Shaded_Relief_30m",
                                           "Elevation.Terrain_30m",
                                           "Imagery.Overlap_Study",
                                           "Imagery.Valley.Ortho_Mosaic",
                                           "Imagery.Valley.Scene_2021-07-14",
                                           "Landcover.Land_Cover_2021",
                                           "World.EGM96_Geoid"};

// The names in a document, each as the content of that element, in their order.
std::vector<std::string> contents(const std::string& document, const std::string& element) {
  std::vector<std::string> found;
  const std::string open = "<" + element + ">";
  for (std::size_t at = document.find(open); at != std::string::npos; at = document.find(open, at + 1)) {
    const std::size_t begin = at + open.size();
    found.push_back(document.substr(begin, document.find('<', begin) - begin));
  }
  return found;
}

WebAnswer capabilities(const std::string& version) {
  return fetchPlainly(MapServer::shared().coverages() +
                      "?SERVICE=WCS&REQUEST=GetCapabilities&VERSION=" + version);
}

TEST(MapServer, OffersTheServicesOfTheSamplesInEveryVersion) {
  EXPECT_EQ(contents(capabilities("2.0.1").body, "wcs:CoverageId"), services);
  EXPECT_EQ(contents(capabilities("1.1.1").body, "Identifier"), services);
  EXPECT_EQ(contents(capabilities("1.0.0").body, "name").size(), services.size() + 1) << "and its own name";
}

TEST(MapServer, IsFoundAtTheUsualPlaceToo) {
  const WebAnswer answer =
      fetchPlainly(MapServer::shared().usualPlace() + "&SERVICE=WCS&REQUEST=GetCapabilities&VERSION=2.0.1");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(contents(answer.body, "wcs:CoverageId"), services);
}

TEST(QgisServer, OffersTheServicesOfTheSamplesAndLeavesNoProcessBehind) {
  if (!QgisServer::missing().empty()) GTEST_SKIP() << QgisServer::missing();
  pid_t group = 0;
  {
    const QgisServer server;
    group = server.group();
    const WebAnswer answer = fetchPlainly(server.coverages() + "?SERVICE=WCS&REQUEST=GetCapabilities");
    EXPECT_EQ(contents(answer.body, "name").size(), services.size() + 1) << "and its own name";
  }
  EXPECT_FALSE(hasMembers(group));
}

TEST(MapServer, LeavesNoProcessBehind) {
  pid_t group = 0;
  {
    const MapServer server;
    group = server.group();
    EXPECT_TRUE(hasMembers(group));
  }
  EXPECT_FALSE(hasMembers(group));
}

}  // namespace
}  // namespace vlclientui::test
