// Catalogues that ask who is there: the secret goes to their own server alone, and stands nowhere.
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "client/ServiceFixture.h"
#include "client/catalogue/Catalogue.h"
#include "client/connections/ConnectionBook.h"
#include "client/facade/NetworkServers.h"
#include "client/network/NetworkAccess.h"
#include "client/ranges/RemoteFiles.h"
#include "client/stac/StacFixture.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "servers/FaultProxy.h"
#include "support/TemporaryDataHome.h"

namespace vlclientui::client::stac {
namespace {

using vlclientui::test::encoded;
using vlclientui::test::FaultProxy;

constexpr auto word = "hemlig-ord";

// The book of the process is opened once, in this folder.
const vlclientui::test::TemporaryDataHome& homeOfConnections() {
  static const vlclientui::test::TemporaryDataHome home;
  return home;
}
const std::filesystem::path& homeOfThisProgram = homeOfConnections().path();

class StacConnections : public vlclientui::test::ServiceFixture {
 protected:
  StacConnections() {
    addNetworkServers(*server_);
    NetworkAccess::shared().forget();
    RemoteFiles::shared().forget();
  }
  ~StacConnections() override {
    for (const Connection& connection : book().connections()) book().remove(connection.name);
  }

  static ConnectionBook& book() { return ConnectionBook::shared(); }
  void connect(SignIn signIn, const std::string& tokenName = "Authorization",
               TokenPlace place = TokenPlace::Header) {
    // The catalogue's folder, with the documents and images below it.
    ConnectionEdit edit{
        {"Scenes", proxy_.address("/"), signIn, "ann", place, tokenName, {}}, word, SecretKeeping::File, ""};
    book().save(edit);
  }
  /// Lists, opens, draws and saves the study. @returns all that was told and written on the way.
  std::string everythingOf(const std::string& server) {
    std::string told;
    const SilenceListener listener([&](const SilentEnd& end) { told += end.reason + "\n"; });
    const auto content = server_->content(server);
    EXPECT_TRUE(content) << told;
    if (!content) return told;
    for (const ServiceRecord& record : content->services)
      told += record.name + record.place.string() + record.entry.file.string() + record.facts.title;
    for (const LeftOut& problem : content->problems) told += problem.path + problem.reason;
    const auto made = service("ImageService://" + server + "/Imagery/Overlap_Study");
    EXPECT_FALSE(made->drawImage(made->facts().envelope, 40, 40).isEmpty());
    const auto saved = folder() / "saved.VLRef";
    EXPECT_TRUE(made->SaveProperties(saved.string())) << made->status();
    std::ostringstream text;
    text << std::ifstream(saved).rdbuf();
    for (const ImageSource& source : made->record().sources) told += source.file.string();
    return told + made->ServiceProperties() + made->ServiceInfo() + made->GetImageMetadata("Full") +
           made->GetMetaData("") + made->status() + made->record().reference + made->record().file.string() +
           text.str();
  }

  FaultProxy proxy_{"127.0.0.1:" + std::to_string(sampleServer().port())};
};

TEST_F(StacConnections, OpenACatalogueByUserAndPassword) {
  connect(SignIn::Password);
  proxy_.always("wants=basic:ann:hemlig-ord");
  const std::string everything = everythingOf(proxy_.address("/catalog.json"));
  EXPECT_NE(everything.find("Overlap_Study"), std::string::npos);
  EXPECT_EQ(everything.find(word), std::string::npos);
}

TEST_F(StacConnections, OpenACatalogueByATokenInAHeaderOrAParameter) {
  connect(SignIn::Token);
  proxy_.always("wants=" + encoded("header:Authorization:Bearer hemlig-ord"));
  EXPECT_EQ(everythingOf(proxy_.address("/catalog.json")).find(word), std::string::npos);
  book().remove("Scenes");
  NetworkAccess::shared().forget();
  RemoteFiles::shared().forget();
  connect(SignIn::Token, "token", TokenPlace::Parameter);
  proxy_.always("wants=parameter:token:hemlig-ord");
  EXPECT_EQ(everythingOf(proxy_.address("/catalog.json")).find(word), std::string::npos);
}

TEST_F(StacConnections, AreAdvisedWhereTheCatalogueAsksWhoIsThere) {
  proxy_.always("wants=basic:ann:hemlig-ord");
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told += end.reason + "\n"; });
  EXPECT_FALSE(server_->content(proxy_.address("/catalog.json")));
  connect(SignIn::Password);
  EXPECT_TRUE(server_->content(proxy_.address("/catalog.json"))) << "at once, with a connection: " << told;
}

TEST_F(StacConnections, OfAKeyThatStoodInTheAddressKeepItNowhere) {
  proxy_.always("wants=parameter:token:hemlig-ord");
  const std::string typed = proxy_.address("/catalog.json") + "?token=" + word;
  const std::string shown = server_->withoutSecrets(typed);
  EXPECT_EQ(shown.find(word), std::string::npos);
  ASSERT_TRUE(server_->content(typed));
  EXPECT_EQ(everythingOf(shown).find(word), std::string::npos);
}

// An image of an item may lie anywhere; that server gets nothing, and its refusal ends the drawing.
TEST_F(StacConnections, SendTheirSecretToTheirOwnServerAlone) {
  const FaultProxy other{"127.0.0.1:" + std::to_string(sampleServer().port())};
  const auto itemOf = [](const std::string& id, const std::string& image, int x) {
    return R"({"type":"Feature","stac_version":"1.0.0","id":")" + id +
           R"(","bbox":[8,46,9,47],"properties":{"datetime":"2021-07-14","proj:epsg":32632,"proj:shape":[10,10],
           "proj:transform":[10,0,)" +
           std::to_string(x) + R"(,0,-10,5100000]},
           "assets":{"visual":{"type":"image/tiff","href":")" +
           image + "\"}}}";
  };
  vlclientui::test::RasterRecipe recipe{10, 10, 1, GDT_Byte, 32632, ""};
  recipe.transform = {400000, 10, 0, 5100000, 0, -10};
  makeRaster("web/own.tif", recipe);
  writeText("web/items.json", R"({"type":"FeatureCollection","features":[)" +
                                  itemOf("own", "own.tif", 400000) + "," +
                                  itemOf("strange", other.address("/strange.tif"), 400100) + "]}");
  const FaultProxy web{folder() / "web"};
  ConnectionEdit edit{{"Scenes", web.address("/"), SignIn::Password, "ann", TokenPlace::Header, "", {}},
                      word,
                      SecretKeeping::File,
                      ""};
  book().save(edit);
  web.always("wants=basic:ann:hemlig-ord");
  other.always("wants=basic:ann:hemlig-ord");
  const auto made = service("ImageService://" + web.address("/items.json") + "/items");
  ASSERT_EQ(made->record().sources.size(), 2U);
  EXPECT_FALSE(made->drawImage({400000, 5099900, 400100, 5100000}, 10, 10).isEmpty());
  EXPECT_EQ(other.counts().requests, 0U);
  std::string refusal;
  try {
    static_cast<void>(made->drawImage({400000, 5099900, 400200, 5100000}, 20, 10));
  } catch (const RuntimeFailure& failure) {
    refusal = failure.description();
  }
  EXPECT_GT(other.counts().requests, 0U);
  EXPECT_NE(refusal.find("does not let you read"), std::string::npos)
      << "nobody brought it the secret: " << refusal;
  EXPECT_EQ(refusal.find(word), std::string::npos);
}

}  // namespace
}  // namespace vlclientui::client::stac
