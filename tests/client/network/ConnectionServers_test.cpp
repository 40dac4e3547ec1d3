// Services of servers that ask who is there, by connections and by secrets that a person typed.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "client/connections/ConnectionBook.h"
#include "client/drawing/ImageSource.h"
#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/CatalogueServerClient.h"
#include "client/facade/NetworkServers.h"
#include "client/network/CoverageServers.h"
#include "client/network/NetworkAccess.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "platform/LibXmlService.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"
#include "support/TemporaryDataHome.h"
#include "support/TestFolders.h"

namespace vlclientui::client::network {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::encoded;
using vlclientui::test::FaultProxy;
using vlclientui::test::MapServer;

constexpr const char* password = "hemlig-ord";
constexpr const char* basic = "wants=basic:ann:hemlig-ord";

// The book of the process is opened once, in this folder.
const vlclientui::test::TemporaryDataHome& dataHome() {
  static const vlclientui::test::TemporaryDataHome home;
  return home;
}
const fs::path& ownHome = dataHome().path();

class ConnectionServers : public testing::Test {
 protected:
  ConnectionServers() { addNetworkServers(*server_); }
  ~ConnectionServers() override {
    for (const Connection& connection : book().connections()) book().remove(connection.name);
  }

  static ConnectionBook& book() { return ConnectionBook::shared(); }
  void connect(const std::string& name, SignIn signIn, const std::string& tokenName = "Authorization",
               TokenPlace place = TokenPlace::Header, const std::string& secret = password) {
    ConnectionEdit edit{
        {name, proxy_.address("/wcs"), signIn, "ann", place, tokenName, {}}, secret, SecretKeeping::File, ""};
    book().save(edit);
  }
  /// The names of a server, as its document has them; empty where it is silent, and then why.
  std::string ask(const std::string& server) {
    const SilenceListener listener([this](const SilentEnd& end) { told_ += end.reason + "\n"; });
    OVLCatalogueServerClient client(server_);
    return client.GetServerInfo("<Vorlane><Client><ServerInfo><Request><Server>" + xmlEscaped(server) +
                                "</Server></Request></ServerInfo></Client></Vorlane>");
  }
  std::unique_ptr<CatalogueImageService> open(const std::string& reference) {
    return std::make_unique<CatalogueImageService>(server_, xml_, reference);
  }
  /// All that a service tells and writes.
  std::string everythingOf(CatalogueImageService& service) {
    const fs::path file = ownHome / "saved.VLRef";
    EXPECT_TRUE(service.SaveProperties(file.string())) << service.status();
    std::ostringstream saved;
    saved << std::ifstream(file).rdbuf();
    fs::remove(file);
    return service.ServiceProperties() + service.ServiceInfo() + service.GetImageMetadata("Full") +
           service.GetMetaData("") + service.status() + service.record().reference +
           service.record().file.string() + saved.str();
  }
  static std::string xmlEscaped(std::string text) {
    for (std::size_t at = text.find('&'); at != std::string::npos; at = text.find('&', at + 1))
      text.replace(at, 1, "&amp;");
    return text;
  }
  std::string refusal(const std::string& reference) {
    try {
      open(reference);
      return {};
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
  }

  FaultProxy proxy_{MapServer::shared().address().substr(7)};
  platform::LibXmlService xml_{platform::PathTranslation(ownHome.string())};
  std::shared_ptr<CatalogueServer> server_ = std::make_shared<CatalogueServer>(xml_, CatalogueSettings());
  std::string told_;
};

TEST_F(ConnectionServers, AreListedAndOpenedByTheNameOfAConnection) {
  connect("Home maps", SignIn::Password);
  proxy_.always(basic);
  EXPECT_NE(ask("home maps").find("<Name>World/EGM96_Geoid</Name>"), std::string::npos) << told_;
  const auto service = open("ImageService://Home maps/World/EGM96_Geoid");
  EXPECT_FALSE(service->drawImage(service->facts().envelope, 40, 20).isEmpty());
  const std::string everything = everythingOf(*service);
  EXPECT_NE(everything.find("<ImageServiceReference>ImageService://Home maps/World/EGM96_Geoid<"),
            std::string::npos);
  EXPECT_EQ(everything.find(password), std::string::npos);
}

TEST_F(ConnectionServers, GetTheirTokenInTheHeaderOrParameterThatIsTold) {
  connect("Bearer", SignIn::Token);
  proxy_.always("wants=" + encoded("header:Authorization:Bearer hemlig-ord"));
  EXPECT_NE(ask("Bearer"), "") << told_;
  book().remove("Bearer");
  connect("Key", SignIn::Token, "X-Key");
  proxy_.always("wants=header:X-Key:hemlig-ord");
  EXPECT_NE(ask("Key"), "") << told_;
  book().remove("Key");
  connect("Parameter", SignIn::Token, "token", TokenPlace::Parameter);
  proxy_.always("wants=parameter:token:hemlig-ord");
  EXPECT_NE(ask("Parameter"), "") << told_;
  const auto service = open("ImageService://Parameter/World/EGM96_Geoid");
  EXPECT_FALSE(service->drawImage(service->facts().envelope, 40, 20).isEmpty());
  EXPECT_EQ(everythingOf(*service).find(password), std::string::npos);
  EXPECT_EQ(told_.find(password), std::string::npos);
}

TEST_F(ConnectionServers, AreUsedWithASecretThatStoodInTheAddressWhichIsKeptNowhere) {
  proxy_.always(basic);
  const std::string typed = "http://ann:hemlig-ord@" + proxy_.place() + "/wcs";
  EXPECT_NE(ask(typed), "") << told_;
  const auto service = open("ImageService://" + typed + "/World/EGM96_Geoid");
  EXPECT_EQ(service->record().reference, "ImageService://" + proxy_.address("/wcs") + "/World/EGM96_Geoid");
  EXPECT_EQ(everythingOf(*service).find(password), std::string::npos);
  EXPECT_NE(ask(proxy_.address("/wcs")), "") << "the same session knows it";
}

TEST_F(ConnectionServers, AreUsedWithAKeyThatStoodInAReferenceWhichIsKeptNowhere) {
  proxy_.always("wants=parameter:token:hemlig-ord");
  const auto service =
      open("ImageService://" + proxy_.address("/wcs") + "?token=hemlig-ord/World/EGM96_Geoid");
  EXPECT_EQ(service->record().reference, "ImageService://" + proxy_.address("/wcs") + "/World/EGM96_Geoid");
  EXPECT_EQ(everythingOf(*service).find(password), std::string::npos);
}

TEST_F(ConnectionServers, WithoutASecretAskForAConnection) {
  proxy_.always(basic);
  EXPECT_EQ(ask(proxy_.address("/wcs")), "");
  EXPECT_NE(told_.find("status 401: it asks for a user and password or a token"), std::string::npos) << told_;
  const std::string told = refusal("ImageService://" + proxy_.address("/wcs") + "/World/EGM96_Geoid");
  EXPECT_NE(told.find("a connection to this address can keep it"), std::string::npos) << told;
}

TEST_F(ConnectionServers, ThatRefuseASecretTellSoWithoutIt) {
  proxy_.always("wants=basic:ann:another");
  EXPECT_EQ(ask("http://ann:hemlig-ord@" + proxy_.place() + "/wcs?api_key=other-secret"), "");
  EXPECT_NE(told_.find("refuses the one it was sent"), std::string::npos) << told_;
  EXPECT_EQ(told_.find(password), std::string::npos);
  EXPECT_EQ(told_.find("other-secret"), std::string::npos);
}

TEST_F(ConnectionServers, LeadSecretsToNoOtherServerAndNoOtherPath) {
  ConnectionEdit edit{{"All", proxy_.address("/echo"), SignIn::Password, "ann", {}, "", {}},
                      password,
                      SecretKeeping::File,
                      ""};
  book().save(edit);
  const auto sentTo = [](const std::string& address) {
    HttpRequest request;
    request.address = address;
    const HttpResult result = NetworkAccess::shared().transport().fetch(request);
    const auto* const answer = std::get_if<HttpAnswer>(&result);
    EXPECT_NE(answer, nullptr);
    return answer == nullptr ? "" : answer->body;
  };
  EXPECT_NE(sentTo(proxy_.address("/echo")).find("Basic "), std::string::npos);
  EXPECT_EQ(sentTo(proxy_.address("/echoes")).find("Basic "), std::string::npos);
  EXPECT_EQ(sentTo(proxy_.otherAddress("/echo")).find("Basic "), std::string::npos);
  proxy_.arm(1, "redirect=" + encoded(proxy_.otherAddress("/echo")));
  EXPECT_EQ(sentTo(proxy_.address("/echo")).find("Basic "), std::string::npos);
  proxy_.arm(1, "redirect=" + encoded(proxy_.address("/echoes")));
  EXPECT_EQ(sentTo(proxy_.address("/echo")).find("Basic "), std::string::npos);
}

TEST_F(ConnectionServers, OfFilesAreReadByTheNameOfAConnection) {
  const FaultProxy files{fs::path(vlclientui::samplesFolder())};
  files.always(basic);
  book().save({{"Files", files.address("/Elevation/"), SignIn::Password, "ann", {}, "", {}},
               password,
               SecretKeeping::File,
               ""});
  EXPECT_NE(ask("Files").find("<Name>Terrain_30m</Name>"), std::string::npos) << told_;
  const auto service = open("ImageService://Files/Terrain_30m");
  EXPECT_FALSE(service->drawImage(service->facts().envelope, 40, 20).isEmpty());
  const std::string everything = everythingOf(*service);
  EXPECT_NE(everything.find("ImageService://Files/Terrain_30m<"), std::string::npos);
  EXPECT_EQ(everything.find(password), std::string::npos);
}

TEST_F(ConnectionServers, ThatWereFoundAreAskedThereFirstAndForgottenWhenTheyAreAway) {
  const fs::path file = ownHome / "hosts" / "hosts.json";
  const auto list = [&] {
    NetworkAccess access({}, file);
    return CoverageServers(access).list(proxy_.place());
  };
  ASSERT_TRUE(list());
  const auto place = HostMemory(file).placeOf(proxy_.place());
  ASSERT_TRUE(place);
  const auto probes = [&, path = "GET " + place->substr(proxy_.address("").size())] {
    int found = 0;
    for (const std::string& line : proxy_.requests()) found += line.starts_with(path + "?") ? 0 : 1;
    return found;
  };
  proxy_.clear();
  ASSERT_TRUE(list());
  EXPECT_EQ(probes(), 0);
  proxy_.always("status=404");
  EXPECT_FALSE(list());
  EXPECT_FALSE(HostMemory(file).placeOf(proxy_.place()));
  EXPECT_GT(probes(), 0);
}

TEST_F(ConnectionServers, AreRememberedByTheirHostAlone) {
  const fs::path file = ownHome / "bare" / "hosts.json";
  NetworkAccess access({}, file);
  CoverageServers servers(access);
  EXPECT_TRUE(servers.list(proxy_.place() + "/elevation/x/../.."));
  EXPECT_FALSE(fs::exists(file));
  for (const std::string& text : {proxy_.place() + "/", proxy_.address("/"), proxy_.place()})
    EXPECT_TRUE(servers.list(text)) << text;
  std::ostringstream kept;
  kept << std::ifstream(file).rdbuf();
  const std::string text = kept.str();
  EXPECT_TRUE(text.starts_with("{\n  \"" + proxy_.place() + "\": \"" + proxy_.address("/"))) << text;
  EXPECT_EQ(std::ranges::count(text, '\n'), 3) << "one host: " << text;
}

}  // namespace
}  // namespace vlclientui::client::network
