#include "client/facade/CatalogueImageService.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "client/ExportFixture.h"
#include "client/catalogue/Catalogue.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr auto basicLevel = "//Vorlane/Client/ImageMetadata/Basic/";

class ImageServices : public test::ServiceFixture {
 protected:
  [[nodiscard]] std::string textIn(const std::string& text, const std::string& path) const {
    const auto document = xml().createDocument();
    if (!document->loadXml(text)) return "(no document)";
    const auto node = document->selectSingleNode(path);
    return node ? node->text() : "(none)";
  }

  [[nodiscard]] std::string basic(CatalogueImageService& service, const std::string& element) const {
    return textIn(service.GetImageMetadata("Basic"), basicLevel + element);
  }

  void makeMosaic() const {
    makeNumbered("m.sources/left.tif");
    test::RasterRecipe right;
    right.transform[0] = 500400;
    makeNumbered("m.sources/right.tif", right);
    writeText("m.VLDef",
              "<Vorlane><MosaicDefinition><Title>Two</Title><Sources>"
              "<Source><File>m.sources/left.tif</File><RasterId>7</RasterId>"
              "<Attributes><Year>2019</Year></Attributes></Source>"
              "<Source><File>m.sources/right.tif</File><Attributes><Year>2021</Year></Attributes></Source>"
              "</Sources></MosaicDefinition></Vorlane>");
  }
};

TEST_F(ImageServices, AreMadeFromEveryKindOfReference) {
  const auto file = makeRaster("Sub/a.tif");
  makeMosaic();
  EXPECT_EQ(service("ImageService://localhost/Sub/a")->record().name, "Sub/a");
  EXPECT_EQ(service("ImageService://" + (folder() / "Sub/a").string())->record().sources.front().file, file);
  EXPECT_EQ(service("VLDef://" + (folder() / "m.VLDef").string())->record().name, "m");
  EXPECT_EQ(service(file.string())->record().name, "a");
}

TEST_F(ImageServices, AreMadeFromReferenceFilesBareAndWithProperties) {
  makeMosaic();
  const auto bare = writeText("bare.VLRef", "\n ImageService://localhost/m \n");
  EXPECT_EQ(service(bare.string())->record().reference, "ImageService://localhost/m");
  const auto whole = writeText("refs/whole.vlref",
                               "<Vorlane><ImageServiceReference>VLDef://../m.VLDef</ImageServiceReference>"
                               "<ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>7"
                               "</LockImageID></ImageServiceProperties></Vorlane>");
  const auto made = service(whole.string());
  EXPECT_EQ(made->record().sources.size(), 2U);
  EXPECT_EQ(textIn(made->ServiceProperties(), "//Vorlane/ImageServiceProperties/LockImageID"), "7");
}

TEST_F(ImageServices, AreMadeFromReferenceFilesOfEveryEncoding) {
  makeMosaic();
  const std::string mark = "\xEF\xBB\xBF";
  const std::string document =
      "<Vorlane><ImageServiceReference>VLDef://m.VLDef</ImageServiceReference></Vorlane>";
  std::string wide = "\xFF\xFE";
  for (const char c : document) (wide += c) += '\0';
  for (const char* const name : {"a.VLRef", "a.xml"}) {
    for (const std::string& text : {document, mark + document, mark + "\n" + document, "\n" + document, wide,
                                    "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + document}) {
      EXPECT_EQ(service(writeText(name, text).string())->record().name, "m") << name << " " << text;
    }
  }
  EXPECT_EQ(
      service(writeText("bare.VLRef", mark + " ImageService://localhost/m\r\n").string())->record().name,
      "m");
}

TEST_F(ImageServices, AreMadeFromReferenceFilesWithTheSchemeInAnyCase) {
  makeMosaic();
  for (const std::string& scheme :
       {std::string("VLDef://"), std::string("vldef://"), std::string("VLDEF://")}) {
    const auto file = writeText("refs/a.VLRef", scheme + "../m.VLDef");
    const auto made = service(file.string());
    EXPECT_EQ(made->record().file, folder() / "m.VLDef") << scheme;
    ASSERT_TRUE(made->SaveProperties((folder() / "saved.VLRef").string())) << scheme;
    EXPECT_EQ(textIn(test::contentOf((folder() / "saved.VLRef").string()), "/Vorlane/ImageServiceReference"),
              "VLDef://m.VLDef");
  }
}

TEST_F(ImageServices, RefuseReferencesThatLeadNowhere) {
  writeText("broken.tif", "II*");
  const auto empty = writeText("empty.VLRef", "<Vorlane/>");
  const auto circle = writeText("circle.VLRef", (folder() / "circle.VLRef").string());
  for (const std::string& reference :
       {std::string("ImageService://localhost/none"), std::string("ImageService://elsewhere.example/a"),
        (folder() / "broken.tif").string(), (folder() / "none.VLRef").string(), empty.string(),
        circle.string()}) {
    EXPECT_THROW((void)service(reference), RuntimeFailure) << reference;
  }
}

// Lists read headers only, so that such a file is a service until its pixels are asked for.
TEST_F(ImageServices, WhoseFilesAreCutOffAreListedAndSayWhyTheyCannotBeDrawn) {
  test::RasterRecipe recipe;
  recipe.width = 1000;
  recipe.height = 1000;
  for (const char* const option : {"TILED=NO", "TILED=YES", "COMPRESS=LZW"}) {
    recipe.option = option;
    const auto file = makeNumbered("a.tif", recipe);
    std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
    ASSERT_EQ(server_->content("localhost")->services.size(), 1U) << option;
    const auto made = service("ImageService://localhost/a");
    try {
      (void)made->drawImage(made->record().facts.envelope, 100, 100);
      ADD_FAILURE() << option << ": drawn";
    } catch (const RuntimeFailure& failure) {
      const std::string text = failure.description();
      EXPECT_TRUE(
          text.starts_with("The image cannot be drawn. The source cannot be read; its file is damaged"))
          << option << ": " << text;
      EXPECT_TRUE(test::holds(text, file.string())) << option << ": " << text;
    }
    EXPECT_TRUE(server_->renderThumbnail("ImageService://localhost/a", 20, 20).isEmpty()) << option;
  }
}

TEST_F(ImageServices, AreToldApartByTheirTypeNames) {
  makeRaster("a.tif");
  const CatalogueImageService older(server_, xml(), "ImageService://localhost/a");
  const OVLCatalogueImageService newer(server_, xml(), "ImageService://localhost/a");
  EXPECT_EQ(older.typeName(), "ImageService");
  EXPECT_FALSE(isNewerGeneration(older));
  EXPECT_TRUE(isNewerGeneration(newer));
}

TEST_F(ImageServices, TellEveryBasicFactOfTheWholeServiceAtFirst) {
  test::RasterRecipe recipe;
  recipe.bands = 3;
  recipe.type = GDT_UInt16;
  makeRaster("a.tif", recipe);
  const auto made = service("ImageService://localhost/a");
  EXPECT_EQ(basic(*made, "XMin"), "500000");
  EXPECT_EQ(basic(*made, "YMin"), "5149400");
  EXPECT_EQ(basic(*made, "XMax"), "500800");
  EXPECT_EQ(basic(*made, "YMax"), "5150000");
  EXPECT_EQ(basic(*made, "NCols"), "8");
  EXPECT_EQ(basic(*made, "NRows"), "6");
  EXPECT_EQ(basic(*made, "NBands"), "3");
  EXPECT_EQ(basic(*made, "PixelType"), "UInt16");
  EXPECT_EQ(basic(*made, "BufferSize"), "288");
  EXPECT_EQ(basic(*made, "Status//Message"), "The image is complete.");
}

TEST_F(ImageServices, TellOfTheImageLastDrawn) {
  makeNumbered("a.tif");
  const auto made = service("ImageService://localhost/a");
  const Thumbnail picture = made->drawImage({500000, 5149700, 500400, 5150000}, 16, 12);
  EXPECT_EQ(picture.rgba.size(), 16U * 12U * 4U);
  EXPECT_EQ(basic(*made, "XMax"), "500400");
  EXPECT_EQ(basic(*made, "YMin"), "5149700");
  EXPECT_EQ(basic(*made, "NCols"), "16");
  EXPECT_EQ(basic(*made, "NRows"), "12");
  EXPECT_THROW((void)made->drawImage({0, 0, 0, 1}, 4, 4), RuntimeFailure);
  EXPECT_THROW((void)made->drawImage({0, 0, 1, 1}, 0, 4), RuntimeFailure);
  EXPECT_EQ(basic(*made, "NCols"), "16");
}

TEST_F(ImageServices, TellTheRastersBehindTheImageAtTheOtherLevels) {
  makeMosaic();
  const auto made = service("ImageService://localhost/m");
  const std::string rasters = "//Vorlane/Client/ImageMetadata/Detailed/Rasters/Raster";
  EXPECT_EQ(textIn(made->GetImageMetadata("Basic"), rasters), "(none)");
  for (const char* level : {"", "Full"}) {
    const std::string document = made->GetImageMetadata(level);
    EXPECT_EQ(textIn(document, rasters + "[0]/Info/RasterId"), "7");
    EXPECT_EQ(textIn(document, rasters + "[0]/Info/RasterName"), "left");
    EXPECT_EQ(textIn(document, rasters + "[0]/Info/Visible"), "True");
    EXPECT_EQ(textIn(document, rasters + "[0]/Attributes/Year"), "2019");
    EXPECT_EQ(textIn(document, rasters + "[1]/Info/RasterId"), "2");
    EXPECT_NE(textIn(document, rasters + "[1]/Metadata"), "(none)");
  }
  (void)made->drawImage({500900, 5149400, 501200, 5150000}, 3, 6);
  EXPECT_EQ(textIn(made->GetImageMetadata(""), rasters + "[0]/Info/RasterName"), "right");
}

TEST_F(ImageServices, TellTheServiceInfo) {
  test::RasterRecipe recipe;
  recipe.width = 32768;
  recipe.height = 2;
  recipe.bands = 2;
  recipe.finish = [](GDALDataset& dataset) { dataset.SetMetadataItem("TITLE", "A title"); };
  makeRaster("Sub/a.tif", recipe);
  const std::string info = service("ImageService://localhost/Sub/a")->ServiceInfo();
  EXPECT_EQ(textIn(info, "Vorlane/ImageServiceInfo/Name"), "Sub/a");
  EXPECT_EQ(textIn(info, "//Vorlane/ImageServiceInfo/KeyDetails/Title"), "A title");
  EXPECT_EQ(textIn(info, "//Vorlane/ImageServiceInfo/ClientEnvelope/XMin"), "500000");
  EXPECT_EQ(textIn(info, "//Vorlane/ImageServiceInfo/ClientEnvelope/YMax"), "5150000");
  EXPECT_EQ(textIn(info, "//Vorlane/ImageServiceInfo/MaxNCols"), "(none)");
  EXPECT_EQ(textIn(info, "//Vorlane/ImageServiceInfo/MaxNRows"), "2");
  EXPECT_EQ(textIn(info, "//Vorlane/ImageServiceInfo/PixelSize"), "100");
  EXPECT_EQ(textIn(info, "//NBands"), "2");
  EXPECT_EQ(textIn(info, "//BitDepth"), "8");
}

TEST_F(ImageServices, TellTheServiceMetadataBelowARootOfItsOwn) {
  makeRaster("a.tif");
  const std::string metadata = service("ImageService://localhost/a")->GetMetaData("");
  EXPECT_EQ(textIn(metadata, "/Metadata/Name"), "a");
  EXPECT_EQ(textIn(metadata, "/Metadata/CoordinateSystemId"), "EPSG:32632");
  EXPECT_EQ(textIn(metadata, "/Metadata/Extent/XMax"), "500800");
}

TEST_F(ImageServices, StartWithTheViewpointInTheMiddle) {
  makeMosaic();
  const std::string properties = service("ImageService://localhost/m")->ServiceProperties();
  const std::string root = "//Vorlane/ImageServiceProperties/";
  EXPECT_EQ(textIn(properties, root + "ViewPointX"), "500600");
  EXPECT_EQ(textIn(properties, root + "ViewPointY"), "5149700");
  EXPECT_EQ(textIn(properties, root + "AvgImageSpacingX"), "400");
  EXPECT_EQ(textIn(properties, root + "AvgImageSpacingY"), "600");
  EXPECT_EQ(textIn(properties, root + "LockImageID"), "");
  EXPECT_NE(textIn(properties, root + "Srs/Prj"), "(none)");
}

TEST_F(ImageServices, SavePropertiesThatAReferenceFileGivesBack) {
  makeMosaic();
  const auto made = service("ImageService://localhost/m");
  made->setServiceProperties(
      "<Vorlane><ImageServiceProperties><LockImageID>7</LockImageID></ImageServiceProperties></Vorlane>");
  ASSERT_TRUE(made->SaveProperties(out("saved.VLRef")));
  const auto again = service(out("saved.VLRef"));
  EXPECT_EQ(again->record().reference, "ImageService://localhost/m");
  EXPECT_EQ(again->ServiceProperties(), made->ServiceProperties());
  EXPECT_FALSE(made->SaveProperties((folder() / "none" / "saved.VLRef").string()));
  EXPECT_NE(textIn(made->status(), "//Item/Message"), "");
  EXPECT_THROW(made->setServiceProperties("<Vorlane>"), RuntimeFailure);
}

TEST_F(ImageServices, GiveDefinitionsWhereTheFilesHoldThem) {
  makeRaster("a.tif");
  writeText("defs/VLClient.XADef",
            "<Vorlane><ImageServiceProperties><MosaicMethod/></ImageServiceProperties></Vorlane>");
  writeText("defs/VLClient.Xfdef", "<Vorlane><Metadata><Name/></Metadata></Vorlane>");
  OVLCatalogueImageService made(server_, xml(), "ImageService://localhost/a", {folder() / "defs"});
  EXPECT_EQ(made.getProperty("ClientXADef"),
            "<XADef><Vorlane><ImageServiceProperties><MosaicMethod MosaicMethod_LIST_=\"None\"/>"
            "</ImageServiceProperties></Vorlane></XADef>");
  EXPECT_EQ(made.GetDefinition(1), made.getProperty("ClientXADef"));
  EXPECT_EQ(made.getProperty("ServiceMetadataXFDef"), "<XFDef><Metadata><Name/></Metadata></XFDef>");
  EXPECT_THROW((void)made.getProperty("ClientXFDef"), RuntimeFailure);
  EXPECT_THROW((void)made.getProperty("ImageMetadataXADef"), RuntimeFailure);
  EXPECT_THROW((void)made.GetDefinition(5), RuntimeFailure);
  CatalogueImageService older(server_, xml(), "ImageService://localhost/a", {folder() / "defs"});
  EXPECT_EQ(older.GetDefinition(1), made.GetDefinition(1));
  EXPECT_THROW((void)older.getProperty("ClientXADef"), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::client
