#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "client/catalogue/FolderServers.h"
#include "client/catalogue/MosaicDefinition.h"
#include "client/raster/RasterCache.h"
#include "client/raster/Subdatasets.h"
#include "client/reach/StrangerFixture.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

using StrangersMosaic = test::StrangerFixture;
using StrangersFile = test::StrangerFixture;
using StrangersDefinition = test::StrangerFixture;

constexpr const char* outsideWords =
    "lies outside of the folders that were opened; VLCLIENTUI_ALLOW_OUTSIDE may name its folder";

bool tells(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::string withMark(std::string text, const std::string& mark, const std::string& value) {
  for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
    text.replace(at, mark.size(), value);
  }
  return text;
}

TEST_F(StrangersMosaic, ReadsWhatLiesBesideItAndInNeighboringFolders) {
  EXPECT_EQ(readSent("a.vrt", mosaicOf("own.tif", "1")), "");
  EXPECT_EQ(readSent("b.vrt", mosaicOf("../neighbor/tile.tif", "1")), "");
  EXPECT_EQ(readSent("c.vrt", mosaicOf((folder() / "sent/neighbor/tile.tif").string())), "");
  EXPECT_EQ(readSent("d.vrt", mosaicOf("b.vrt", "1")), "") << "over another one";
}

TEST_F(StrangersMosaic, LeadsToNoFileOutsideOfWhereAPersonPointed) {
  const std::string archive = (folder() / "private/a.zip").string();
  writeText("private/a.zip", "PK");
  fs::create_symlink(secret(), sent("link.tif"));
  fs::create_directory_symlink(folder() / "private", sent("folderlink"));
  writeText("sent/folder/inner.vrt", mosaicOf("../../private/secret.tif", "1"));
  for (const auto& [name, relative] : std::initializer_list<std::pair<std::string, const char*>>{
           {secret(), "0"},
           {"../../private/secret.tif", "1"},
           {"link.tif", "1"},
           {"folderlink/secret.tif", "1"},
           {sent("folderlink/../private/secret.tif"), "0"},
           {"vrt://" + secret() + "?bands=1", "0"},
           {"GTIFF_DIR:1:" + secret(), "0"},
           {"DERIVED_SUBDATASET:LOGAMPLITUDE:" + secret(), "0"},
           {"NETCDF:&quot;" + secret() + "&quot;:Band1", "0"},
           {"/vsizip/" + archive + "/a.tif", "0"},
           {"/vsizip/{" + archive + "}/a.tif", "0"},
           {"/vsitar/" + archive + "/a.tif", "0"},
           {"/vsigzip/" + secret(), "0"},
           {"/vsisubfile/0_100," + secret(), "0"},
           {"NETCDF:&quot;/vsizip/{" + archive + "}/a.nc&quot;:Band1", "0"},
           {"inner.vrt", "1"}}) {
    const std::string failure = readSent("mosaic.vrt", mosaicOf(name, relative));
    EXPECT_TRUE(tells(failure, outsideWords)) << name << ": " << failure;
  }
}

TEST_F(StrangersMosaic, LeadsToNoFileByAnyOtherKindOfBand) {
  const std::string head = R"(<VRTDataset rasterXSize="8" rasterYSize="6" )";
  const std::string raw =
      head +
      R"(><VRTRasterBand dataType="Byte" band="1" subClass="VRTRawRasterBand"><SourceFilename relativetoVRT="0">)" +
      secret() + "</SourceFilename><ImageOffset>0</ImageOffset></VRTRasterBand></VRTDataset>";
  const std::string warped =
      head + R"(subClass="VRTWarpedDataset"><GDALWarpOptions><SourceDataset relativeToVRT="0">)" + secret() +
      R"(</SourceDataset></GDALWarpOptions><VRTRasterBand dataType="Byte" band="1" subClass="VRTWarpedRasterBand"/></VRTDataset>)";
  const std::string sharpened =
      head + R"(subClass="VRTPansharpenedDataset"><PansharpeningOptions><PanchroBand><SourceFilename>)" +
      secret() + "</SourceFilename></PanchroBand></PansharpeningOptions></VRTDataset>";
  const std::string placed = head + R"(><Metadata domain="GEOLOCATION"><MDI key="X_DATASET">)" + secret() +
                             "</MDI></Metadata>" + mosaicOf("own.tif", "1").substr(head.size());
  const std::string asAttribute =
      R"(<VRTDataset rasterXSize="8" rasterYSize="6"><VRTRasterBand dataType="Byte" band="1"><SimpleSource SourceFilename=")" +
      secret() + R"("/></VRTRasterBand></VRTDataset>)";
  for (const std::string& text : {raw, warped, sharpened, placed, asAttribute}) {
    const std::string failure = readSent("mosaic.vrt", text);
    EXPECT_TRUE(tells(failure, outsideWords)) << text << ": " << failure;
  }
}

TEST_F(StrangersMosaic, AsksNoServer) {
  test::UnaskedServer server;
  for (const char* form :
       {"ADDRESS", "/vsicurl/ADDRESS", "/vsicurl?url=ADDRESS", "/vsicurl_streaming/ADDRESS",
        "/vsizip//vsicurl/ADDRESS/a.tif", "/vsizip/vsicurl/ADDRESS/a.tif", "/vsizip/{/vsicurl/ADDRESS}/a.tif",
        "/vsigzip//vsicurl/ADDRESS", "/vsisubfile/0_9,/vsicurl/ADDRESS", "/vsis3/bucket/a.tif", "/vsistdin/",
        "/vsicrypt/a.tif", "vrt://ADDRESS", "vrt:///vsicurl/ADDRESS?bands=1", "WMS:ADDRESS", "NETCDF:ADDRESS",
        "GTIFF_DIR:1:/vsicurl/ADDRESS", "/vsivlrange/http/127.0.0.1/a.tif"}) {
    const std::string name = withMark(form, "ADDRESS", server.address());
    const std::string failure = readSent("mosaic.vrt", mosaicOf(name));
    EXPECT_TRUE(tells(failure, "is an address, which files do not open by themselves") ||
                tells(failure, "tells no file that is there"))
        << name << ": " << failure;
  }
  EXPECT_FALSE(server.wasAsked());
}

TEST_F(StrangersMosaic, HoldsNoDefinitionOfAServerInPlaceOfAFile) {
  test::UnaskedServer server;
  const std::string service = "&lt;GDAL_WMS&gt;&lt;Service name=&quot;TMS&quot;&gt;&lt;ServerUrl&gt;" +
                              server.address() + "&lt;/ServerUrl&gt;&lt;/Service&gt;&lt;/GDAL_WMS&gt;";
  EXPECT_TRUE(tells(readSent("a.vrt", mosaicOf(service)), "it holds an address"));
  const std::string inner =
      "&lt;VRTDataset&gt;&lt;VRTRasterBand&gt;&lt;SimpleSource&gt;&lt;SourceFilename&gt;" + secret() +
      "&lt;/SourceFilename&gt;&lt;/SimpleSource&gt;&lt;/VRTRasterBand&gt;&lt;/VRTDataset&gt;";
  EXPECT_TRUE(tells(readSent("b.vrt", mosaicOf(inner)), outsideWords));
  EXPECT_FALSE(server.wasAsked());
}

TEST_F(StrangersMosaic, RunsNoCode) {
  const std::string text =
      R"(<VRTDataset rasterXSize="8" rasterYSize="6"><VRTRasterBand dataType="Byte" band="1" )"
      R"(subClass="VRTDerivedRasterBand"><PixelFunctionType>f</PixelFunctionType>)"
      R"(<PixelFunctionLanguage>Python</PixelFunctionLanguage><PixelFunctionCode>open(")" +
      sent("made") + R"(","w")</PixelFunctionCode></VRTRasterBand></VRTDataset>)";
  EXPECT_TRUE(tells(readSent("code.vrt", text), "it runs code of its own, which is not done"));
  EXPECT_FALSE(fs::exists(sent("made")));
}

TEST_F(StrangersMosaic, WaitsForNoPipeAndReadsNoDevice) {
  ASSERT_EQ(mkfifo(sent("pipe").c_str(), 0600), 0);
  EXPECT_TRUE(tells(readSent("a.vrt", mosaicOf("pipe", "1")), "is neither a file nor a folder"));
  EXPECT_TRUE(tells(readSent("b.vrt", mosaicOf("/dev/zero")), "is neither a file nor a folder"));
}

TEST_F(StrangersMosaic, ThatHoldsItselfIsToldSo) {
  EXPECT_TRUE(tells(readSent("a.vrt", mosaicOf("a.vrt", "1")), "it holds itself, or virtual rasters"));
  writeText("sent/folder/b.vrt", mosaicOf("c.vrt", "1"));
  EXPECT_TRUE(tells(readSent("c.vrt", mosaicOf("b.vrt", "1")), "it holds itself, or virtual rasters"));
}

TEST_F(StrangersMosaic, ThatMultipliesIsToldBeforeItIsOpened) {
  std::string before = "own.tif";
  for (int i = 0; i < 8; ++i) {
    const std::string one = mosaicOf(before, "1");
    const std::size_t start = one.find("<SimpleSource>");
    const std::size_t end = one.find("</VRTRasterBand>");
    std::string many;
    for (int j = 0; j < 10; ++j) many += one.substr(start, end - start);
    // Also where it is not named as what it is.
    before = "m" + std::to_string(i) + (i % 2 == 0 ? ".vrt" : ".tif");
    writeText("sent/folder/" + before, one.substr(0, start) + many + one.substr(end));
  }
  EXPECT_TRUE(tells(readWhole(sent(before)), "it leads to more than 10000000 sources"));
  EXPECT_EQ(readWhole(sent("m1.tif")), "");
}

TEST_F(StrangersMosaic, OfAnyDepthAndLengthOfItsTextEndsInWords) {
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<a>";
  EXPECT_NE(readSent("a.vrt", "<VRTDataset rasterXSize=\"8\" rasterYSize=\"6\">" + deep), "");
  EXPECT_NE(readSent("b.vrt", "<VRTDataset>" + std::string(5'000'000, 'x')), "");
  const std::string entities =
      "<!DOCTYPE a [<!ENTITY a SYSTEM \"" + secret() + "\">]><VRTDataset><SRS>&a;</SRS></VRTDataset>";
  EXPECT_NE(readSent("c.vrt", entities), "");
}

TEST_F(StrangersMosaic, OpensWhatAPersonAllowed) {
  const std::string mosaic = writeText("sent/folder/a.vrt", mosaicOf(secret())).string();
  {
    const test::AllowedByEnvironment allowed("VLCLIENTUI_ALLOW_OUTSIDE",
                                             "/nowhere:" + (folder() / "private").string());
    EXPECT_EQ(readWhole(mosaic), "");
  }
  {
    const test::AllowedByEnvironment allowed("VLCLIENTUI_ALLOW_OUTSIDE", "*");
    EXPECT_EQ(readWhole(mosaic), "");
  }
  EXPECT_NE(readWhole(mosaic), "");
}

TEST_F(StrangersMosaic, AsksServersWhereAPersonAllowedAddresses) {
  test::UnaskedServer server;
  server.sendAway();
  const test::AllowedByEnvironment allowed("VLCLIENTUI_ALLOW_OUTSIDE", "addresses");
  const std::string failure = readSent("a.vrt", mosaicOf("/vsicurl/" + server.address()));
  EXPECT_FALSE(failure.empty());
  EXPECT_FALSE(tells(failure, "is an address")) << failure;
}

TEST_F(StrangersMosaic, OpensForAHostThatSharesTheRasterLibraryAsBefore) {
  const std::string mosaic = writeText("sent/folder/a.vrt", mosaicOf(secret())).string();
  EXPECT_NE(readWhole(mosaic), "");
  const DatasetPtr ofHost(
      GDALDataset::FromHandle(GDALOpenEx(mosaic.c_str(), GDAL_OF_RASTER, nullptr, nullptr, nullptr)));
  EXPECT_TRUE(ofHost);
}

TEST_F(StrangersFile, NamesNoOverviewsElsewhere) {
  test::RasterRecipe small;
  small.width = 4;
  small.height = 3;
  makeRaster("sent/folder/small.tif", small);
  const std::string secretOne = makeRaster("private/small.tif", small).string();
  test::UnaskedServer server;
  const std::string text =
      R"(<PAMDataset><Metadata domain="OVERVIEWS"><MDI key="OVERVIEW_FILE">NAME</MDI></Metadata></PAMDataset>)";
  const auto overviewsWith = [&](const std::string& name) {
    writeText("sent/folder/own.tif.aux.xml", withMark(text, "NAME", name));
    const GdalScope scope;
    return openRaster(sent("own.tif"))->GetRasterBand(1)->GetOverviewCount();
  };
  EXPECT_EQ(overviewsWith(sent("small.tif")), 1);
  EXPECT_EQ(overviewsWith(secretOne), 0);
  EXPECT_EQ(overviewsWith("/vsicurl/" + server.address()), 0);
  EXPECT_FALSE(server.wasAsked());
}

TEST_F(StrangersFile, OfAFormatThatAsksServersIsOff) {
  test::UnaskedServer server;
  const std::string text =
      "<GDAL_WMS><Service name=\"TMS\"><ServerUrl>" + server.address() +
      "</ServerUrl></Service><DataWindow><SizeX>9</SizeX><SizeY>9</SizeY></DataWindow></GDAL_WMS>";
  EXPECT_TRUE(tells(
      readSent("map.tif", text),
      "the format WMS is off, since its driver asks servers by itself; VLCLIENTUI_DRIVERS_ON may name it"));
  EXPECT_FALSE(server.wasAsked());
}

TEST_F(StrangersFile, OfADriverThatAPersonTurnedOffIsNotOpened) {
  EXPECT_EQ(readWhole(sent("own.tif")), "");
  const test::AllowedByEnvironment off("VLCLIENTUI_DRIVERS_OFF", "PNG,gtiff");
  EXPECT_TRUE(
      tells(readWhole(sent("own.tif")), "the format GTiff is off; VLCLIENTUI_DRIVERS_ON may name it"));
}

TEST_F(StrangersFile, TellsNoOtherFilesAsItsParts) {
  const GdalScope scope;
  const std::string text =
      R"(<VRTDataset rasterXSize="8" rasterYSize="6"><Metadata domain="SUBDATASETS">)"
      R"(<MDI key="SUBDATASET_1_NAME">NAME</MDI><MDI key="SUBDATASET_1_DESC">a</MDI></Metadata><VRTRasterBand dataType="Byte" band="1"/></VRTDataset>)";
  for (const std::string& name :
       {secret(), "&lt;VRTDataset&gt;" + sent("parts.vrt") + "&lt;/VRTDataset&gt;"}) {
    const std::string file = writeText("sent/folder/parts.vrt", withMark(text, "NAME", name)).string();
    const DatasetPtr raster = openRaster(file);
    ASSERT_TRUE(raster);
    EXPECT_TRUE(subdatasetsOf(*raster, file).rasters.empty()) << name;
  }
  EXPECT_TRUE(openRaster("GTIFF_DIR:1:" + sent("own.tif")));
  EXPECT_FALSE(openRaster("GTIFF_DIR:1:" + secret()));
}

TEST_F(StrangersDefinition, LeavesOutSourcesElsewhereAndSaysWhy) {
  const auto text = [](const std::string& rows) {
    return "<Vorlane><MosaicDefinition><Sources>" + rows + "</Sources></MosaicDefinition></Vorlane>";
  };
  const std::string outside = "<Source><File>" + secret() + "</File></Source>";
  const std::string inside =
      "<Source><File>own.tif</File></Source><Source><File>../neighbor/tile.tif</File></Source>";
  const auto mixed = readMosaicDefinition(writeText("sent/folder/m.VLDef", text(outside + inside)), xml());
  const auto& definition = std::get<MosaicDefinition>(mixed);
  EXPECT_EQ(definition.sources.size(), 2U);
  ASSERT_EQ(definition.problems.size(), 1U);
  EXPECT_EQ(definition.problems[0].path, secret());
  EXPECT_TRUE(tells(definition.problems[0].reason, outsideWords));
  const auto none = readMosaicDefinition(writeText("sent/folder/n.VLDef", text(outside)), xml());
  EXPECT_TRUE(tells(std::get<MosaicReadFailure>(none), outsideWords));
}

class FolderOfStrangers : public test::StrangerFixture {
 protected:
  [[nodiscard]] CatalogueContent list(const std::string& name) {
    FolderServers servers(
        folder() / "sent", [](const std::string& path) { return path; }, xml(), cache_);
    return servers.list((folder() / name).string()).value_or(CatalogueContent());
  }

  RasterCache cache_;
};

TEST_F(FolderOfStrangers, TellsAmongWhatIsLeftOutWhyAMosaicIsNotListed) {
  const std::string mosaic = writeText("sent/folder/a.vrt", mosaicOf(secret())).string();
  const CatalogueContent content = list("sent");
  ASSERT_EQ(content.problems.size(), 1U);
  EXPECT_EQ(content.problems[0].path, mosaic);
  EXPECT_TRUE(tells(content.problems[0].reason, outsideWords)) << content.problems[0].reason;
}

TEST_F(FolderOfStrangers, ReadsTheMosaicOnceAFolderAboveBothIsOpened) {
  writeText("sent/folder/a.vrt", mosaicOf("../../private/secret.tif", "1"));
  EXPECT_EQ(list("sent").problems.size(), 1U);
  EXPECT_TRUE(list("").problems.empty());
}

}  // namespace
}  // namespace vlclientui::client
