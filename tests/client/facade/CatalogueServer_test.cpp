#include "client/facade/CatalogueServer.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "client/catalogue/Catalogue.h"
#include "client/facade/CatalogueServerClient.h"
#include "client/facade/ServerInfoAnswer.h"
#include "contracts/RuntimeFailure.h"
#include "support/TestFolders.h"

namespace vlclientui::client {
namespace {

using test::elementContent;

std::string requestFor(const std::string& server) {
  return "<Vorlane><Client><ServerInfo><Request><Server>" + server +
         "</Server><MetadataLevel>1</MetadataLevel></Request></ServerInfo></Client></Vorlane>";
}

// Stands for the system's translation of drives.
std::string fromDriveZ(const std::string& path) {
  if (!path.starts_with("Z:")) return path;
  std::string native = path.substr(2);
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

class CatalogueServerTest : public test::RasterFixture {
 protected:
  [[nodiscard]] std::string answer(const std::string& server) {
    return server_.serverInfo(requestFor(server));
  }

  CatalogueServer server_{xml(), {folder(), fromDriveZ}};
};

TEST_F(CatalogueServerTest, EmbeddedCatalogueAnswersUnderBothItsNames) {
  makeRaster("a.tif");
  EXPECT_EQ(elementContent(answer("127.0.0.1"), "Name"), "a");
  EXPECT_EQ(answer("localhost"), answer("127.0.0.1"));
  EXPECT_EQ(answer(" LocalHost "), answer("127.0.0.1"));
}

TEST_F(CatalogueServerTest, ExistingFolderIsACatalogueByNativeAndByDrivePath) {
  makeRaster("Sub/a.tif");
  const std::string native = (folder() / "Sub").string();
  EXPECT_EQ(elementContent(answer(native), "Name"), "a");
  std::string drive = "Z:" + native;
  std::replace(drive.begin(), drive.end(), '/', '\\');
  EXPECT_EQ(answer(drive), answer(native));
}

TEST_F(CatalogueServerTest, FolderThatDoesNotExistIsSilent) {
  EXPECT_EQ(answer((folder() / "none").string()), "");
}

TEST_F(CatalogueServerTest, AnythingElseIsSilent) {
  EXPECT_EQ(answer(""), "");
  EXPECT_EQ(answer("maps.example.org"), "");
  EXPECT_EQ(answer("."), "");
  EXPECT_EQ(answer(makeRaster("a.tif").string()), "");
}

TEST_F(CatalogueServerTest, RequestWithoutServerIsSilent) { EXPECT_EQ(server_.serverInfo("<Vorlane/>"), ""); }

TEST_F(CatalogueServerTest, RequestThatIsNoDocumentIsAFailure) {
  EXPECT_THROW((void)server_.serverInfo("<Vorlane>"), RuntimeFailure);
}

TEST_F(CatalogueServerTest, EmptyFolderAnswersWithoutServices) {
  EXPECT_EQ(answer("localhost"),
            "<Vorlane><Server><Info><Detailed><ServiceProviders><ServiceProvider><Services></Services>"
            "</ServiceProvider></ServiceProviders></Detailed></Info></Server></Vorlane>");
}

TEST_F(CatalogueServerTest, AnswerIsWellFormedWhateverNamesAndTitlesHold) {
  test::RasterRecipe recipe;
  recipe.finish = [](GDALDataset& d) { d.SetMetadataItem("TITLE", "<b> & \"q\" \xC3\xBC"); };
  makeRaster("R&D <1>/\xE5\x9C\xB0.tif", recipe);
  const auto document = xml().createDocument();
  ASSERT_TRUE(document->loadXml(answer("localhost")));
  EXPECT_EQ(document->selectSingleNode("//Service/Name")->text(), "R_D <1>/\xE5\x9C\xB0");
  EXPECT_EQ(document->selectSingleNode("//Service/ImageServiceInfo/KeyDetails/Title")->text(),
            "<b> & \"q\" \xC3\xBC");
}

TEST_F(CatalogueServerTest, AnswerHasEveryFieldOfARaster) {
  test::RasterRecipe recipe;
  recipe.bands = 3;
  recipe.type = GDT_UInt16;
  recipe.epsg = 4326;
  recipe.transform = {8.25, 0.5, 0, 47, 0, -0.5};
  recipe.finish = [](GDALDataset& d) {
    d.SetMetadataItem("TITLE", "A title");
    d.SetMetadataItem("REGION", "Here");
    d.SetMetadataItem("SENSOR", "Camera");
    d.GetRasterBand(1)->SetUnitType("W");
    for (int i = 0; i < 3; ++i) {
      d.GetRasterBand(i + 1)->SetColorInterpretation(static_cast<GDALColorInterp>(GCI_RedBand + i));
    }
  };
  makeRaster("Folder/raster.tif", recipe);
  test::expectGolden(answer("localhost"), "one_raster.xml");
}

TEST_F(CatalogueServerTest, SizeBeyond16BitsIsLeftOut) {
  test::RasterRecipe recipe;
  recipe.width = 32768;
  recipe.height = 1;
  makeRaster("wide.tif", recipe);
  EXPECT_EQ(elementContent(answer("localhost"), "MaxNCols"), "(none)");
  EXPECT_EQ(elementContent(answer("localhost"), "MaxNRows"), "1");
  recipe.width = 32767;
  makeRaster("wide.tif", recipe);
  EXPECT_EQ(elementContent(answer("localhost"), "MaxNCols"), "32767");
}

TEST_F(CatalogueServerTest, ProblemsAreThoseOfTheLastAnswer) {
  writeText("broken.tif", "II*");
  (void)answer("localhost");
  ASSERT_EQ(server_.problems().size(), 1U);
  (void)answer("nowhere");
  EXPECT_TRUE(server_.problems().empty());
}

TEST_F(CatalogueServerTest, ReferencesLeadToTheirFiles) {
  const auto file = makeRaster("Sub/a.tif");
  const auto fileOf = [&](const std::string& reference) {
    const auto entry = server_.locate(reference);
    return entry ? entry->file.string() : "(none)";
  };
  EXPECT_EQ(fileOf("ImageService://127.0.0.1/Sub/a"), file.string());
  EXPECT_EQ(fileOf("ImageService://" + folder().string() + "/Sub/a"), file.string());
  EXPECT_EQ(fileOf("ImageService://Z:" + folder().string() + "/Sub/a"), file.string());
  EXPECT_EQ(fileOf("ImageService://127.0.0.1/Sub\\a"), file.string());
  EXPECT_EQ(fileOf(file.string()), file.string());
  EXPECT_EQ(fileOf("ImageService://127.0.0.1/Sub/b"), "(none)");
  EXPECT_EQ(fileOf("ImageService://127.0.0.1"), "(none)");
  EXPECT_EQ(fileOf("ImageService://elsewhere/a"), "(none)");
  EXPECT_EQ(fileOf("VLDef:///nowhere.VLDef"), "(none)");
}

TEST_F(CatalogueServerTest, ReferenceToACatalogueNeverLeavesIt) {
  const auto file = makeRaster("inside/Sub/a.tif");
  makeRaster("e.tif");
  CatalogueServer server(xml(), {folder() / "inside", {}});
  EXPECT_TRUE(server.locate("ImageService://127.0.0.1/Sub/a"));
  for (const std::string& name :
       {std::string("../e"), std::string("..\\e"), std::string("Sub\\..\\../e"), (folder() / "e").string()}) {
    EXPECT_FALSE(server.locate("imageservice://LOCALHOST/" + name)) << name;
  }
}

TEST_F(CatalogueServerTest, BothGenerationsAnswerTheSame) {
  makeRaster("a.tif");
  writeText("broken.tif", "II*");
  const auto shared = std::make_shared<CatalogueServer>(xml(), CatalogueSettings{folder(), {}});
  CatalogueServerClient older(shared);
  OVLCatalogueServerClient newer(shared);
  EXPECT_EQ(older.GetServerInfo(requestFor("localhost")), newer.GetServerInfo(requestFor("localhost")));
  EXPECT_EQ(older.problems(), newer.problems());
  EXPECT_EQ(older.problems().size(), 1U);
  EXPECT_NE(older.queryInterface("IServerClient"), nullptr);
  EXPECT_EQ(older.queryInterface("IOVLServerClient"), nullptr);
  EXPECT_NE(newer.queryInterface("IOVLServerClient"), nullptr);
}

TEST_F(CatalogueServerTest, EnvironmentNamesTheEmbeddedFolder) {
  unsetenv("VLCLIENTUI_CATALOGUE");
  EXPECT_EQ(embeddedCatalogueFolder("/samples"), "/samples");
  setenv("VLCLIENTUI_CATALOGUE", "/mine", 1);
  EXPECT_EQ(embeddedCatalogueFolder("/samples"), "/mine");
  unsetenv("VLCLIENTUI_CATALOGUE");
}

class SampleCatalogue : public test::RasterFixture {
 protected:
  CatalogueServer server_{xml(), {samplesFolder(), {}}};
};

TEST_F(SampleCatalogue, AnswersAsItAlwaysDid) {
  test::expectGolden(server_.serverInfo(requestFor("localhost")), "samples.xml");
  EXPECT_TRUE(server_.problems().empty());
}

TEST_F(SampleCatalogue, HasAPictureOfEveryService) {
  const auto content = server_.content("localhost");
  ASSERT_TRUE(content.has_value());
  ASSERT_EQ(content->services.size(), 7U);
  for (const ServiceRecord& service : content->services) {
    const Thumbnail picture = server_.renderThumbnail("ImageService://localhost/" + service.name, 96, 64);
    EXPECT_FALSE(picture.isEmpty()) << service.name;
    EXPECT_TRUE(picture.width == 96 || picture.height == 64) << service.name;
  }
}

TEST_F(SampleCatalogue, HasAMosaicByName) {
  const auto entry = server_.locate("ImageService://127.0.0.1/Imagery/Valley/Ortho_Mosaic");
  ASSERT_TRUE(entry.has_value());
  EXPECT_EQ(entry->kind, EntryKind::Mosaic);
  EXPECT_EQ(entry->definition.sources.size(), 12U);
}

}  // namespace
}  // namespace vlclientui::client
