#include "client/reach/Places.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "client/reach/RasterNames.h"
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

TEST_F(PlacesOfAPerson, ReachInAHomeWhatLiesBelowButNoNeighbors) {
  const std::string former = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
  const std::string downloads = make("h/me/downloads/e.vrt");
  setenv("HOME", path("h/me").c_str(), 1);
  places_.learnAllowance();
  setenv("HOME", former.c_str(), 1);
  const std::string file = make("h/me/a.vrt");
  const std::string below = make("h/me/tiles/c.tif");
  const std::string ofOthers = make("h/you/d.tif");
  places_.pointAtFile(downloads);
  EXPECT_FALSE(places_.reach(below)) << "a folder of a home has no neighbors";
  places_.pointAtFile(file);
  EXPECT_TRUE(places_.reach(below)) << "a file's own folder counts with what lies below";
  EXPECT_FALSE(places_.reach(ofOthers));
  places_.pointAtFile(make("h/b.vrt"));
  EXPECT_TRUE(places_.reach(path("h/b.vrt")));
  EXPECT_FALSE(places_.reach(ofOthers)) << "what holds homes has nothing in common";
}

TEST_F(PlacesOfAPerson, HaveNoNeighborsInSharedFolders) {
  const std::string file = make("shared/mine/a.vrt");
  const std::string ofOthers = make("shared/theirs/b.tif");
  fs::permissions(path("shared"), fs::perms::all | fs::perms::sticky_bit);
  places_.pointAtFile(file);
  EXPECT_FALSE(places_.reach(ofOthers));
}

TEST_F(PlacesOfAPerson, KeepWhatLiesBelowAndBesideWhereAMountShowsAllFoldersAsWritable) {
  const std::string file = make("mount/mosaics/a.vrt");
  const std::string below = make("mount/mosaics/tiles/b.tif");
  const std::string beside = make("mount/tiles/c.tif");
  for (const char* name : {"mount", "mount/mosaics", "mount/mosaics/tiles", "mount/tiles"})
    fs::permissions(path(name), fs::perms::all);
  places_.pointAtFile(file);
  EXPECT_TRUE(places_.reach(below));
  EXPECT_TRUE(places_.reach(beside));
}

TEST_F(PlacesOfAPerson, ClimbNoFurtherByFilesThatLieInNeighboringFolders) {
  const std::string definition = make("p/sent/definitions/a");
  const std::string planted = make("p/sent/x.tif");
  const std::string above = make("p/side.tif");
  places_.pointAt(path("p/sent/definitions"));
  places_.pointAtFile(definition);
  EXPECT_TRUE(places_.reach(planted));
  places_.pointAtFile(planted);
  EXPECT_FALSE(places_.reach(above));
}

TEST_F(PlacesOfAPerson, KnowAllowedFoldersByWhereTheyLedWhenTheyWereLearned) {
  const std::string file = make("disk/a.tif");
  fs::create_directory_symlink(path("disk"), path("allowed"));
  setenv("VLCLIENTUI_ALLOW_OUTSIDE", path("allowed").c_str(), 1);
  places_.learnAllowance();
  unsetenv("VLCLIENTUI_ALLOW_OUTSIDE");
  fs::remove(path("allowed"));
  EXPECT_TRUE(places_.reach(file)) << "no question about that folder is asked again";
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
  places_.pointAtServer("/vsivlrange/https/host3");
  EXPECT_FALSE(places_.reachName("/vsivlrange/https/host4/b.tif")) << "no name of all servers";
  places_.keepOwnNames("OWN123:");
  EXPECT_TRUE(places_.reachName("OWN123:abc"));
  EXPECT_FALSE(places_.reachName("OWN12:abc"));
}

TEST_F(PlacesOfAPerson, AreNotAskedForNamesThatOnlyTakeTime) {
  std::string prefixes;
  for (int i = 0; i < 1000; ++i) prefixes += "vrt://";
  for (const std::string& name : {"aa" + std::string(4000, ':'), std::string(5000, 'a'), prefixes}) {
    EXPECT_NE(refusalOfName(name, places_, NameOrigin::Opened), "") << name.substr(0, 20);
  }
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
