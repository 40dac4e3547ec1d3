// Definitions of mosaics of the web, whose sources lie on their own server.
#include "client/ranges/WebDefinitions.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "client/ServiceFixture.h"
#include "client/catalogue/Catalogue.h"
#include "client/facade/NetworkServers.h"
#include "client/ranges/RangeFiles.h"
#include "client/ranges/RemoteFiles.h"
#include "contracts/Silence.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"
#include "support/TestFolders.h"

namespace vlclientui::client::ranges {
namespace {

using vlclientui::test::FaultProxy;
using vlclientui::test::GetImage;
using vlclientui::test::StaticServer;
using Words = std::vector<std::string>;

constexpr auto place = "http://h:8080/maps/Valley.VLDef";

std::string sourceText(const std::string& file, const std::string& more = {}) {
  return "<Source><File>" + file + "</File>" + more + "</Source>";
}

std::string definitionText(const std::string& sources, const std::string& more = {}) {
  return "<Vorlane><MosaicDefinition>" + more + "<Sources>" + sources +
         "</Sources></MosaicDefinition></Vorlane>";
}

WebDefinition readGoodDefinition(const std::string& text) {
  auto read = readWebDefinition(text, place);
  const auto* reason = std::get_if<std::string>(&read);
  EXPECT_EQ(reason, nullptr) << *reason;
  return reason == nullptr ? std::get<WebDefinition>(std::move(read)) : WebDefinition();
}

std::string reasonAgainst(const std::string& text) {
  const auto read = readWebDefinition(text, place);
  const auto* reason = std::get_if<std::string>(&read);
  return reason == nullptr ? "(none)" : *reason;
}

TEST(WebDefinition, NamesSourcesOfItsOwnServer) {
  const WebDefinition read = readGoodDefinition(
      definitionText(sourceText("a.tif") + sourceText("deeper\\b c.tif") + sourceText("../up.tif") +
                     sourceText("http://h:8080/elsewhere/d.tif")));
  Words addresses;
  Words names;
  for (const MosaicSource& source : read.definition.sources) {
    addresses.push_back(addressOfRangeRaster(source.file.string()).value_or("(none)"));
    names.push_back(source.name);
  }
  EXPECT_EQ(addresses, (Words{"http://h:8080/maps/a.tif", "http://h:8080/maps/deeper/b%20c.tif",
                              "http://h:8080/up.tif", "http://h:8080/elsewhere/d.tif"}));
  EXPECT_EQ(names, (Words{"a", "b c", "up", "d"}));
  EXPECT_TRUE(read.definition.problems.empty());
}

TEST(WebDefinition, LeavesOutSourcesThatLieElsewhereAndTellsIt) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"/etc/passwd", "the source is no file beside it"},
      {"C:\\maps\\a.tif", "the source is no file beside it"},
      {"\\\\server\\a.tif", "the source is no file beside it"},
      {"/vsicurl/http://other/a.tif", "the source is no file beside it"},
      {"GTIFF_DIR:1:a.tif", "the source is no file beside it"},
      {"http://other/a.tif", "the source lies on another server"},
      {"http://h/a.tif", "the source lies on another server"},
      {"https://h:8080/a.tif", "the source lies on another server"},
      {"http://ann:hemlig@h:8080/a.tif", "the source lies on another server"},
      {"a.tif.aux.xml", "the source is no image"}};
  for (const auto& [file, reason] : rows) {
    const WebDefinition read = readGoodDefinition(definitionText(sourceText(file) + sourceText("good.tif")));
    ASSERT_EQ(read.definition.problems.size(), 1U) << file;
    EXPECT_EQ(read.definition.problems[0].reason, reason) << file;
    EXPECT_EQ(read.definition.problems[0].path.find("hemlig"), std::string::npos);
    EXPECT_EQ(read.definition.sources.size(), 1U);
    EXPECT_EQ(reasonAgainst(definitionText(sourceText(file))), "none of its sources can be used: " + reason);
  }
}

TEST(WebDefinition, IsReadAsOneOfThisMachine) {
  const WebDefinition read = readGoodDefinition(definitionText(
      sourceText("a.tif",
                 "<RasterId>7</RasterId><Attributes><Date>2021</Date><Token>hemlig</Token></Attributes>") +
          sourceText("b.tif", "<RasterId>7</RasterId>") + sourceText("c.tif"),
      "<Name>n</Name><Title>T</Title><Region>R</Region><PixelSource>P</PixelSource>"));
  const MosaicDefinition& definition = read.definition;
  EXPECT_EQ(definition.name, "n");
  EXPECT_EQ(definition.title, "T");
  EXPECT_EQ(definition.region, "R");
  EXPECT_EQ(definition.pixelSource, "P");
  ASSERT_EQ(definition.sources.size(), 3U);
  EXPECT_EQ(definition.sources[0].rasterId, "7");
  EXPECT_NE(definition.sources[1].rasterId, "7");
  EXPECT_EQ(definition.sources[2].rasterId, "4") << "the second one became the third";
  EXPECT_EQ(definition.sources[0].attributes,
            (std::vector<std::pair<std::string, std::string>>{{"Date", "2021"}, {"Token", "***"}}));
  EXPECT_EQ(read.sourceFolder, "http://h:8080/maps/Valley.sources/");
  EXPECT_EQ(readGoodDefinition(definitionText(sourceText("a.tif"), "<SourceFolder>in/it</SourceFolder>"))
                .sourceFolder,
            "http://h:8080/maps/in/it/");
}

TEST(WebDefinition, ThatIsNoneIsRefused) {
  EXPECT_EQ(reasonAgainst("<Vorlane>"), "the mosaic definition is not well-formed XML");
  EXPECT_EQ(reasonAgainst("<Vorlane/>"), "the file holds no mosaic definition");
  EXPECT_EQ(reasonAgainst("<Other><MosaicDefinition/></Other>"), "the file holds no mosaic definition");
  EXPECT_EQ(reasonAgainst(definitionText("")), "the mosaic definition names no sources");
  const std::string entity = R"(<!DOCTYPE a [<!ENTITY x SYSTEM "file:///etc/hostname">]>)";
  EXPECT_NE(reasonAgainst(entity + definitionText(sourceText("&x;"))), "(none)");
}

/// Services of an nginx that lists a folder, beside the same folder of this machine.
class DefinitionsOfServers : public vlclientui::test::ServiceFixture {
 protected:
  DefinitionsOfServers() {
    addNetworkServers(*server_);
    RemoteFiles::shared().forget();
  }

  [[nodiscard]] std::vector<double> exported(const std::string& reference) {
    const auto made = service(reference);
    GetImage request;
    request.extent = made->facts().envelope;
    request.columns = 120;
    request.rows = 90;
    request.fileName = out("x" + std::to_string(++exports_) + ".tif");
    made->ExportProperties(request.document());
    EXPECT_TRUE(made->ExportImage()) << made->status();
    return vlclientui::test::valuesOf(request.fileName);
  }

  int exports_ = 0;
};

TEST_F(DefinitionsOfServers, AreMosaicsWithThePixelsOfTheSameFileOfThisMachine) {
  for (const std::string name : {"Imagery/Overlap_Study", "Imagery/Valley/Ortho_Mosaic"}) {
    const std::string leaf = name.substr(name.rfind('/') + 1);
    const auto local = exported(samplesFolder() + "/" + name + ".VLDef");
    ASSERT_FALSE(local.empty());
    const std::string address = StaticServer::samples().address();
    EXPECT_EQ(exported("ImageService://" + address + "/" + name), local) << "in a folder";
    EXPECT_EQ(exported("ImageService://" + address + "/" + name + ".VLDef/" + leaf), local)
        << "by its address";
  }
}

TEST_F(DefinitionsOfServers, AreToldAsThoseOfThisMachine) {
  const auto listed = server_->content(StaticServer::samples().address() + "/Imagery/Overlap_Study.VLDef");
  ASSERT_TRUE(listed);
  ASSERT_EQ(listed->services.size(), 1U);
  const ServiceRecord& there = listed->services.front();
  EXPECT_EQ(there.name, "Overlap_Study");
  const RasterFacts here = server_->factsOf(samplesFolder() + "/Imagery/Overlap_Study.VLDef");
  EXPECT_EQ(there.facts.title, here.title);
  EXPECT_EQ(there.facts.region, here.region);
  EXPECT_EQ(there.facts.pixelSource, here.pixelSource);
  EXPECT_EQ(there.facts.envelope, here.envelope);
  EXPECT_EQ(there.facts.columns, here.columns);
  const auto made = service("ImageService://" + StaticServer::samples().address() + "/Imagery/Overlap_Study");
  Words names;
  for (const ImageSource& source : made->record().sources) names.push_back(source.shownName());
  EXPECT_EQ(names, (Words{"sheet_red", "sheet_green", "sheet_blue"}));
}

TEST_F(DefinitionsOfServers, HideTheHomeOfTheirSourcesInAList) {
  makeRaster("web/m.sources/a.tif");
  makeRaster("web/n.sources/b.tif");
  makeRaster("web/other/c.tif");
  writeText("web/m.VLDef", definitionText(sourceText("m.sources/a.tif")));
  writeText("web/broken.VLDef", "<Vorlane>");
  const FaultProxy web{folder() / "web"};
  const auto listed = server_->content(web.address("/"));
  ASSERT_TRUE(listed);
  Words names;
  for (const ServiceRecord& record : listed->services) names.push_back(record.name);
  EXPECT_EQ(names, (Words{"m", "n.sources/b", "other/c"}));
  ASSERT_EQ(listed->problems.size(), 1U);
  EXPECT_EQ(listed->problems[0].path, web.address("/broken.VLDef"));
  EXPECT_EQ(listed->services[0].facts.title, "m");
}

TEST_F(DefinitionsOfServers, ThatAreDamagedMakeTheirServerSilent) {
  writeText("web/a.VLDef", definitionText(sourceText("http://other/a.tif")));
  const FaultProxy web{folder() / "web"};
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told += end.reason; });
  EXPECT_FALSE(server_->content(web.address("/a.VLDef")));
  EXPECT_NE(told.find("the source lies on another server"), std::string::npos) << told;
}

}  // namespace
}  // namespace vlclientui::client::ranges
