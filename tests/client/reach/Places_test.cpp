#include "client/reach/Places.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "platform/TemporaryFolder.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

class PlacesOfAPerson : public platform::TemporaryFolder {
 protected:
  std::string make(const std::string& name) const {
    fs::create_directories(fs::path(path(name)).parent_path());
    write(name, "x");
    return path(name);
  }

  Places places_;
};

TEST_F(PlacesOfAPerson, ReachAllBelowAFolderThatWasOpenedAndNothingBeside) {
  const std::string inside = make("a/b/c/d");
  const std::string beside = make("other");
  places_.pointAt(path("a"));
  EXPECT_TRUE(places_.reach(inside));
  EXPECT_FALSE(places_.reach(beside));
  EXPECT_TRUE(places_.reach(path("missing"))) << "nothing is there";
}

TEST_F(PlacesOfAPerson, ReachNeighboringFoldersOfAFileAndNothingAbove) {
  const std::string file = make("p/work/mosaics/a.vrt");
  const std::string tile = make("p/work/tiles/deep/1.tif");
  const std::string above = make("p/x.tif");
  places_.pointAtFile(file);
  EXPECT_TRUE(places_.reach(tile));
  EXPECT_FALSE(places_.reach(above));
}

TEST_F(PlacesOfAPerson, ReachInAHomeOnlyTheFilesThemselves) {
  const std::string former = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
  setenv("HOME", path("h/me").c_str(), 1);
  const std::string file = make("h/me/a.vrt");
  const std::string beside = make("h/me/b.tif");
  const std::string below = make("h/me/private/c.tif");
  const std::string ofOthers = make("h/you/d.tif");
  const std::string downloads = make("h/me/downloads/e.vrt");
  places_.pointAtFile(file);
  EXPECT_TRUE(places_.reach(beside));
  EXPECT_FALSE(places_.reach(below));
  EXPECT_FALSE(places_.reach(ofOthers));
  places_.pointAtFile(downloads);
  EXPECT_FALSE(places_.reach(below)) << "a folder of a home has no neighbors";
  places_.pointAt(path("h/me"));
  EXPECT_TRUE(places_.reach(below)) << "opened on purpose";
  setenv("HOME", former.c_str(), 1);
}

TEST_F(PlacesOfAPerson, HaveNoNeighborsWhereEverybodyMayWrite) {
  const std::string file = make("shared/mine/a.vrt");
  const std::string ofOthers = make("shared/theirs/b.tif");
  fs::permissions(path("shared"), fs::perms::all);
  places_.pointAtFile(file);
  EXPECT_FALSE(places_.reach(ofOthers));
}

TEST_F(PlacesOfAPerson, CountLinksByWhereTheyLead) {
  const std::string file = make("work/own/a.vrt");
  const std::string elsewhere = make("elsewhere/b.tif");
  fs::create_symlink(elsewhere, path("work/own/link.tif"));
  places_.pointAtFile(file);
  EXPECT_FALSE(places_.reach(path("work/own/link.tif")));
  EXPECT_FALSE(places_.hold(path("work/own/link.tif")));
  places_.pointAtFile(path("work/own/link.tif"));
  EXPECT_TRUE(places_.hold(elsewhere)) << "that one was chosen";
  EXPECT_FALSE(places_.reach(elsewhere)) << "but nothing that stands in a document may lead there";
}

TEST_F(PlacesOfAPerson, KnowServersByTheirNames) {
  places_.pointAtServer("/vsivlrange/https/host/folder/a.tif");
  EXPECT_TRUE(places_.reachName("/vsivlrange/https/host/other/b.tif"));
  EXPECT_FALSE(places_.reachName("/vsivlrange/https/host2/b.tif"));
  EXPECT_FALSE(places_.reachName("/vsivlrange/http/host/b.tif"));
  places_.keepOwnNames("OWN123:");
  EXPECT_TRUE(places_.reachName("OWN123:abc"));
  EXPECT_FALSE(places_.reachName("OWN12:abc"));
}

TEST(Allowances, AreReadFromTheEnvironment) {
  setenv("VLCLIENTUI_ALLOW_OUTSIDE", "/data/tiles::relative:addresses", 1);
  setenv("VLCLIENTUI_DRIVERS_OFF", "PNG,ERS", 1);
  setenv("VLCLIENTUI_DRIVERS_ON", "MRF", 1);
  const Allowance some = Allowance::fromEnvironment();
  for (const char* name : {"VLCLIENTUI_ALLOW_OUTSIDE", "VLCLIENTUI_DRIVERS_OFF", "VLCLIENTUI_DRIVERS_ON"})
    unsetenv(name);
  EXPECT_EQ(some.folders, (std::vector<fs::path>{"/data/tiles"}));
  EXPECT_TRUE(some.addresses);
  EXPECT_FALSE(some.everything);
  EXPECT_TRUE(some.isOff("ers"));
  EXPECT_FALSE(some.isOff("MRF"));
  EXPECT_FALSE(some.isOff("WMS")) << "addresses are allowed";
  EXPECT_TRUE(some.isOff("GPSBabel")) << "programs are not";
  const Allowance none = Allowance::fromEnvironment();
  EXPECT_TRUE(none.isOff("WMS"));
  EXPECT_TRUE(none.isOff("MRF"));
  EXPECT_FALSE(none.isOff("GTiff"));
}

}  // namespace
}  // namespace vlclientui::client
