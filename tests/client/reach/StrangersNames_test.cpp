#include <filesystem>
#include <string>
#include <variant>

#include <gtest/gtest.h>

#include "client/raster/RasterReader.h"
#include "client/raster/Subdatasets.h"
#include "client/reach/StrangerFixture.h"

namespace vlclientui::client {
namespace {

using StrangersNames = test::StrangerFixture;

bool tellsOf(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string rawMosaicOf(const std::string& source) {
  return R"(<VRTDataset rasterXSize="8" rasterYSize="6"><VRTRasterBand dataType="Byte" band="1" )"
         R"(subClass="VRTRawRasterBand">)" +
         source +
         "<ImageOffset>0</ImageOffset><PixelOffset>1</PixelOffset><LineOffset>8</LineOffset>"
         "</VRTRasterBand></VRTDataset>";
}

std::string warpedMosaicFrom(const std::string& system) {
  return R"(<VRTDataset rasterXSize="8" rasterYSize="6" subClass="VRTWarpedDataset">)"
         R"(<GeoTransform>0,1,0,0,0,-1</GeoTransform><VRTRasterBand dataType="Byte" band="1" )"
         R"(subClass="VRTWarpedRasterBand"/><BlockXSize>8</BlockXSize><BlockYSize>6</BlockYSize><GDALWarpOptions>)"
         R"(<SourceDataset relativeToVRT="1">own.tif</SourceDataset><Transformer><GenImgProjTransformer>)"
         R"(<SrcGeoTransform>0,1,0,0,0,-1</SrcGeoTransform><DstGeoTransform>0,1,0,0,0,-1</DstGeoTransform>)"
         R"(<ReprojectTransformer><ReprojectionTransformer><SourceSRS>)" +
         system +
         "</SourceSRS><TargetSRS>EPSG:4326</TargetSRS></ReprojectionTransformer></ReprojectTransformer>"
         R"(</GenImgProjTransformer></Transformer><BandList><BandMapping src="1" dst="1"/></BandList>)"
         "</GDALWarpOptions></VRTDataset>";
}

TEST_F(StrangersNames, AreLookedAtBothWaysUnlessTheirMarkIsPlain) {
  for (const char* start :
       {"<SourceFilename>", R"(<SourceFilename relativeToVRT="true">)",
        R"(<SourceFilename relativeToVRT="2">)", R"(<SourceFilename relativeToVRT="1">)"}) {
    const std::string source = std::string(start) + "../../private/secret.tif</SourceFilename>";
    const std::string failure = readSent("raw.vrt", rawMosaicOf(source));
    EXPECT_TRUE(tellsOf(failure, "lies outside of the folders that were opened")) << start << ": " << failure;
  }
  EXPECT_EQ(readSent("own.vrt", rawMosaicOf("<SourceFilename>own.tif</SourceFilename>")), "");
}

TEST_F(StrangersNames, OfCoordinateSystemsAskNoServerAndReadNoFile) {
  test::UnaskedServer server;
  EXPECT_TRUE(tellsOf(readSent("a.vrt", warpedMosaicFrom(server.address())), "holds an address"));
  for (const std::string& system : {secret(), std::string("+proj=longlat +nadgrids=x.gsb"),
                                    std::string("+init=x:1"), std::string("own.tif")}) {
    EXPECT_TRUE(tellsOf(readSent("b.vrt", warpedMosaicFrom(system)), "is no plain definition")) << system;
  }
  for (const char* system : {"EPSG:32633", "+proj=utm +zone=33 +datum=WGS84",
                             "+proj=merc +a=6378137 +b=6378137 +nadgrids=@null +no_defs"}) {
    EXPECT_FALSE(tellsOf(readSent("c.vrt", warpedMosaicFrom(system)), "is no plain definition")) << system;
  }
  EXPECT_FALSE(server.wasAsked());
}

TEST_F(StrangersNames, MayBeAddressesInWordsForPeopleAlone) {
  const std::string plain = mosaicOf("own.tif", "1");
  const std::size_t at = plain.find("<VRTRasterBand");
  const auto with = [&](const std::string& text) { return plain.substr(0, at) + text + plain.substr(at); };
  EXPECT_EQ(readSent("a.vrt", with("<Metadata><MDI key=\"URL\">http://127.0.0.1:1/x</MDI></Metadata>")), "");
  EXPECT_TRUE(tellsOf(readSent("b.vrt", with("<Other>http://127.0.0.1:1/x</Other>")), "holds an address"));
  EXPECT_TRUE(tellsOf(readSent("c.vrt", with("<Other x=\"http://127.0.0.1:1/x\"/>")), "holds an address"));
}

TEST_F(StrangersNames, OfTextsInTextsAreBounded) {
  std::string text = mosaicOf(sent("own.tif"));
  for (int i = 0; i < 6; ++i) {
    std::string inner;
    for (const char c : text)
      inner += c == '<' ? "&lt;" : c == '"' ? "&quot;" : c == '&' ? "&amp;" : std::string(1, c);
    text = mosaicOf(inner);
  }
  EXPECT_TRUE(tellsOf(readSent("a.vrt", text), "texts stand in place of files too deep"));
}

TEST_F(StrangersNames, OfDocumentTypesAskNoServer) {
  test::UnaskedServer server;
  const std::string text = "<?xml version=\"1.0\"?><!DOCTYPE x SYSTEM \"" + server.address() +
                           "\"><!-- <VRTDataset NAS-Operationen.xsd opengis.net/gml --><a/>";
  EXPECT_TRUE(Allowance{}.isOff("NAS") && Allowance{}.isOff("Interlis 2") && Allowance{}.isOff("OGR_OGDI"));
  EXPECT_TRUE(Allowance{}.isOff("GDALG") && Allowance{}.isOff("Interlis 1"));
  server.sendAway();
  const std::string file = writeText("sent/folder/poly.vrt", text).string();
  EXPECT_FALSE(std::holds_alternative<RasterFacts>(readRasterFacts(file)));
}

TEST_F(StrangersNames, OfPartsAreNeitherOwnFilesNorTexts) {
  const GdalScope scope;
  const std::string file = sent("parts.vrt");
  for (const std::string& part :
       {"/vsivlrange/http/127.0.0.1" + file, " &lt;VRTDataset&gt;" + file + "&lt;/VRTDataset&gt;"}) {
    writeText("sent/folder/parts.vrt",
              R"(<VRTDataset rasterXSize="8" rasterYSize="6"><Metadata domain="SUBDATASETS">)"
              R"(<MDI key="SUBDATASET_1_NAME">)" +
                  part +
                  R"(</MDI><MDI key="SUBDATASET_1_DESC">a</MDI></Metadata>)"
                  R"(<VRTRasterBand dataType="Byte" band="1"/></VRTDataset>)");
    const DatasetPtr raster = openRaster(file);
    ASSERT_TRUE(raster);
    EXPECT_TRUE(subdatasetsOf(*raster, file).rasters.empty()) << part;
  }
}

}  // namespace
}  // namespace vlclientui::client
