// Files of any name in the add-service window: listed, picked, opened and exported. Built once per window
// system.

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <set>
#include <vector>

#include <cpl_string.h>
#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/CatalogueServerClient.h"
#include "frame/ThreadState.h"
#include "library/ClassFactory.h"
#include "platform/LibXmlService.h"
#include "scenarios/SelectionPerson.h"
#include "support/FakeClient.h"
#include "support/SelectionFixture.h"
#include "support/TestFolders.h"
#include "support/TestSystem.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

/// A folder of rasters served by the real client to the real window.
class NameScenarios : public testing::Test {
 protected:
  NameScenarios() : person(makeSelectionPerson()), system(std::make_shared<TestSystem>()) {
    GDALAllRegister();
    folder = system->home() / "rasters";
    fs::create_directories(folder);
    system->writeFile("C:\\Program\\VLClient.XADef", sourceFileText("definitions/VLClient.XADef"));
    system->writeFile("C:\\Program\\VLClient.Xfdef", sourceFileText("definitions/VLClient.Xfdef"));
    Platform made;
    made.system = system;
    made.xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
    made.clientLibrary = std::make_shared<FakeClientLibrary>();
    person->equip(made);
    platform = std::make_shared<Platform>(made);
    setPlatform(platform);
    server = std::make_shared<client::CatalogueServer>(*platform->xml, client::CatalogueSettings{folder, {}});
  }
  ~NameScenarios() override {
    dialog.reset();
    setPlatform(nullptr);
  }

  /// One pixel, whose value is the number; so a picked service tells which file it is.
  void makeRaster(const fs::path& name) {
    const fs::path file = folder / name;
    fs::create_directories(file.parent_path());
    auto* made =
        GetGDALDriverManager()->GetDriverByName("GTiff")->Create(file.c_str(), 1, 1, 1, GDT_UInt16, nullptr);
    ASSERT_NE(made, nullptr) << file;
    auto value = static_cast<std::uint16_t>(names.size() + 1);
    EXPECT_EQ(made->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, 1, 1, &value, 1, 1, GDT_UInt16, 0, 0, nullptr),
              CE_None);
    GDALClose(GDALDataset::ToHandle(made));
    names.push_back(name.string());
  }

  /// The services that double clicks on all rows give, in the list and in the folders given.
  Texts pickAll(const Texts& folders) {
    dialog = queryInterface<IImageServicesDialog>(createObject("ImageServicesDialog"));
    EXPECT_EQ(dialog->Init("", std::make_shared<client::CatalogueServerClient>(server)), boolean16True);
    Texts picked;
    person->whenWindowAppears([&] {
      const Texts rows = person->rows();
      for (const std::string& row : rows) {
        const bool isFolder = std::ranges::find(folders, row) != folders.end();
        person->doubleClickRow(row);
        if (!isFolder) continue;
        for (const std::string& inner : person->rows()) person->doubleClickRow(inner);
        person->pressBackspaceInList();
      }
      picked = person->selectedList();
    });
    EXPECT_EQ(dialog->ShowDialogEx(""), boolean16True);
    return picked;
  }

  /// The value of the pixel that a service exports; 0 when it could not.
  int exportedFrom(const std::string& reference) {
    client::CatalogueImageService service(server, *platform->xml, reference);
    const std::string file = (system->home() / "out.tif").string();
    service.ExportProperties(
        "<Vorlane><Client><GetImage><OutputType>File</OutputType><Top>1</Top><Left>0</Left><Right>1</Right>"
        "<Bottom>0</Bottom><Cols>1</Cols><Rows>1</Rows><Format>Tiff</Format><CompressionMethod/"
        "><TileSize>None"
        "</TileSize><CompressionQuality>0</CompressionQuality><FileName>" +
        file + "</FileName></GetImage></Client></Vorlane>");
    EXPECT_TRUE(service.ExportImage()) << service.status();
    auto* image = GDALDataset::FromHandle(GDALOpen(file.c_str(), GA_ReadOnly));
    if (image == nullptr) return 0;
    std::uint16_t value = 0;
    EXPECT_EQ(image->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, 1, 1, &value, 1, 1, GDT_UInt16, 0, 0, nullptr),
              CE_None);
    GDALClose(GDALDataset::ToHandle(image));
    return value;
  }

  /// Every file is picked once, and each pick leads to one file.
  void expectAllPicked(const Texts& folders = {}) {
    const Texts picked = pickAll(folders);
    EXPECT_EQ(picked.size(), names.size());
    EXPECT_TRUE(server->problems().empty());
    std::set<int> values;
    for (const std::string& reference : picked) {
      EXPECT_TRUE(values.insert(exportedFrom(reference)).second) << reference;
    }
    EXPECT_EQ(values.size(), names.size());
  }

  std::unique_ptr<SelectionPerson> person;
  std::shared_ptr<TestSystem> system;
  std::shared_ptr<Platform> platform;
  std::shared_ptr<client::CatalogueServer> server;
  std::shared_ptr<IImageServicesDialog> dialog;
  fs::path folder;
  Texts names;
};

const Texts beyondAscii = {"\u2013", "\u00FC", "\U0001F5FA", "\u5730\u56FE", "\u00A0", "\u0301", "\u2039"};

Texts characters() {
  Texts all = beyondAscii;
  for (char c = 0x20; c < 0x7F; ++c) {
    if (c != '/') all.emplace_back(1, c);
  }
  return all;
}

TEST_F(NameScenarios, EveryPrintableCharacterIsListedPickedOpenedAndExported) {
  for (const std::string& c : characters()) makeRaster("x" + c + "y.tif");
  expectAllPicked();
}

TEST_F(NameScenarios, EveryPrintableCharacterMayStandFirst) {
  for (const std::string& c : characters()) makeRaster(c + "xy.tif");
  expectAllPicked();
}

TEST_F(NameScenarios, EveryPrintableCharacterMayStandLast) {
  for (const std::string& c : characters()) makeRaster("xy" + c + ".tif");
  expectAllPicked();
}

TEST_F(NameScenarios, FoldersMayHaveAnyNameToo) {
  Texts shown;
  for (const std::string name : {"Plan, 1", "R&D", " blank ", "100%", "-5", "a\u2013b", "\u5730", "it's"}) {
    makeRaster(name + "/sheet, 1.tif");
    makeRaster(name + "/sheet 2.tif");
  }
  for (const std::string name : {"Plan_ 1", "R_D", "_blank_", "100_", "_5", "a_b", "\u5730", "it_s"}) {
    shown.push_back(name);
  }
  expectAllPicked(shown);
}

TEST_F(NameScenarios, NamesThatAreAlikeAreToldApart) {
  for (const std::string name : {"Plan, 1.tif", "Plan; 1.tif", "Plan_ 1.tif", "PLAN_ 1.tif", "Roads.tif",
                                 "Roads/West.tif", "(empty).tif", "2021.tif", "-.tif", "a.tif", "a.tiff"}) {
    makeRaster(name);
  }
  makeRaster(std::string(240, 'x') + ".tif");
  expectAllPicked({"Roads"});
}

TEST_F(NameScenarios, RealNamesOpenTheSameServices) {
  for (const std::string name : {"Plan, 1.tif", "R&D/it's 100%.tif", "a\u2013b.tif"}) makeRaster(name);
  EXPECT_EQ(exportedFrom("ImageService://127.0.0.1/Plan, 1"), 1);
  EXPECT_EQ(exportedFrom("ImageService://127.0.0.1/R&D/it's 100%"), 2);
  EXPECT_EQ(exportedFrom("ImageService://127.0.0.1/R_D/it's 100%"), 2);
  EXPECT_EQ(exportedFrom("ImageService://" + folder.string() + "/R&D/it_s 100_"), 2);
  EXPECT_EQ(exportedFrom("ImageService://127.0.0.1/a_b"), 3);
  // Shown names win.
  makeRaster("Plan_ 1.tif");
  EXPECT_EQ(exportedFrom("ImageService://127.0.0.1/Plan_ 1.tif"), 4);
  EXPECT_EQ(exportedFrom("ImageService://127.0.0.1/Plan, 1.tif"), 1);
}

TEST_F(NameScenarios, TheRealNameIsTheTitle) {
  makeRaster("Plan, sheet 1.tif");
  dialog = queryInterface<IImageServicesDialog>(createObject("ImageServicesDialog"));
  ASSERT_EQ(dialog->Init("", std::make_shared<client::CatalogueServerClient>(server)), boolean16True);
  person->whenWindowAppears([&] {
    EXPECT_EQ(person->rows(), Texts{"Plan_ sheet 1"});
    person->clickRow("Plan_ sheet 1");
    EXPECT_EQ(person->title(), "Plan, sheet 1");
  });
  EXPECT_EQ(dialog->ShowDialogEx(""), boolean16True);
}

}  // namespace
}  // namespace vlclientui::test
