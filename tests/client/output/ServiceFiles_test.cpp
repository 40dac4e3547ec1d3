#include "client/output/ServiceFiles.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "client/ExportFixture.h"
#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

using test::contentOf;
using test::GetImage;
using test::holds;

class ServiceFiles : public test::ExportFixture {
 protected:
  [[nodiscard]] std::string path(const std::string& name) const { return (folder() / name).string(); }

  /// An export that must be refused, as it would replace or remove that file, and that changes nothing.
  void expectRefused(const std::string& service, GetImage wanted, const std::string& target,
                     const std::string& endangered) const {
    const std::string before = contentOf(path(endangered));
    wanted.fileName = path(target);
    const std::string message = exportFrom(service, wanted);
    EXPECT_TRUE(holds(message, path(endangered) + " belongs to the service")) << target << ": " << message;
    EXPECT_EQ(contentOf(path(endangered)), before) << target;
    if (target != endangered) {
      EXPECT_FALSE(std::filesystem::exists(path(target))) << target;
    }
  }

  // A raster that only its world file places.
  void makePlacedBeside(const std::string& name) const {
    test::RasterRecipe recipe;
    recipe.epsg = 0;
    recipe.option = "PROFILE=BASELINE";
    recipe.transform = {0, 1, 0, 0, 0, 1};
    makeNumbered(name + ".tif", recipe);
    std::filesystem::remove(path(name + ".tif.aux.xml"));
    writeText(name + ".tfw", "100\n0\n0\n-100\n500050\n5149950\n");
  }

  void makeVirtual(const std::string& name, const std::string& under) const {
    writeText(name,
              "<VRTDataset rasterXSize=\"8\" rasterYSize=\"6\">"
              "<GeoTransform>500000, 100, 0, 5150000, 0, -100</GeoTransform>"
              "<VRTRasterBand dataType=\"Byte\" band=\"1\"><SimpleSource>"
              "<SourceFilename relativeToVRT=\"1\">" +
                  under +
                  "</SourceFilename><SourceBand>1</SourceBand></SimpleSource></VRTRasterBand></VRTDataset>");
  }
};

TEST_F(ServiceFiles, WorldFileOfTheSourceIsNotReplacedByThatOfTheExport) {
  makePlacedBeside("s");
  GetImage wanted = request("Tiff", "");
  wanted.worldFile = true;
  wanted.extent = {500000, 5149700, 500400, 5150000};
  expectRefused("s", wanted, "s.Tif", "s.tfw");
  EXPECT_EQ(service("ImageService://localhost/s")->record().facts.envelope,
            (Bounds{500000, 5149400, 500800, 5150000}));
}

TEST_F(ServiceFiles, WorldFileThatWouldMoveTheSourceIsNotMade) {
  makePlacedBeside("s");
  std::filesystem::remove(path("s.tfw"));
  GetImage wanted = request("Tiff", "");
  wanted.worldFile = true;
  expectRefused("s", wanted, "s.Tif", "s.tfw");
  EXPECT_FALSE(std::filesystem::exists(path("s.tfw")));
}

TEST_F(ServiceFiles, ExportBesideTheSourceIsFineWhereItTouchesNothingOfIt) {
  makeNumbered("s.tif");
  GetImage wanted = request("Tiff", "");
  wanted.fileName = path("t.Tif");
  wanted.worldFile = true;
  wanted.metadata = true;
  EXPECT_EQ(exportFrom("s", wanted), "");
  EXPECT_EQ(exportFrom("s", wanted), "") << "what an export made before may be replaced";
  wanted.fileName = path("s.Tif");
  wanted.worldFile = false;
  EXPECT_EQ(exportFrom("s", wanted), "");
}

TEST_F(ServiceFiles, CompanionsOfTheSourceAreNoTargets) {
  makeNumbered("s.tif");
  {
    const DatasetPtr source(GDALDataset::FromHandle(GDALOpen(path("s.tif").c_str(), GA_ReadOnly)));
    int level = 2;
    ASSERT_EQ(source->BuildOverviews("NEAREST", 1, &level, 0, nullptr, nullptr, nullptr), CE_None);
    source->GetRasterBand(1)->SetMetadataItem("note", "kept beside");
  }
  for (const char* const companion : {"s.tif.ovr", "s.tif.aux.xml"}) {
    ASSERT_TRUE(std::filesystem::exists(path(companion))) << companion;
    expectRefused("s", request("Tiff", ""), companion, companion);
  }
}

TEST_F(ServiceFiles, MetadataOfTheExportDoesNotReplaceADefinition) {
  makeMosaic();
  std::filesystem::rename(path("m.VLDef"), path("m.xml"));
  std::filesystem::create_symlink(path("m.xml"), path("m.VLDef"));
  GetImage wanted = request("Tiff", "");
  wanted.metadata = true;
  expectRefused("m", wanted, "m", "m.xml");
}

TEST_F(ServiceFiles, RasterBehindAVirtualOneIsNoTarget) {
  makeNumbered("under.Tif");
  makeVirtual("over.vrt", "under.Tif");
  expectRefused("over", request("Tiff", ""), "under.Tif", "under.Tif");
}

TEST_F(ServiceFiles, NeitherIsOneBehindSeveral) {
  makeNumbered("deep/under.Tif");
  makeVirtual("deep/middle.vrt", "under.Tif");
  makeVirtual("m.sources/over.vrt", "../deep/middle.vrt");
  writeText("m.VLDef",
            "<Vorlane><MosaicDefinition><Sources><Source><File>m.sources/over.vrt</File></Source></Sources>"
            "</MosaicDefinition></Vorlane>");
  for (const char* const file : {"deep/under.Tif", "deep/middle.vrt", "m.sources/over.vrt", "m.VLDef"}) {
    expectRefused("m", request("Tiff", ""), file, file);
  }
}

TEST_F(ServiceFiles, NorIsTheWorldFileOfOneBehind) {
  makePlacedBeside("under");
  makeVirtual("over.vrt", "under.tif");
  GetImage wanted = request("Tiff", "");
  wanted.worldFile = true;
  expectRefused("over", wanted, "under.Tif", "under.tfw");
}

TEST_F(ServiceFiles, PropertiesAreNotSavedOverARasterBehindEither) {
  const std::string under = makeNumbered("under.xml").string();
  const std::string before = contentOf(under);
  makeVirtual("over.vrt", "under.xml");
  const auto over = service("ImageService://localhost/over");
  EXPECT_FALSE(over->SaveProperties(under));
  EXPECT_TRUE(holds(over->status(), "belongs to the service")) << over->status();
  EXPECT_EQ(contentOf(under), before);
}

}  // namespace
}  // namespace vlclientui::client
