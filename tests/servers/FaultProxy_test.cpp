#include "servers/FaultProxy.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "servers/WebAnswer.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class FaultProxies : public testing::Test {
 protected:
  FaultProxies() {
    std::string pattern = (fs::temp_directory_path() / "vlclientui-served-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    std::ofstream(folder_ / "a.txt") << "0123456789";
    fs::create_directory(folder_ / "sub");
    server_ = std::make_unique<FaultProxy>(folder_);
  }
  ~FaultProxies() override {
    server_.reset();
    fs::remove_all(folder_);
  }

  [[nodiscard]] FaultProxy& server() const { return *server_; }
  [[nodiscard]] WebAnswer get(const std::string& path) const { return fetchPlainly(server().address(path)); }

 private:
  fs::path folder_;
  std::unique_ptr<FaultProxy> server_;
};

TEST_F(FaultProxies, ServeFilesWholeAndInParts) {
  EXPECT_EQ(get("/a.txt").body, "0123456789");
  EXPECT_EQ(get("/a.txt").type, "text/plain");
  EXPECT_EQ(fetchPlainly(server().address("/a.txt"), "2-4").body, "234");
  EXPECT_EQ(fetchPlainly(server().address("/a.txt"), "-3").body, "789");
  EXPECT_EQ(fetchPlainly(server().address("/a.txt"), "70-").status, 416);
}

TEST_F(FaultProxies, ServeFoldersAsPagesOfLinks) {
  const WebAnswer page = get("/");
  EXPECT_EQ(page.type, "text/html");
  EXPECT_THAT(page.body, HasSubstr("<a href=\"a.txt\">a.txt</a>"));
  EXPECT_THAT(page.body, HasSubstr("<a href=\"sub/\">sub/</a>"));
}

TEST_F(FaultProxies, ServeNothingOutsideTheirFolder) {
  EXPECT_EQ(get("/%2e%2e/%2e%2e/etc/hostname").status, 404);
  EXPECT_EQ(get("/none.txt").status, 404);
}

TEST_F(FaultProxies, DoWhatThePathAsksFor) {
  EXPECT_EQ(get("/fault/status=503/a.txt").status, 503);
  EXPECT_EQ(get("/fault/type=text%2Fhtml/a.txt").type, "text/html");
  EXPECT_EQ(get("/fault/delay=1;corrupt/a.txt").body.size(), 10U);
  EXPECT_NE(get("/fault/corrupt/a.txt").body, "0123456789");
  const WebAnswer exception = get("/fault/exception/a.txt");
  EXPECT_EQ(exception.status, 200);
  EXPECT_THAT(exception.body, HasSubstr("ExceptionReport"));
  EXPECT_EQ(get("/fault/close/a.txt").status, 0);
  EXPECT_EQ(get("/fault/truncate/a.txt").status, 0);
}

TEST_F(FaultProxies, DoWhatIsArmedAsOftenAsToldAndWhatHoldsAlways) {
  server().arm(2, "status=500");
  EXPECT_EQ(get("/a.txt").status, 500);
  EXPECT_EQ(get("/a.txt").status, 500);
  EXPECT_EQ(get("/a.txt").status, 200);
  server().always("status=429");
  EXPECT_EQ(get("/a.txt").status, 429);
  server().always("");
  EXPECT_EQ(get("/a.txt").status, 200);
}

TEST_F(FaultProxies, CountWhatIsAskedButNoCommands) {
  static_cast<void>(get("/a.txt?x=1"));
  static_cast<void>(get("/fault/status=500/b"));
  EXPECT_THAT(server().requests(), ElementsAre("GET /a.txt?x=1", "GET /fault/status=500/b"));
  EXPECT_EQ(server().counts().requests, 2U);
  EXPECT_EQ(server().counts().connections, 2U);
  EXPECT_EQ(server().counts().together, 1U);
  EXPECT_EQ(server().counts().open, 0U);
  server().clear();
  EXPECT_EQ(server().counts().requests, 0U);
}

TEST_F(FaultProxies, PassOnWhatAnotherServerAnswers) {
  const FaultProxy passing(server().place());
  EXPECT_EQ(fetchPlainly(passing.address("/a.txt")).body, "0123456789");
  EXPECT_EQ(fetchPlainly(passing.address("/a.txt"), "2-4").body, "234");
  EXPECT_EQ(fetchPlainly(passing.address("/none.txt")).status, 404);
  EXPECT_EQ(fetchPlainly(passing.address("/fault/status=500/a.txt")).status, 500);
  EXPECT_EQ(fetchPlainly(passing.address("/fault/truncate/a.txt")).status, 0);
  EXPECT_EQ(server().requests().front(), "GET /a.txt");
}

TEST_F(FaultProxies, TellThatTheServerBehindIsGone) {
  std::unique_ptr<FaultProxy> passing;
  {
    const FaultProxy behind(fs::temp_directory_path());
    passing = std::make_unique<FaultProxy>(behind.place());
    EXPECT_EQ(fetchPlainly(passing->address("/none.txt")).status, 404);
  }
  EXPECT_EQ(fetchPlainly(passing->address("/none.txt")).status, 502);
}

}  // namespace
}  // namespace vlclientui::test
