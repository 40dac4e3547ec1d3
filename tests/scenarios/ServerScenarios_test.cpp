// Services of a server in every window, beside the same raster of a folder: picked, looked at, steered and
// exported. Built once per window system.

#include <fstream>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/CatalogueServerClient.h"
#include "client/facade/NetworkServers.h"
#include "export/ExportDialogInterfaces.h"
#include "library/ClassFactory.h"
#include "platform/LibXmlService.h"
#include "properties/ServicePropertiesDialog.h"
#include "scenarios/ExportPerson.h"
#include "scenarios/MetadataPerson.h"
#include "scenarios/SelectionPerson.h"
#include "scenarios/StacOfRasters.h"
#include "scenarios/ViewPointPerson.h"
#include "servers/MapServer.h"
#include "servers/RasterWindow.h"
#include "support/FakeClient.h"
#include "support/RecordingPlexa.h"
#include "support/TestFolders.h"
#include "support/TestSystem.h"
#include "viewpoint/ViewPoint.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using Texts = std::vector<std::string>;

enum class Place { Folder, MapServer, QgisServer, WebFolder, Stac };

std::string nameOf(Place place) {
  static const std::map<Place, std::string> names = {{Place::Folder, "Folder"},
                                                     {Place::MapServer, "MapServer"},
                                                     {Place::QgisServer, "QgisServer"},
                                                     {Place::WebFolder, "WebFolder"},
                                                     {Place::Stac, "Stac"}};
  return names.at(place);
}

/// A person at a server of the samples, with the real client, engine and documents.
class ServerScenarios : public testing::TestWithParam<Place> {
 protected:
  static constexpr auto terrain = "Elevation/Terrain_30m";
  static constexpr auto folderServer = "127.0.0.1";

  ServerScenarios() {
    threadState() = {};
    for (const char* const name : {"VLClient.XADef", "VLClient.Xfdef"}) {
      system->writeFile(std::string("C:\\Program\\") + name,
                        sourceFileText(std::string("definitions/") + name));
    }
    system->variables["APPDATA"] = "C:\\Data";
    std::filesystem::create_directories(system->nativePath("C:\\Data"));
    platform.system = system;
    platform.xml =
        std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
    platform.clientLibrary = std::make_shared<FakeClientLibrary>();
    server = std::make_shared<client::CatalogueServer>(
        *platform.xml, client::CatalogueSettings{samplesFolder(), [this](const std::string& path) {
                                                   return path.starts_with("C:\\") ? system->nativePath(path)
                                                                                   : path;
                                                 }});
    client::addNetworkServers(*server);
  }
  ~ServerScenarios() override {
    service.reset();
    setPlatform(nullptr);
    threadState() = {};
  }
  void SetUp() override {
    if (GetParam() == Place::QgisServer && !QgisServer::missing().empty())
      GTEST_SKIP() << QgisServer::missing();
    service = open(serverText());
  }

  [[nodiscard]] static std::string serverText() {
    switch (GetParam()) {
      case Place::MapServer:
        return MapServer::shared().coverages();
      case Place::QgisServer:
        return QgisServer::shared().coverages();
      case Place::WebFolder:
        return StaticServer::samples().address();
      case Place::Stac:
        return StacOfRasters::shared().address();
      case Place::Folder:
        break;
    }
    return folderServer;
  }
  [[nodiscard]] static std::string reference(const std::string& ofServer) {
    return "ImageService://" + ofServer + "/" + terrain;
  }
  [[nodiscard]] std::shared_ptr<client::CatalogueImageService> openReference(const std::string& text) const {
    return std::make_shared<client::CatalogueImageService>(
        server, *platform.xml, text, client::ImageServiceSettings{sourceFolder() + "/definitions", {}});
  }
  [[nodiscard]] std::shared_ptr<client::CatalogueImageService> open(const std::string& ofServer) const {
    return openReference(reference(ofServer));
  }
  /// The same raster of this machine; a collection is a mosaic there as well.
  [[nodiscard]] std::shared_ptr<client::CatalogueImageService> openLocal() const {
    if (GetParam() != Place::Stac) return open(folderServer);
    const std::string file = system->nativePath("C:\\Data\\terrain.VLDef");
    std::ofstream(file) << "<Vorlane><MosaicDefinition><Sources><Source><File>" << samplesFolder() << "/"
                        << terrain << ".tif</File></Source></Sources></MosaicDefinition></Vorlane>";
    return openReference("VLDef://" + file);
  }
  template <class Person>
  void equip(Person& person) {
    person.equip(platform);
    show();
  }
  void show() { setPlatform(std::make_shared<Platform>(platform)); }

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  Platform platform;
  std::shared_ptr<client::CatalogueServer> server;
  std::shared_ptr<client::CatalogueImageService> service;
};

INSTANTIATE_TEST_SUITE_P(Every, ServerScenarios,
                         testing::Values(Place::Folder, Place::MapServer, Place::QgisServer, Place::WebFolder,
                                         Place::Stac),
                         [](const auto& place) { return nameOf(place.param); });

TEST_P(ServerScenarios, ATypedServerIsListedByItsFoldersAndAServiceOfItPicked) {
  const auto person = makeSelectionPerson();
  equip(*person);
  const auto dialog = queryInterface<IImageServicesDialog>(createObject("ImageServicesDialog"));
  ASSERT_EQ(dialog->Init("", std::make_shared<client::CatalogueServerClient>(server)), boolean16True);
  Texts picked;
  person->whenWindowAppears([&] {
    person->typeServer(serverText());
    person->pressEnterInServerBox();
    EXPECT_THAT(person->rows(), IsSupersetOf({"Elevation", "Imagery", "Landcover", "World"}));
    person->doubleClickRow("Elevation");
    EXPECT_THAT(person->rows(), ElementsAre("Shaded_Relief_30m", "Terrain_30m"));
    const Texts cells = person->cells("Terrain_30m");
    ASSERT_EQ(cells.size(), 8U);
    EXPECT_NE(cells[1], "") << "where it lies";
    EXPECT_EQ(cells[7], "1") << "its bands";
    person->doubleClickRow("Terrain_30m");
    picked = person->selectedList();
    person->clickButton("uibtnok");
  });
  EXPECT_EQ(dialog->ShowDialogEx(""), boolean16True);
  EXPECT_THAT(picked, ElementsAre(reference(serverText())));
  EXPECT_THAT(dialog->GetSelectedServices(), HasSubstr("<Name>" + reference(serverText()) + "</Name>"));
}

TEST_P(ServerScenarios, ItsInformationIsShown) {
  const auto person = makeSelectionPerson();
  equip(*person);
  const auto dialog = queryInterface<IImageServicesDialog>(createObject("ImageServicesDialog"));
  ASSERT_EQ(dialog->Init("", std::make_shared<client::CatalogueServerClient>(server)), boolean16True);
  bool isShown = false;
  person->whenWindowAppears([&] {
    person->typeServer(serverText());
    person->pressEnterInServerBox();
    person->doubleClickRow("Elevation");
    person->clickRow("Terrain_30m");
    person->whenInformationAppears([&] { isShown = true; });
    person->clickButton("Info");
    EXPECT_THAT(person->information(), Contains(HasSubstr("Terrain")));
  });
  EXPECT_EQ(dialog->ShowDialogEx(""), boolean16True);
  EXPECT_TRUE(isShown);
}

/// The dialog object of a host around the service.
class ServerPages : public ServerScenarios {
 protected:
  void SetUp() override {
    ServerScenarios::SetUp();
    if (IsSkipped()) return;
    equip(*person);
    dialog = std::make_shared<ServicePropertiesDialog>();
  }
  ~ServerPages() override { dialog.reset(); }

  void visit(const std::shared_ptr<client::CatalogueImageService>& of, PropertyPageId page,
             const std::function<void()>& actions) {
    const auto older = queryInterface<IServicePropertiesDialog>(dialog);
    ASSERT_EQ(older->Init("", nullptr, of), boolean16True) << threadState().gStatus;
    ASSERT_EQ(older->ShowPropertyPage(page, person->hostWindow()), boolean16True) << threadState().gStatus;
    person->lookAt(page == PropertyPageId::PropertyPageMetadata ? static_cast<Form&>(dialog->metadataPage())
                                                                : dialog->propertiesPage());
    actions();
    EXPECT_EQ(older->Close(page), boolean16True);
  }
  [[nodiscard]] std::string shown(const std::string& field) const {
    for (const std::string& line : person->fields()) {
      if (line.starts_with(field + "|")) return line.substr(field.size() + 1);
    }
    return "no " + field;
  }
  /// What stands on the node of the metadata page.
  [[nodiscard]] Texts fieldsOf(const std::shared_ptr<client::CatalogueImageService>& of,
                               const std::string& node) {
    Texts fields;
    visit(of, PropertyPageId::PropertyPageMetadata, [&] {
      person->clickNode(node);
      fields = person->fields();
    });
    return fields;
  }

  std::shared_ptr<MetadataPerson> person = makeMetadataPerson();
  std::shared_ptr<ServicePropertiesDialog> dialog;
};

INSTANTIATE_TEST_SUITE_P(Every, ServerPages,
                         testing::Values(Place::Folder, Place::MapServer, Place::QgisServer, Place::WebFolder,
                                         Place::Stac),
                         [](const auto& place) { return nameOf(place.param); });

TEST_P(ServerPages, TheImageLastReturnedIsToldAsThatOfTheSameFile) {
  EXPECT_EQ(fieldsOf(service, "Image Returned"), fieldsOf(openLocal(), "Image Returned"));
}

TEST_P(ServerPages, ItsSourceIsNamed) {
  visit(service, PropertyPageId::PropertyPageMetadata, [&] {
    person->clickNode("Source");
    EXPECT_THAT(person->rasters(), ElementsAre(HasSubstr("Terrain_30m")));
  });
}

TEST_P(ServerPages, AnEditOfItsPropertiesIsAppliedToWhatIsDrawn) {
  std::string applied;
  visit(service, PropertyPageId::PropertyPageProperties, [&] {
    EXPECT_NE(shown("Pixels/Resampling"), "Nearest neighbor");
    person->pickInField("Pixels/Resampling", "Nearest neighbor");
    applied = queryInterface<IServicePropertiesDialog>(dialog)->GetUpdatedProperties();
  });
  const auto whole = service->facts().envelope;
  const auto before = service->drawImage(whole, 50, 50).rgba;
  service->setServiceProperties(applied);
  EXPECT_NE(service->drawImage(whole, 50, 50).rgba, before);
}

TEST_P(ServerScenarios, TheViewpointStartsInItsMiddle) {
  const auto person = makeViewPointPerson();
  const auto toolkit = person->equip(system);
  platform.toolkit = toolkit;
  platform.plexa = std::make_shared<RecordingPlexaFactory>();
  show();
  ViewPoint page{*toolkit};
  page.myImageServiceObject = service;
  person->open(page);
  person->click("Center");
  const auto local = openLocal()->viewPoint();
  EXPECT_NEAR(std::stod(person->text("uiTxtBoxX")), local.x, 1e-6);
  EXPECT_NEAR(std::stod(person->text("uiTxtBoxY")), local.y, 1e-6);
}

TEST_P(ServerScenarios, AnExportHoldsThePixelsOfTheFileInTheirPlace) {
  const auto person = makeExportPerson();
  equip(*person);
  const auto dialog = queryInterface<IExportImageDialog>(createObject("ExportDialog"));
  ASSERT_EQ(dialog->IExportImageDialog_Init("", nullptr, service), boolean16True);
  person->whenWindowAppears([&] {
    person->pick("MainCombo", "Default Extent of Image Service");
    person->type("uiTxtCols", "768");
    person->type("uiTxtRows", "768");
    person->type("uiTxtFileName", "C:\\Data\\terrain.Tif");
    person->pressTab();
    person->click("Command1");
  });
  EXPECT_EQ(dialog->iExportImageDialog_ShowModalDialogEx(""), boolean16False);
  EXPECT_THAT(person->messages(), ElementsAre()) << service->status();
  const PixelWindow whole{0, 0, 768, 768};
  const RasterContent written = readWindow(system->nativePath("C:\\Data\\terrain.Tif"), whole);
  const RasterContent file = readWindow(samplesFolder() + "/" + terrain + ".tif", whole);
  EXPECT_EQ(written.extent, file.extent);
  EXPECT_EQ(written.type, file.type);
  EXPECT_EQ(written.values, file.values);
}

}  // namespace
}  // namespace vlclientui::test
