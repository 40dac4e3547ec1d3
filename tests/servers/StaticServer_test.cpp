#include <algorithm>
#include <fstream>

#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/TemporaryFolder.h"
#include "servers/MapServer.h"
#include "servers/WebAnswer.h"
#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

class StaticServerTest : public platform::TemporaryFolder {};

TEST(StaticServer, AnswersARangeWithThatPartOfTheFile) {
  std::ifstream file(samplesFolder() + "/Elevation/Terrain_30m.tif", std::ios::binary);
  std::string part(500, '\0');
  file.seekg(100).read(part.data(), 500);
  const WebAnswer answer =
      fetchPlainly(StaticServer::samples().address() + "/Elevation/Terrain_30m.tif", "100-599");
  EXPECT_EQ(answer.status, 206);
  EXPECT_EQ(answer.type, "image/tiff");
  EXPECT_EQ(answer.body, part);
}

TEST(StaticServer, ListsAFolder) {
  const WebAnswer answer = fetchPlainly(StaticServer::samples().address() + "/Elevation/");
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.type, "text/html");
  EXPECT_NE(answer.body.find("href=\"Terrain_30m.tif\""), std::string::npos) << answer.body;
  EXPECT_EQ(fetchPlainly(StaticServer::samples().address() + "/Nowhere/").status, 404);
}

TEST_F(StaticServerTest, ServesWhatATestWritesAndTellsEachRequest) {
  const std::string log = path("requests.log");
  const StaticServer server(folder_, log);
  write("catalog.json", R"({"type":"Catalog"})");
  const WebAnswer answer = fetchPlainly(server.address() + "/catalog.json");
  EXPECT_EQ(answer.type, "application/json");
  EXPECT_EQ(answer.body, R"({"type":"Catalog"})");
  while (read("requests.log").find("GET /catalog.json") == std::string::npos) usleep(1000);
}

TEST(StaticServer, LeavesNoProcessBehind) {
  pid_t group = 0;
  {
    const StaticServer server(samplesFolder());
    group = server.group();
    EXPECT_TRUE(hasMembers(group));
  }
  EXPECT_FALSE(hasMembers(group));
}

}  // namespace
}  // namespace vlclientui::test
