#include "client/ranges/RangeNames.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/ranges/RangeFiles.h"
#include "client/ranges/RemoteSecrets.h"

namespace vlclientui::client::ranges {
namespace {

TEST(RangeNames, LeadBackToTheirAddresses) {
  const std::vector<std::string> addresses = {"http://127.0.0.1:8080/a/b.tif",
                                              "https://maps.example/",
                                              "http://h/a%20b%C3%A9.tif",
                                              "http://h/100%25.tif",
                                              "http://[::1]:80/x.tif",
                                              "http://h/a.tif?x=1/2&y=%20#",
                                              "http://h/a%2Fb.tif",
                                              "http://h//x//y.tif",
                                              "http://h/a%FFb.tif"};
  for (const std::string& address : addresses) EXPECT_EQ(addressOfName(nameOfAddress(address)), address);
  EXPECT_EQ(addressOfName(nameOfAddress("http://h/a(1),b;c=d@e.tif")), "http://h/a(1),b;c=d@e.tif");
}

TEST(RangeNames, AreReadAsPathsAndSeenFromEachOther) {
  EXPECT_EQ(nameOfAddress("http://127.0.0.1:8080/a%20b/c.tif"),
            "/vsivlrange/http/127.0.0.1%3A8080/a b/c.tif");
  EXPECT_EQ(addressOfName("/vsivlrange/http/h/a/"
                          "x y.tif"),
            "http://h/a/x%20y.tif");
  EXPECT_EQ(addressOfName("/vsivlrange/http/h/a/50%.tif"), "http://h/a/50%25.tif");
  EXPECT_EQ(nameOfAddress("http://h/a.tif?f=/etc/x"), "/vsivlrange/http/h/a.tif%3Ff%3D%2Fetc%2Fx");
}

TEST(RangeNames, OfOtherThingsLeadNowhere) {
  for (const std::string name : {"/data/a.tif", "/vsivlrange/", "/vsivlrange/http", "/vsivlrange/http/", ""})
    EXPECT_FALSE(addressOfName(name)) << name;
}

TEST(RangeNames, HoldNoKeysAndFindThemAgain) {
  const std::string name = rangeRasterName("http://h/a.tif?sig=geheim&v=2#place");
  EXPECT_EQ(name.find("geheim"), std::string::npos) << name;
  EXPECT_EQ(addressOfRangeRaster(name), "http://h/a.tif?sig=***&v=2");
  EXPECT_EQ(addressWithSecrets(name), "http://h/a.tif?sig=geheim&v=2");
  EXPECT_EQ(rangeRasterName("http://h/a.tif?sig=geheim&v=2"), name);
  EXPECT_EQ(rangeRasterName("http://u:geheim@h/b.tif").find("geheim"), std::string::npos);
}

TEST(RangeNames, AreOfOneAddressEachAlsoWhereOnlyAKeyTellsThemApart) {
  const std::string west = rangeRasterName("http://h/get?key=west&v=1");
  const std::string east = rangeRasterName("http://h/get?key=east&v=1");
  EXPECT_NE(west, east);
  EXPECT_EQ(addressWithSecrets(west), "http://h/get?key=west&v=1");
  EXPECT_EQ(addressWithSecrets(east), "http://h/get?key=east&v=1");
  EXPECT_EQ(addressOfRangeRaster(east), "http://h/get?key=***2&v=1");
  EXPECT_EQ(shownPlace(east), "http://h/get?key=***&v=1");
  EXPECT_EQ(rangeRasterName("http://h/get?key=west&v=1"), west);
  EXPECT_EQ(rangeRasterName("http://h/get?key=east&v=1"), east);
  for (const std::string& name : {west, east}) EXPECT_EQ(rangeRasterName(*addressOfRangeRaster(name)), name);
}

TEST(RangeNames, TellUsersApart) {
  const std::string ann = rangeRasterName("http://ann:x@h/users.tif");
  const std::string bob = rangeRasterName("http://bob:x@h/users.tif");
  const std::string nobody = rangeRasterName("http://h/users.tif");
  EXPECT_EQ(addressWithSecrets(ann), "http://ann:x@h/users.tif");
  EXPECT_EQ(addressWithSecrets(bob), "http://bob:x@h/users.tif");
  EXPECT_EQ(addressWithSecrets(nobody), "http://h/users.tif");
  EXPECT_EQ(shownPlace(bob), "http://h/users.tif");
  EXPECT_EQ(rangeRasterName(*addressOfRangeRaster(bob)), bob);
}

}  // namespace
}  // namespace vlclientui::client::ranges
