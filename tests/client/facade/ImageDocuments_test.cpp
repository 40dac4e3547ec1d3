#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/ColorMosaicFixture.h"
#include "client/ExportFixture.h"
#include "client/facade/CatalogueClientLibrary.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

const std::string detailed = "//Vorlane/Client/ImageMetadata/Detailed/";
const std::string statusPath = "//Vorlane/Client/ImageMetadata/Basic/Status";
const std::string propertiesPath = "//Vorlane/ImageServiceProperties/";

class ImageDocuments : public test::ColorMosaicFixture {
 protected:
  [[nodiscard]] std::vector<std::string> textsIn(const std::string& text, const std::string& path) const {
    const auto document = xml().createDocument();
    if (!document->loadXml(text)) return {"(no document)"};
    std::vector<std::string> texts;
    for (const auto& node : document->selectNodes(path)) texts.push_back(node->text());
    return texts;
  }

  [[nodiscard]] std::string textIn(const std::string& text, const std::string& path) const {
    const auto texts = textsIn(text, path);
    return texts.empty() ? "(none)" : texts.front();
  }

  [[nodiscard]] std::string detail(CatalogueImageService& made, const std::string& path) const {
    return textIn(made.GetImageMetadata(""), detailed + path);
  }

  // "1 True, 2 False"
  [[nodiscard]] std::string visibility(CatalogueImageService& made) const {
    const std::string document = made.GetImageMetadata("Full");
    const auto ids = textsIn(document, detailed + "Rasters/Raster/Info/RasterId");
    const auto visible = textsIn(document, detailed + "Rasters/Raster/Info/Visible");
    std::string out;
    for (std::size_t i = 0; i < ids.size(); ++i) out += (i > 0 ? ", " : "") + ids[i] + " " + visible.at(i);
    return out;
  }

  [[nodiscard]] std::string peopleText(CatalogueImageService& made) const {
    const auto document = xml().createDocument();
    EXPECT_TRUE(document->loadXml(made.GetImageMetadata("Basic")));
    CatalogueClientLibrary library(xml(), {});
    return library.createClientStatus()->GetText(document->selectSingleNode(statusPath)->xml());
  }
};

TEST_F(ImageDocuments, TellWhichRastersShow) {
  const auto made = mosaic();
  EXPECT_EQ(visibility(*made), "1 True, 2 True, 3 True");
  made->setServiceProperties(properties(
      "<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>Year</TileOrderField><TileOrderBase>2021"
      "</TileOrderBase>"));
  EXPECT_EQ(visibility(*made), "1 True, 2 False, 3 True");
  made->setServiceProperties(
      properties("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>2</LockImageID>"));
  EXPECT_EQ(visibility(*made), "1 False, 2 True, 3 False");
}

TEST_F(ImageDocuments, TellOnlyOfRastersInTheWindow) {
  const auto made = mosaic();
  (void)made->drawImage({500000, 5149400, 500200, 5150000}, 2, 6);
  EXPECT_EQ(visibility(*made), "1 True");
  (void)made->drawImage({500650, 5149400, 500750, 5150000}, 10, 60);
  EXPECT_EQ(visibility(*made), "1 False, 2 False, 3 True");
}

TEST_F(ImageDocuments, TellOfTheLastImageUntilTheNextIsDrawn) {
  const auto made = mosaic();
  (void)made->drawImage(whole, 14, 6);
  made->setServiceProperties(
      properties("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>2</LockImageID>"));
  EXPECT_EQ(visibility(*made), "1 True, 2 True, 3 True");
  (void)made->drawImage(whole, 14, 6);
  EXPECT_EQ(visibility(*made), "1 False, 2 True, 3 False");
}

TEST_F(ImageDocuments, TellThatARasterShowsThroughTheHolesOfAnother) {
  auto holed = recipeOf(2);
  const auto finish = holed.finish;
  holed.finish = [finish](GDALDataset& dataset) {
    finish(dataset);
    std::vector<std::uint8_t> column(6, 0);
    for (int band = 1; band <= 3; ++band) {
      dataset.GetRasterBand(band)->SetNoDataValue(0);
      EXPECT_EQ(dataset.GetRasterBand(band)->RasterIO(GF_Write, 0, 0, 1, 6, column.data(), 1, 6, GDT_Byte, 0,
                                                      0, nullptr),
                CE_None);
    }
  };
  makeRaster("m.sources/c3.tif", holed);
  const auto made = mosaic();
  EXPECT_EQ(drawn(*made), "RRRGGGGBBBBBBB");
  (void)made->drawImage({500600, 5149400, 500700, 5150000}, 1, 6);
  EXPECT_EQ(visibility(*made), "1 False, 2 True, 3 False");
  (void)made->drawImage({500700, 5149400, 500800, 5150000}, 1, 6);
  EXPECT_EQ(visibility(*made), "1 False, 2 False, 3 True");
}

TEST_F(ImageDocuments, TellWhatWasDoneToMakeTheImage) {
  const auto made = mosaic(
      "<MosaicMethod>Closest to Viewpoint</MosaicMethod><ViewPointX>500400</ViewPointX><ViewPointY>5149700"
      "</ViewPointY>");
  EXPECT_EQ(detail(*made, "ProcessMetadataAvailable"), "True");
  EXPECT_EQ(detail(*made, "ProcessMetadata/MosaicMethod"), "Closest to Viewpoint");
  EXPECT_EQ(detail(*made, "ProcessMetadata/ViewPointX"), "500400");
  EXPECT_EQ(detail(*made, "ProcessMetadata/SourcesInWindow"), "3");
  EXPECT_EQ(detail(*made, "ProcessMetadata/Grid/PixelWidth"), "100");
  EXPECT_EQ(textsIn(made->GetImageMetadata(""), detailed + "ProcessMetadata/SourcesFromTop/Source/RasterId"),
            (std::vector<std::string>{"1", "2", "3"}));
  EXPECT_EQ(detail(*made, "Rasters/Raster[0]/ProcessMetadata/PositionFromTop"), "1");
  EXPECT_EQ(detail(*made, "Rasters/Raster[0]/ProcessMetadata/Resampling"), "Nearest");
  (void)made->drawImage(whole, 7, 3);
  EXPECT_EQ(detail(*made, "Rasters/Raster[0]/ProcessMetadata/Resampling"), "Average");
  EXPECT_EQ(detail(*made, "Rasters/Raster[0]/ProcessMetadata/PixelsPerSourcePixel"), "0.5");
}

TEST_F(ImageDocuments, TellFromWhichSystemARasterWasBrought) {
  const auto made = mosaic("<Srs><Prj>EPSG:4326</Prj></Srs>");
  EXPECT_EQ(detail(*made, "Rasters/Raster[1]/ProcessMetadata/ReprojectedFrom"),
            "WGS 84 / UTM zone 32N (EPSG:32632)");
  EXPECT_EQ(detail(*made, "Rasters/Raster[1]/ProcessMetadata/ReprojectedTo"), "WGS 84 (EPSG:4326)");
  EXPECT_EQ(detail(*made, "ProcessMetadata/SourcesReprojected"), "3");
}

TEST_F(ImageDocuments, TellWhatAFileTellsOfItself) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& dataset) {
    dataset.SetMetadataItem("TITLE", "A & B");
    dataset.SetMetadataItem("odd key#1", "kept");
    dataset.SetMetadataItem("EXIF_Model", "Camera C");
    dataset.SetMetadataItem("LINE_OFF", "12", "RPC");
    dataset.SetMetadataItem("SAMP_OFF", "13", "OWN");
    dataset.GetRasterBand(1)->SetDescription("Height");
    dataset.GetRasterBand(1)->SetMetadataItem("STATISTICS_MINIMUM", "3");
    std::string packet =
        "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF "
        "xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
        "<rdf:Description xmlns:dc='http://purl.org/dc/elements/1.1/' xmlns:p='urn:p' p:Tool='Editor'>"
        "<dc:subject><rdf:Bag><rdf:li>hill</rdf:li><rdf:li>lake</rdf:li></rdf:Bag></dc:subject>"
        "</rdf:Description></rdf:RDF></x:xmpmeta>";
    std::vector<char*> texts = {packet.data(), nullptr};
    dataset.SetMetadata(texts.data(), "xml:XMP");
  };
  makeRaster("a.tif", recipe);
  const auto made = service("ImageService://localhost/a");
  for (const std::string& document : {made->GetMetaData(""), made->GetImageMetadata("Full")}) {
    EXPECT_EQ(textIn(document, "//Metadata/File/Format"), "GeoTIFF");
    EXPECT_EQ(textIn(document, "//Metadata/File/FileName"), "a.tif");
    EXPECT_EQ(textIn(document, "//Metadata/Tags/TITLE"), "A & B");
    EXPECT_EQ(textIn(document, "//Metadata/Tags/odd_key_1"), "kept");
    EXPECT_EQ(textIn(document, "//Metadata/Exif/Model"), "Camera C");
    EXPECT_EQ(textIn(document, "//Metadata/Xmp/p_Tool"), "Editor");
    EXPECT_EQ(textIn(document, "//Metadata/Xmp/dc_subject"), "hill, lake");
    EXPECT_EQ(textIn(document, "//Metadata/Domains/OWN_SAMP_OFF"), "13");
    EXPECT_NE(textIn(document, "//Metadata/Bands/Band_1").find("Height"), std::string::npos);
    EXPECT_NE(textIn(document, "//Metadata/Bands/Band_1").find("minimum 3"), std::string::npos);
  }
}

TEST_F(ImageDocuments, TellOfAMosaicsDefinition) {
  const std::string document = mosaic()->GetMetaData("");
  EXPECT_EQ(textIn(document, "/Metadata/Mosaic/Definition"), "m.VLDef");
  EXPECT_EQ(textIn(document, "/Metadata/Mosaic/SourceRasters"), "3");
  EXPECT_EQ(textIn(document, "/Metadata/Mosaic/Attributes"), "Year");
  const std::string info = mosaic()->ServiceInfo();
  EXPECT_EQ(textIn(info, "//Vorlane/ImageServiceInfo/ServiceType"), "Mosaic");
  EXPECT_EQ(textIn(info, "//Vorlane/ImageServiceInfo/NRasters"), "3");
  EXPECT_NE(textIn(info, "//Vorlane/ImageServiceInfo/Srs/Prj"), "(none)");
}

TEST_F(ImageDocuments, NoticeAChangedFile) {
  const auto made = mosaic();
  EXPECT_EQ(detail(*made, "Rasters/Raster[0]/Metadata/Tags/NOTE"), "(none)");
  auto recipe = recipeOf(0);
  const auto finish = recipe.finish;
  recipe.finish = [finish](GDALDataset& dataset) {
    finish(dataset);
    dataset.SetMetadataItem("NOTE", "new");
  };
  makeRaster("m.sources/c1.tif", recipe);
  EXPECT_EQ(detail(*made, "Rasters/Raster[0]/Metadata/Tags/NOTE"), "new");
}

TEST_F(ImageDocuments, AreTheSameHoweverOftenTheyAreAskedFor) {
  const auto made = mosaic();
  for (const char* level : {"", "Basic", "Full"}) {
    EXPECT_EQ(made->GetImageMetadata(level), made->GetImageMetadata(level));
  }
  EXPECT_EQ(made->ServiceProperties(), made->ServiceProperties());
  EXPECT_EQ(made->GetImageMetadata(""), made->GetImageMetadata("Full"));
}

TEST_F(ImageDocuments, TellPeopleWhatCouldNotBeFollowed) {
  EXPECT_EQ(peopleText(*mosaic()), "The image is complete.");
  const auto saysOf = [&](const std::string& content) { return peopleText(*mosaic(content)); };
  EXPECT_EQ(saysOf("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>9</LockImageID>"),
            "The image is complete.\nThere is no source raster \"9\" to lock to; all rasters are shown in "
            "the order "
            "of the service.");
  EXPECT_EQ(
      saysOf("<MosaicMethod>Closest to Viewpoint</MosaicMethod><ViewPointX>x</ViewPointX>"),
      "The image is complete.\nThe viewpoint is no pair of numbers; the middle of the service is taken.");
  EXPECT_EQ(
      saysOf("<NoData>300</NoData>"),
      "The image is complete.\nThe no-data value 300 does not fit pixels of type Byte; it is not used.");
  EXPECT_EQ(saysOf("<Srs><Prj>nonsense</Prj></Srs>"),
            "The image is complete.\nThe service cannot be brought into the coordinate system of its "
            "properties; it "
            "is shown in its own.");
}

TEST_F(ImageDocuments, TellOfSourcesThatAreLeftOutAndOfAreasBeyond) {
  writeText("m.sources/c2.tif", "II*");
  const auto made = mosaic();
  const std::string text = peopleText(*made);
  EXPECT_TRUE(text.starts_with("The image lacks source rasters.\nThe source raster ")) << text;
  EXPECT_NE(text.find("c2.tif is left out: "), std::string::npos) << text;
  (void)made->drawImage({499000, 5149400, 501400, 5150000}, 24, 6);
  EXPECT_NE(peopleText(*made).find("The image reaches beyond the service."), std::string::npos);
}

TEST_F(ImageDocuments, TellTheSpacingOfTheSourcesMiddles) {
  const std::string document = mosaic()->ServiceProperties();
  EXPECT_EQ(textIn(document, propertiesPath + "AvgImageSpacingX"), "300");
  EXPECT_EQ(textIn(document, propertiesPath + "AvgImageSpacingY"), "600");
  EXPECT_EQ(textIn(document, propertiesPath + "MosaicMethod"), "None");
  EXPECT_EQ(textIn(document, propertiesPath + "Resampling"), "Automatic");
}

TEST_F(ImageDocuments, TellTheSpacingAndViewpointAnewInAnotherSystem) {
  const auto made = mosaic("<Srs><Prj>EPSG:4326</Prj></Srs>");
  const std::string document = made->ServiceProperties();
  EXPECT_NEAR(std::stod(textIn(document, propertiesPath + "AvgImageSpacingX")), 0.0039, 0.0002);
  EXPECT_NEAR(std::stod(textIn(document, propertiesPath + "ViewPointX")), 9.009, 0.002);
  EXPECT_EQ(textIn(document, propertiesPath + "Srs/Name"), "WGS 84");
  EXPECT_NEAR(std::stod(textIn(made->ServiceInfo(), "//ClientEnvelope/XMin")), 9.0, 0.001);
}

TEST_F(ImageDocuments, RefusePropertiesThatAreNoneAndKeepTheFormer) {
  const auto made = mosaic("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>2</LockImageID>");
  EXPECT_THROW(made->setServiceProperties("<Vorlane/>"), RuntimeFailure);
  EXPECT_EQ(drawn(*made), "...GGGGGGGG...");
}

class SavedReferenceFiles : public ImageDocuments {
 protected:
  static constexpr auto lock = "<MosaicMethod>LockRaster</MosaicMethod><LockImageID>2</LockImageID>";
};

TEST_F(SavedReferenceFiles, OpenAgainWithEitherEnding) {
  const auto made = mosaic(lock);
  for (const char* name : {"a.VLRef", "b.vlref", "c.xml", "d.XML"}) {
    ASSERT_TRUE(made->SaveProperties(out(name))) << made->status();
    const auto again = service(out(name));
    EXPECT_EQ(again->ServiceProperties(), made->ServiceProperties()) << name;
    EXPECT_EQ(drawn(*again), "...GGGGGGGG...") << name;
  }
  EXPECT_EQ(outputs(), (std::vector<std::string>{"a.VLRef", "b.vlref", "c.xml", "d.XML"}));
}

TEST_F(SavedReferenceFiles, NameADefinitionBelowThemRelatively) {
  OVLCatalogueImageService made(server_, xml(), "VLDef://" + (folder() / "m.VLDef").string());
  const std::string file = (folder() / "saved.VLRef").string();
  ASSERT_TRUE(made.SaveProperties(file));
  EXPECT_EQ(textIn(test::contentOf(file), "/Vorlane/ImageServiceReference"), "VLDef://m.VLDef");
  std::filesystem::create_directory(folder() / "moved");
  for (const char* name : {"saved.VLRef", "m.VLDef", "m.sources"}) {
    std::filesystem::rename(folder() / name, folder() / "moved" / name);
  }
  EXPECT_EQ(service((folder() / "moved" / "saved.VLRef").string())->record().sources.size(), 3U);
}

TEST_F(SavedReferenceFiles, NameADefinitionElsewhereInFull) {
  const std::string reference = "VLDef://" + (folder() / "m.VLDef").string();
  const auto made = service(reference);
  ASSERT_TRUE(made->SaveProperties(out("saved.VLRef")));
  EXPECT_EQ(textIn(test::contentOf(out("saved.VLRef")), "/Vorlane/ImageServiceReference"), reference);
}

TEST_F(SavedReferenceFiles, AreWholeOrNotThere) {
  const auto made = mosaic(lock);
  EXPECT_FALSE(made->SaveProperties((folder() / "none" / "a.VLRef").string()));
  EXPECT_NE(textIn(made->status(), "//Item/Message"), "(none)");
  EXPECT_FALSE(made->SaveProperties(""));
  EXPECT_FALSE(made->SaveProperties(folder().string()));
  ASSERT_TRUE(made->SaveProperties(out("a.VLRef")));
  EXPECT_EQ(textIn(made->status(), "//Item/Message"), "(none)");
}

TEST_F(SavedReferenceFiles, NeverReplaceAFileOfTheServiceItself) {
  const auto made = mosaic();
  EXPECT_FALSE(made->SaveProperties((folder() / "m.VLDef").string()));
  EXPECT_FALSE(made->SaveProperties((folder() / "m.sources" / "c2.tif").string()));
  EXPECT_EQ(drawn(*mosaic()), "RRRGGGBBBBBBBB");
}

TEST_F(ImageDocuments, OfAThousandRastersReadEachFileOnce) {
  constexpr int count = 1000;
  test::RasterRecipe recipe;
  recipe.width = recipe.height = 4;
  const auto tile = makeRaster("many.sources/tile.tif", recipe);
  std::string rows;
  for (int i = 0; i < count; ++i) {
    const std::string name = "t" + std::to_string(i) + ".tif";
    std::filesystem::create_hard_link(tile, tile.parent_path() / name);
    rows +=
        "<Source><File>many.sources/" + name + "</File><Attributes><Year>2020</Year></Attributes></Source>";
  }
  writeText("many.VLDef",
            "<Vorlane><MosaicDefinition><Sources>" + rows + "</Sources></MosaicDefinition></Vorlane>");
  const auto made = service("ImageService://localhost/many");
  const std::string first = made->GetImageMetadata("");
  // The files are empty now, so reading one again would lose its texts.
  const auto written = std::filesystem::last_write_time(tile);
  const std::string nothing(std::filesystem::file_size(tile), '\0');
  std::fstream(tile, std::ios::in | std::ios::out | std::ios::binary) << nothing;
  std::filesystem::last_write_time(tile, written);
  // Another image: of the former one only the metadata of the files are kept.
  made->setServiceProperties(properties("<LockImageID>1</LockImageID>"));
  const std::string second = made->GetImageMetadata("");
  EXPECT_EQ(first.size(), second.size());
  EXPECT_EQ(made->GetImageMetadata("Full"), second);
}

TEST_F(ImageDocuments, TellThatNothingCrossesTheAntimeridian) {
  test::RasterRecipe recipe;
  recipe.epsg = 32601;
  recipe.width = 300;
  recipe.transform = {100000, 1000, 0, 5150000, 0, -1000};
  makeRaster("first.tif", recipe);
  const auto made = service("ImageService://localhost/first");
  made->setServiceProperties(properties("<Srs><Prj>EPSG:4326</Prj></Srs>"));
  EXPECT_EQ(textIn(made->ServiceProperties(), propertiesPath + "AvgImageSpacingX"), "300000");
  EXPECT_TRUE(test::holds(made->GetImageMetadata("Basic"), "it is shown in its own"));
  recipe.epsg = 4326;
  recipe.transform = {170, 0.01, 0, 50, 0, -0.01};
  makeRaster("m.sources/degrees.tif", recipe);
  writeText("far.VLDef",
            "<Vorlane><MosaicDefinition><Sources><Source><File>m.sources/degrees.tif</File></Source>"
            "<Source><File>first.tif</File></Source></Sources></MosaicDefinition></Vorlane>");
  const auto mosaic = service("ImageService://localhost/far");
  EXPECT_EQ(mosaic->record().sources.size(), 1U);
  EXPECT_TRUE(test::holds(mosaic->GetImageMetadata("Full"), "first.tif is left out: its coordinate system"));
}

}  // namespace
}  // namespace vlclientui::client
