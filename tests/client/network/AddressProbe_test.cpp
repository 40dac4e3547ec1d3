#include "client/network/AddressProbe.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "client/QuickTransport.h"
#include "client/network/NetworkAccess.h"
#include "client/waiting/Wait.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"
#include "servers/ServerProcess.h"

namespace vlclientui::client::network {
namespace {

using vlclientui::test::FaultProxy;
using vlclientui::test::MapServer;
using vlclientui::test::StaticServer;

AddressKind kindOf(const std::string& body, int status = 200) {
  HttpAnswer answer;
  answer.status = status;
  answer.body = body;
  return kindOfAnswer(answer);
}

TEST(AddressKinds, AreToldByTheFirstBytesOfAnAnswer) {
  EXPECT_EQ(kindOf(std::string("II*\0\1\2", 6)), AddressKind::RasterFile);
  EXPECT_EQ(kindOf("\x89PNG\r\n\x1a\n...", 206), AddressKind::RasterFile);
  EXPECT_EQ(kindOf("<VRTDataset rasterXSize=\"1\">"), AddressKind::Mosaic);
  EXPECT_EQ(kindOf("<?xml version=\"1.0\"?><Vorlane><MosaicDefinition/></Vorlane>"), AddressKind::Definition);
  EXPECT_EQ(kindOf("<Vorlane><Client/></Vorlane>"), AddressKind::Nothing);
  EXPECT_EQ(kindOf("\xEF\xBB\xBF\n<?xml version=\"1.0\"?><wcs:Capabilities/>"), AddressKind::Coverages);
  EXPECT_EQ(kindOf("<ServiceExceptionReport/>"), AddressKind::Coverages);
  EXPECT_EQ(kindOf(R"( {"type":"Catalog","stac_version":"1.0.0"})"), AddressKind::Catalogue);
  EXPECT_EQ(kindOf(R"({"collections":[],"links":[]})"), AddressKind::Catalogue);
  EXPECT_EQ(kindOf(R"([{"name":"a.tif","type":"file"}])"), AddressKind::WebFolder);
  EXPECT_EQ(kindOf("<html><head><title>Index of /x/</title>"), AddressKind::WebFolder);
  EXPECT_EQ(kindOf("<!DOCTYPE HTML><title>Directory listing for /</title>"), AddressKind::WebFolder);
  EXPECT_EQ(kindOf("<html><a href=\"scene.TIF\">a scene</a>"), AddressKind::WebFolder);
}

TEST(AddressKinds, OfServicesAreToldByTheFirstElementAlone) {
  EXPECT_EQ(kindOf("<html><head><title>Index of /x/</title><a href=\"WMTSCapabilities.tif\">a</a></html>"),
            AddressKind::WebFolder);
  EXPECT_EQ(kindOf("<html><title>Directory listing for /</title><a href=\"ServiceException.tif\">"),
            AddressKind::WebFolder);
  EXPECT_EQ(kindOf("<html><body>Capabilities and ExceptionReport</body></html>"), AddressKind::Nothing);
  EXPECT_EQ(kindOf("<!-- <Capabilities> --><html/>"), AddressKind::Nothing);
  EXPECT_EQ(kindOf("<?xml version=\"1.0\"?><!-- a > b --><WCS_Capabilities version=\"1.0.0\">"),
            AddressKind::Coverages);
  EXPECT_EQ(kindOf("<!DOCTYPE WMT_MS_Capabilities SYSTEM \"a.dtd\" [ <!ELEMENT Vendor EMPTY> ]>\n"
                   "<WMT_MS_Capabilities>"),
            AddressKind::Coverages);
  EXPECT_EQ(kindOf("<?xml version=\"1.0\"?>\n<ows:ExceptionReport\n version=\"2.0.0\">"),
            AddressKind::Coverages);
  for (const std::string text : {"<", "<!", "<?", "<!--", "<!DOCTYPE a [", "<!DOCTYPE a [ ]", "<a:", "<:"})
    EXPECT_EQ(kindOf(text), AddressKind::Nothing) << text;
}

TEST(AddressKinds, OfOtherAnswersAreNone) {
  for (const std::string body :
       {"", "word", "<html><body>Welcome</body></html>", "{\"a\":1}", "[1,2]", "[", "{"})
    EXPECT_EQ(kindOf(body), AddressKind::Nothing) << body;
  EXPECT_EQ(kindOf("<html><title>Index of /</title>", 404), AddressKind::Nothing);
}

TEST(AddressKinds, AreToldByAddressesOfCoverageServices) {
  EXPECT_EQ(kindOfAddress("http://h/wcs"), AddressKind::Coverages);
  EXPECT_EQ(kindOfAddress("http://h/cgi-bin/mapserv?map=a"), AddressKind::Coverages);
  EXPECT_EQ(kindOfAddress("http://h/x?Service=WCS"), AddressKind::Coverages);
  EXPECT_EQ(kindOfAddress("http://h/a.tif"), std::nullopt);
  EXPECT_EQ(kindOfAddress("ftp://h/"), AddressKind::Nothing);
}

TEST(ServerTexts, ThatAreWebAddressesAreTakenApart) {
  EXPECT_EQ(addressOfServer(" h:80 ")->address, "http://h/");
  EXPECT_EQ(addressOfServer("h")->place, ServerPlace::Host);
  EXPECT_EQ(addressOfServer("https://h/a.tif?x")->address, "https://h/a.tif?x");
  EXPECT_EQ(addressOfServer("h/folder")->place, ServerPlace::Address);
  for (const std::string text : {"", "C:/data", "two words", "http://u:p@h/", "ftp://h/"})
    EXPECT_FALSE(addressOfServer(text)) << text;
}

class AddressProbes : public platform::TemporaryFolder {
 protected:
  FaultProxy proxy_{std::filesystem::path(folder_)};
  NetworkAccess access_{vlclientui::test::quickSettings()};
  AddressProbe& probe_ = access_.probe();
};

TEST_F(AddressProbes, AskOnceAndRemember) {
  write("a.json", R"({"stac_version":"1.0.0"})");
  EXPECT_EQ(probe_.knownKind(proxy_.address("/a.json")), std::nullopt);
  EXPECT_EQ(probe_.kindOf(proxy_.address("/a.json")), AddressKind::Catalogue);
  EXPECT_EQ(probe_.kindOf(proxy_.address("/a.json")), AddressKind::Catalogue);
  EXPECT_EQ(probe_.knownKind(proxy_.address("/a.json")), AddressKind::Catalogue);
  EXPECT_EQ(probe_.kindOf(proxy_.address("/none")), AddressKind::Nothing);
  EXPECT_EQ(probe_.kindOf(proxy_.address("/none")), AddressKind::Nothing);
  EXPECT_EQ(probe_.kindOf(proxy_.address("/wcs")), AddressKind::Coverages);
  EXPECT_EQ(proxy_.counts().requests, 2U);
}

TEST_F(AddressProbes, KnowRealServers) {
  const std::string server = StaticServer::samples().address();
  EXPECT_EQ(probe_.kindOf(server + "/"), AddressKind::WebFolder);
  EXPECT_EQ(probe_.kindOf(server + "/Elevation"), AddressKind::WebFolder);
  EXPECT_EQ(probe_.kindOf(server + "/Elevation/Terrain_30m.tif"), AddressKind::RasterFile);
  EXPECT_EQ(probe_.kindOf(MapServer::shared().address() + "/"), AddressKind::Nothing);
  EXPECT_EQ(probe_.kindOf(MapServer::shared().coverages() + "?REQUEST=GetCapabilities&service=WCS"),
            AddressKind::Coverages);
}

TEST_F(AddressProbes, RememberThatNobodyAnsweredAndWhy) {
  proxy_.always("garbage");
  EXPECT_EQ(probe_.kindOf(proxy_.address("/")), AddressKind::Nothing);
  const auto silence = probe_.silence(proxy_.address("/"));
  ASSERT_TRUE(silence);
  EXPECT_NE(silence->text.find("127.0.0.1"), std::string::npos) << silence->text;
  EXPECT_FALSE(probe_.silence(proxy_.address("/other")));
}

TEST_F(AddressProbes, TakeAFileThatComesWholeByItsName) {
  proxy_.always("endless");
  EXPECT_EQ(probe_.kindOf(proxy_.address("/a.tif")), AddressKind::RasterFile);
  EXPECT_EQ(probe_.kindOf(proxy_.address("/page")), AddressKind::Nothing);
}

TEST_F(AddressProbes, RememberNothingOfAWaitThatWasGivenUp) {
  CancelToken token;
  token.cancel();
  {
    const WaitScope scope(nullptr, token);
    EXPECT_EQ(probe_.kindOf(proxy_.address("/a.json")), AddressKind::Nothing);
  }
  EXPECT_EQ(probe_.knownKind(proxy_.address("/a.json")), std::nullopt);
}

}  // namespace
}  // namespace vlclientui::client::network
