#include "client/network/ServiceNames.h"

#include <gtest/gtest.h>

#include "client/network/AddressProbe.h"
#include "client/network/CoverageServers.h"
#include "client/network/TileStore.h"

namespace vlclientui::client::network {
namespace {

using Words = std::vector<std::string>;

TEST(ServiceNames, GoIntoFoldersAtSeparators) {
  EXPECT_EQ(nameSteps("Elevation/Terrain"), (Words{"Elevation", "Terrain"}));
  EXPECT_EQ(nameSteps("survey:ortho"), (Words{"survey", "ortho"}));
  EXPECT_EQ(nameSteps("survey__ortho"), (Words{"survey", "ortho"}));
  EXPECT_EQ(nameSteps("Imagery.Valley.Scene_2021-07-14"), (Words{"Imagery", "Valley", "Scene_2021-07-14"}));
  EXPECT_EQ(nameSteps("a//b/"), (Words{"a", "b"}));
}

TEST(ServiceNames, StayWholeWhereADotSeparatesNothing) {
  EXPECT_EQ(nameSteps("sheet.1.2"), Words{"sheet.1.2"});
  EXPECT_EQ(nameSteps("ortho.tif"), Words{"ortho.tif"});
  EXPECT_EQ(nameSteps("sheet_1.North"), Words{"sheet_1.North"});
  EXPECT_EQ(nameSteps("/"), Words{"/"});
  EXPECT_EQ(nameSteps(""), Words{""});
}

TEST(ServiceNames, AreMadeAsThoseOfFiles) {
  EXPECT_EQ(serviceNames({"Plan, sheet 1", "a:b;c"}), (Words{"Plan_ sheet 1", "a/b_c"}));
}

TEST(ServiceNames, AreUnlikeEachOther) {
  const Words names = serviceNames({"Roads", "Roads/West", "a:b", "a/b", "x", "X"});
  for (std::size_t i = 0; i < names.size(); ++i) {
    for (std::size_t other = 0; other < i; ++other) EXPECT_NE(names[i], names[other]);
  }
  EXPECT_EQ(names[1], "Roads/West");
}

TEST(ServiceNames, DependOnNoOrder) {
  const Words forward = serviceNames({"a:b", "a/b", "Roads", "Roads/West"});
  const Words backward = serviceNames({"Roads/West", "Roads", "a/b", "a:b"});
  EXPECT_EQ(forward, Words(backward.rbegin(), backward.rend()));
}

TEST(CoveragePlaces, AreTheAddressOrTheUsualPlacesOfAHost) {
  EXPECT_EQ(coveragePlaces(" http://h:8080/my/wcs?map=x "), Words{"http://h:8080/my/wcs?map=x"});
  EXPECT_EQ(coveragePlaces("h.example/my/wcs"), Words{"http://h.example/my/wcs"});
  const Words places = coveragePlaces("h.example:8080");
  ASSERT_GT(places.size(), 2U);
  EXPECT_EQ(places.front(), "http://h.example:8080/wcs");
  EXPECT_EQ(places.back(), "http://h.example:8080/");
  EXPECT_EQ(coveragePlaces("https://h.example/").front(), "https://h.example/wcs");
}

TEST(CoveragePlaces, AreNoneForOtherTextsAndForThoseWithAPassword) {
  for (const std::string text :
       {"", "  ", "two words", "ftp://h/x", "/data/maps", "Z:\\data", "Z:/data", "http://u:p@h/wcs"}) {
    EXPECT_TRUE(coveragePlaces(text).empty()) << text;
  }
}

TEST(AddressFlaws, AreThoseOfTextsThatAreMeantToBeAddresses) {
  const std::vector<std::pair<std::string, std::string>> table = {
      {"127.0.0.1:99999", "there is no port 99999"},
      {" maps.example:70000/wcs ", "there is no port 70000"},
      {"https://maps.example:123456789012345678901234567890/", "there is no port 12345678901234567890"},
      {"http://", "the address names no host"},
      {"https:///wcs", "the address names no host"},
      {"http://a b/", "the address cannot be read"},
      {"http://h:port/", "the address cannot be read"},
      {"http://h:8080/wcs", ""},
      {"h:8080", ""},
      {"/data/maps", ""},
      {"Z:\\data", ""},
      {"two words", ""},
      {"", ""}};
  for (const auto& [text, flaw] : table) EXPECT_EQ(addressFlaw(text), flaw) << text;
}

TEST(PossibleServers, AreAllBeginningsTheLongestFirst) {
  EXPECT_EQ(possibleServers("http://h/wcs?map=/m/a.map/Elevation/Terrain"),
            (Words{"http://h/wcs?map=/m/a.map/Elevation", "http://h/wcs?map=/m/a.map", "http://h/wcs?map=/m",
                   "http://h/wcs?map=", "http://h"}));
  EXPECT_EQ(possibleServers("host:8080/A/b"), (Words{"host:8080/A", "host:8080"}));
  EXPECT_TRUE(possibleServers("http://h").empty());
  EXPECT_TRUE(possibleServers("word").empty());
}

TileStore::Bytes bytes(std::size_t size) { return std::make_shared<const std::vector<std::byte>>(size); }

TEST(TileStore, ForgetsWhatWasNotUsedForLongest) {
  TileStore store(100);
  store.keep({"r", 0, 0, 0}, bytes(40));
  store.keep({"r", 0, 1, 0}, bytes(40));
  EXPECT_TRUE(store.find({"r", 0, 0, 0}));
  store.keep({"r", 0, 2, 0}, bytes(40));
  EXPECT_TRUE(store.find({"r", 0, 0, 0}));
  EXPECT_FALSE(store.find({"r", 0, 1, 0}));
  EXPECT_TRUE(store.find({"r", 0, 2, 0}));
}

TEST(TileStore, KeepsTheNewestOfOneTileAndAtLeastOne) {
  TileStore store(10);
  store.keep({"r", 0, 0, 0}, bytes(40));
  EXPECT_EQ(store.find({"r", 0, 0, 0})->size(), 40U);
  store.keep({"r", 0, 0, 0}, bytes(4));
  EXPECT_EQ(store.find({"r", 0, 0, 0})->size(), 4U);
  store.keep({"r", 0, 1, 0}, bytes(6));
  EXPECT_TRUE(store.find({"r", 0, 0, 0})) << "both fit";
  store.forget();
  EXPECT_FALSE(store.find({"r", 0, 1, 0}));
}

}  // namespace
}  // namespace vlclientui::client::network
