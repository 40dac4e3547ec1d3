#include "client/catalogue/FolderServers.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "client/waiting/Wait.h"
#include "contracts/Silence.h"

namespace vlclientui::client {
namespace {

// Stands for the system's translation of drives; drive D is none.
std::string fromDrives(const std::string& path) {
  if (path.starts_with("D:")) return {};
  if (!path.starts_with("Z:")) return path;
  std::string native = path.substr(2);
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

class FolderServersTest : public test::RasterFixture {
 protected:
  /// The names of all services, or "(silent)".
  std::string listed(const std::string& server) {
    const auto content = servers_.list(server);
    if (!content) return "(silent)";
    std::string names;
    for (const ServiceRecord& service : content->services) names += service.name + ";";
    return names;
  }

  /// The file of a service below the test's folder, or "(none)".
  std::string found(const std::string& serverAndName) {
    const auto entry = servers_.find(serverAndName);
    return entry ? entry->file.lexically_relative(folder()).string() : "(none)";
  }

  [[nodiscard]] std::string path(const std::string& below) const { return (folder() / below).string(); }

  RasterCache cache_;
  FolderServers servers_{folder() / "embedded", fromDrives, xml(), cache_};
};

TEST_F(FolderServersTest, ListTheEmbeddedFolderByItsTwoNamesInAnyCase) {
  makeRaster("embedded/a.tif");
  for (const char* server : {"127.0.0.1", "localhost", "LOCALHOST", " localhost\t"}) {
    EXPECT_EQ(listed(server), "a;") << server;
  }
  for (const char* server : {"127.0.0.2", "localhosts", "local host", ""}) {
    EXPECT_EQ(listed(server), "(silent)") << server;
  }
}

TEST_F(FolderServersTest, AreSilentWhereTheWaitForThemIsGivenUp) {
  makeRaster("other/a.tif");
  std::string heard;
  const SilenceListener listener([&heard](const SilentEnd& end) { heard += end.reason; });
  {
    CancelToken token;
    const WaitScope scope(nullptr, token);
    token.cancel();
    EXPECT_EQ(listed(path("other")), "(silent)");
  }
  EXPECT_NE(heard.find("given up"), std::string::npos) << heard;
  EXPECT_EQ(listed(path("other")), "a;");
}

TEST_F(FolderServersTest, ListAnyFolderByItsWholePath) {
  makeRaster("other/a.tif");
  makeRaster("other/Sub/b.tif");
  EXPECT_EQ(listed(path("other")), "Sub/b;a;");
  EXPECT_EQ(listed("  " + path("other") + " "), "Sub/b;a;");
  EXPECT_EQ(listed("Z:" + path("other/Sub")), "b;");
}

TEST_F(FolderServersTest, KeepSilentWhereThereIsNoFolder) {
  makeRaster("other/a.tif");
  for (const std::string& server :
       {path("none"), path("other/a.tif"), std::string("other"), std::string("./other"),
        std::string("D:\\other"), std::string("http://server/wcs"), std::string("server:8080")}) {
    EXPECT_EQ(listed(server), "(silent)") << server;
    EXPECT_FALSE(servers_.folderOf(server)) << server;
  }
}

TEST_F(FolderServersTest, KeepSilentWhereTheEmbeddedFolderIsMissing) {
  EXPECT_EQ(listed("localhost"), "(silent)");
}

TEST_F(FolderServersTest, ListAFolderWithoutRastersAsAnEmptyServer) {
  std::filesystem::create_directories(path("empty"));
  EXPECT_EQ(listed(path("empty")), "");
  EXPECT_EQ(servers_.folderOf(path("empty")), path("empty"));
}

TEST_F(FolderServersTest, FindAServiceOfTheEmbeddedFolder) {
  makeRaster("embedded/Sub/a.tif");
  EXPECT_EQ(found("localhost/Sub/a"), "embedded/Sub/a.tif");
  EXPECT_EQ(found("127.0.0.1\\Sub\\a"), "embedded/Sub/a.tif");
  EXPECT_EQ(found("LocalHost/Sub/a"), "embedded/Sub/a.tif");
}

TEST_F(FolderServersTest, FindAServiceWhereServerAndNameAreAPathTogether) {
  makeRaster("other/Sub/a.tif");
  EXPECT_EQ(found(path("other") + "/Sub/a"), "other/Sub/a.tif");
  EXPECT_EQ(found("Z:" + path("other") + "\\Sub\\a"), "other/Sub/a.tif");
}

TEST_F(FolderServersTest, FindNothingElse) {
  makeRaster("embedded/a.tif");
  for (const std::string& text :
       {std::string("localhost"), std::string("localhost/"), std::string("localhost/b"),
        std::string("localhost/../embedded/a"), std::string("server/a"), std::string("D:\\embedded\\a"),
        std::string(), std::string("/"), path("none/a")}) {
    EXPECT_EQ(found(text), "(none)") << text;
  }
}

TEST_F(FolderServersTest, FindWhatTheyList) {
  makeRaster("embedded/a.tif");
  makeRaster("embedded/a.png.tif");
  makeRaster("embedded/Sub/b.tif");
  const auto content = servers_.list("localhost");
  ASSERT_TRUE(content);
  EXPECT_EQ(content->services.size(), 3U);
  for (const ServiceRecord& service : content->services) {
    const auto entry = servers_.find("localhost/" + service.name);
    ASSERT_TRUE(entry) << service.name;
    EXPECT_EQ(entry->file, service.entry.file);
  }
}

}  // namespace
}  // namespace vlclientui::client
