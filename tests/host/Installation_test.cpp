#include "host/Installation.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "support/TemporaryDataHome.h"
#include "support/TestFolders.h"

namespace vlclientui::host {
namespace {

namespace fs = std::filesystem;

class InstallationTest : public testing::Test {
 protected:
  [[nodiscard]] fs::path place(const char* name) const { return folder_.path() / name; }
  [[nodiscard]] fs::path placeWithDefinitions(const char* name) const {
    fs::create_directories(place(name) / "definitions");
    std::ofstream(place(name) / "definitions" / "VLClient.XADef") << "<Vorlane/>";
    return place(name);
  }

 private:
  test::TemporaryFolder folder_;
};

TEST_F(InstallationTest, IsLookedForWhereTheVariableTellsBesideProgramAndLibraryAndAmongTheSources) {
  const test::EnvironmentKeeper variable("VLCLIENTUI_HOME", "/told");
  const auto places = installationPlaces();
  ASSERT_EQ(places.size(), 4U);
  EXPECT_EQ(places[0], "/told");
  EXPECT_EQ(places[1],
            fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "share" / "vlclientui");
  EXPECT_TRUE(places[2].is_absolute());
  EXPECT_TRUE(places[2].string().ends_with("share/vlclientui")) << places[2];
  EXPECT_EQ(places[3], sourceFolder());
}

TEST_F(InstallationTest, HasNoFirstPlaceWithoutTheVariable) {
  const test::EnvironmentKeeper variable("VLCLIENTUI_HOME", std::nullopt);
  EXPECT_EQ(installationPlaces().front(), fs::path());
}

TEST_F(InstallationTest, IsTheFolderThatTheVariableNames) {
  const test::EnvironmentKeeper variable("VLCLIENTUI_HOME", placeWithDefinitions("mine").string());
  EXPECT_EQ(findInstallation(), installationIn(place("mine")));
}

TEST_F(InstallationTest, IsTheNextPlaceWhereTheVariableLeadsAstray) {
  const test::EnvironmentKeeper variable("VLCLIENTUI_HOME", place("nowhere").string());
  EXPECT_EQ(findInstallation().home, fs::path(sourceFolder()));
}

TEST_F(InstallationTest, IsTheFirstPlaceThatHoldsTheDefinitions) {
  fs::create_directories(place("bare"));
  const fs::path first = placeWithDefinitions("first");
  const fs::path second = placeWithDefinitions("second");
  EXPECT_EQ(findInstallationIn({{}, place("nowhere"), place("bare"), first, second}).home, first);
}

TEST_F(InstallationTest, HasItsOwnSamplesOrThoseOfTheBuild) {
  const fs::path home = placeWithDefinitions("mine");
  EXPECT_EQ(installationIn(home).catalogue, fs::path(samplesFolder()));
  fs::create_directories(home / "samples" / "catalogue");
  EXPECT_EQ(installationIn(home).catalogue, home / "samples" / "catalogue");
  EXPECT_EQ(installationIn(home).definitions, home / "definitions");
  EXPECT_EQ(installationIn(home).help, home / "help");
}

TEST_F(InstallationTest, NamesEveryPlaceWhereItWasLookedForInVain) {
  try {
    static_cast<void>(findInstallationIn({{}, "/first", "/second"}));
    FAIL() << "found in a folder that is not there";
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(
        failure.description(),
        "No definitions/VLClient.XADef found; set VLCLIENTUI_HOME to the folder that holds it. Looked in:"
        " /first, /second");
  }
}

}  // namespace
}  // namespace vlclientui::host
