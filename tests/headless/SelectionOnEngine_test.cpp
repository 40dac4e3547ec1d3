// The add-service window over the real form engine and the shipped definitions, on surfaces in memory.

#include <filesystem>

#include <gtest/gtest.h>

#include "contracts/Platform.h"
#include "engine/Engine.h"
#include "frame/ThreadState.h"
#include "headless/HeadlessSurface.h"
#include "platform/LibXmlService.h"
#include "support/SelectionFixture.h"
#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

using Names = std::vector<std::string>;

class SelectionOnEngine : public SelectionFixture {
 protected:
  SelectionOnEngine() {
    for (const auto* name : {"VLClient.XADef", "VLClient.Xfdef"}) {
      std::filesystem::copy_file(sourceFolder() + "/definitions/" + name,
                                 system->nativeFile(std::string("C:\\Program\\") + name),
                                 std::filesystem::copy_options::overwrite_existing);
    }
    surfaces->setChildWindowHooks({[this](WindowHandle parent, const std::string& title) {
                                     return toolkit->addChildWindow(parent, title);
                                   },
                                   [this](WindowHandle window) { toolkit->removeWindow(window); }});
    auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
    auto engines = std::make_shared<engine::EngineFactory>(xml, surfaces);
    setPlatform(std::make_shared<Platform>(Platform{system, xml, toolkit, engines, clientLibrary}));
    server->answer =
        serverInfo({{"Roads/2004/West", info("West")}, {"Roads/East"}, {"Terrain", info("Alps")}});
  }

  // The surfaces' hooks end with this object, so the windows have to be gone before.
  ~SelectionOnEngine() override { dialog.reset(); }

  static std::string info(const std::string& title) {
    return "<ImageServiceInfo><Name>n</Name><KeyDetails><Title>" + title +
           "</Title><GeographicRegion>Europe</GeographicRegion></KeyDetails><ColorSpace>7</ColorSpace>"
           "<NBands>1</NBands></ImageServiceInfo>";
  }

  headless::HeadlessSurface& list(const ImageServicesControl& control) {
    auto* surface = surfaces->surfaceIn(toolkit->windowOf(control));
    if (!surface) throw std::runtime_error("the control holds no list");
    return *surface;
  }

  std::shared_ptr<headless::HeadlessSurfaceFactory> surfaces =
      std::make_shared<headless::HeadlessSurfaceFactory>();
};

TEST_F(SelectionOnEngine, AServersRootShowsFoldersFirstAndThenServicesWithTheirCells) {
  show([this](ImageServicesDialogForm&, ImageServicesControl& control) {
    EXPECT_EQ(list(control).rowNames(), (Names{"Roads", "Terrain"}));
    EXPECT_EQ(list(control).list()->icon(0), engine::RowIcon::Folder);
    EXPECT_EQ(list(control).list()->columnCount(), 8U);
    EXPECT_EQ(list(control).rowCells("Terrain"),
              (Names{"Terrain", "Europe", "", "", "Palette", "", "", "1"}));
  });
}

TEST_F(SelectionOnEngine, TheListIsFoundAmongTheControlsWindowsByItsTitle) {
  show([this](ImageServicesDialogForm&, ImageServicesControl& control) {
    const auto windows = toolkit->childWindows(toolkit->windowOf(control));
    ASSERT_EQ(windows.size(), 1U);
    EXPECT_EQ(toolkit->windowTitle(windows[0], 4), "CHSL");
  });
}

TEST_F(SelectionOnEngine, AServiceTwoFoldersDownBecomesAReferenceWithItsPath) {
  show([this](ImageServicesDialogForm&, ImageServicesControl& control) {
    list(control).userDoubleClicksRow("Roads");
    EXPECT_EQ(list(control).rowNames(), (Names{"2004", "East"}));
    list(control).userDoubleClicksRow("2004");
    EXPECT_EQ(list(control).rowNames(), (Names{"West"}));
    list(control).userClicksRow("West");
    EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/Roads/2004/West");
    EXPECT_EQ(control.Desc.text(), "West");
    list(control).userDoubleClicksRow("West");
    EXPECT_EQ(control.TheListCount, 1);
  });
}

TEST_F(SelectionOnEngine, BackspaceGoesUpAndThePathFollows) {
  show([this](ImageServicesDialogForm&, ImageServicesControl& control) {
    list(control).userDoubleClicksRow("Roads");
    list(control).userDoubleClicksRow("2004");
    list(control).userPressesBackspace();
    EXPECT_EQ(list(control).rowNames(), (Names{"2004", "East"}));
    list(control).userClicksRow("East");
    EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/Roads/East");
    list(control).userPressesBackspace();
    EXPECT_EQ(list(control).rowNames(), (Names{"Roads", "Terrain"}));
    list(control).userPressesBackspace();
    list(control).userClicksRow("Terrain");
    EXPECT_EQ(control.SelectedFile, "ImageService://127.0.0.1/Terrain");
    EXPECT_EQ(control.TheListCount, 0);
  });
}

TEST_F(SelectionOnEngine, ARefreshBringsANewListAtTheRoot) {
  show([this](ImageServicesDialogForm&, ImageServicesControl& control) {
    list(control).userDoubleClicksRow("Roads");
    control.uiTxtBoxServerName.userTypes("other");
    control.uiTxtBoxServerName.userPresses(13);
    list(control).userClicksRow("Terrain");
    EXPECT_EQ(control.SelectedFile, "ImageService://other/Terrain");
    EXPECT_EQ(surfaces->surfaces().size(), 1U);
  });
}

TEST_F(SelectionOnEngine, ASilentServerShowsItsMessageAndAddsNothing) {
  server->answer.clear();
  show([this](ImageServicesDialogForm&, ImageServicesControl& control) {
    EXPECT_EQ(list(control).rowNames(), (Names{"(Server not found)"}));
    list(control).userDoubleClicksRow("(Server not found)");
    EXPECT_EQ(control.TheListCount, 0);
  });
}

TEST_F(SelectionOnEngine, TheInformationWindowShowsTheServiceInGroups) {
  show([this](ImageServicesDialogForm&, ImageServicesControl& control) {
    list(control).userClicksRow("Terrain");
    control.Info.userClicks();
  });
  EXPECT_TRUE(toolkit->messages().empty());
  ASSERT_EQ(surfaces->windows().size(), 1U);
  const auto& window = surfaces->windows()[0];
  EXPECT_EQ(window.caption, "Service Properties");
  EXPECT_EQ(window.form->findField("Title")->value, "Alps");
  EXPECT_EQ(window.form->findField("ColorSpace")->value, "Palette");
}

TEST_F(SelectionOnEngine, OkGivesTheSelectedServicesFromTheShippedTemplate) {
  show([this](ImageServicesDialogForm& form, ImageServicesControl& control) {
    list(control).userDoubleClicksRow("Terrain");
    form.controls().uibtnok.userClicks();
  });
  EXPECT_EQ(older(dialog)->GetSelectedServices(),
            "<SelectedImageServices><Name>ImageService://127.0.0.1/Terrain</Name></SelectedImageServices>");
  EXPECT_TRUE(surfaces->surfaces().empty());
}

}  // namespace
}  // namespace vlclientui::test
