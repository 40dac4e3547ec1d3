#include "selection/ImageServicesDialog.h"

#include <filesystem>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frame/ThreadState.h"
#include "selection/SelectionTest.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

const char* const notInitialized = "Cannot show without initializing the object";
const char* const initFailed = "Initialization failed";
const char* const missing = "Initialization failed. File 'C:\\Program\\VLClient.XADef' does not exist.";
const char* const invalid = "Initialization failed. File 'C:\\Program\\VLClient.XADef' is an invalid xad.";

std::string extent(const std::string& corners) {
  return "<AddImageServiceDialog><CustomEnvelope>" + corners + "</CustomEnvelope></AddImageServiceDialog>";
}

class ImageServicesDialogTest : public SelectionTest {
 protected:
  ImageServicesDialogTest() : made(std::make_shared<ImageServicesDialog>()) {
    server->answer = serverInfoOf({"A"});
  }

  [[nodiscard]] ObjectPtr olderClient() const { return std::make_shared<FakeServerClient>(server); }
  [[nodiscard]] ObjectPtr newerClient() const { return std::make_shared<FakeOVLServerClient>(server); }
  void removeDefinition() const { fs::remove(system->nativeFile("C:\\Program\\VLClient.XADef")); }
  void breakDefinition(const std::string& text) const {
    system->writeFile("C:\\Program\\VLClient.XADef", text);
  }

  std::shared_ptr<ImageServicesDialog> made;
};

// The failure table, in both generations.

TEST_F(ImageServicesDialogTest, ShowingBeforeInitIsFalseAndTellsSo) {
  EXPECT_EQ(older(made)->ShowDialog(), boolean16False);
  EXPECT_EQ(older(made)->Status(), notInitialized);
  threadState().imageServicesDialogStatus.clear();
  EXPECT_EQ(newer(made)->ShowDialogEx("<x/>"), boolean16False);
  EXPECT_EQ(newer(made)->Status(), notInitialized);
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(ImageServicesDialogTest, InitWithoutTheDefinitionFileIsFalseAndTellsItsPath) {
  removeDefinition();
  EXPECT_EQ(older(made)->Init("", olderClient()), boolean16False);
  EXPECT_EQ(older(made)->Status(), missing);
  EXPECT_FALSE(made->InitSucceed);
  threadState().imageServicesDialogStatus.clear();
  EXPECT_EQ(newer(made)->Init("", newerClient()), boolean16False);
  EXPECT_EQ(newer(made)->Status(), missing);
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(ImageServicesDialogTest, InitWithADefinitionFileThatIsNoXmlIsFalseAndTellsItsPath) {
  for (const char* text : {"", " ", "<Vorlane>", "plain", "<a/><b/>", "<a>&nbsp;</a>"}) {
    breakDefinition(text);
    threadState().imageServicesDialogStatus.clear();
    EXPECT_EQ(older(made)->Init("", olderClient()), boolean16False) << text;
    EXPECT_EQ(older(made)->Status(), invalid) << text;
    EXPECT_EQ(newer(made)->Init("", newerClient()), boolean16False) << text;
  }
}

TEST_F(ImageServicesDialogTest, AfterAFailedInitStatusIsLongUntilAShowIsTried) {
  removeDefinition();
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16False);
  EXPECT_EQ(older(made)->Status(), missing);
  EXPECT_EQ(older(made)->ShowDialog(), boolean16False);
  EXPECT_EQ(older(made)->Status(), initFailed);
  EXPECT_EQ(newer(made)->ShowDialogEx(""), boolean16False);
  EXPECT_EQ(newer(made)->Status(), initFailed);
}

TEST_F(ImageServicesDialogTest, TheDefinitionOfFormsIsNotLookedAt) {
  EXPECT_FALSE(fs::exists(system->nativeFile("C:\\Program\\VLClient.Xfdef")));
  EXPECT_EQ(older(made)->Init("", olderClient()), boolean16True);
}

TEST_F(ImageServicesDialogTest, StatusIsNotClearedByASuccess) {
  EXPECT_EQ(older(made)->ShowDialog(), boolean16False);
  EXPECT_EQ(older(made)->Init("", olderClient()), boolean16True);
  EXPECT_EQ(older(made)->ShowDialog(), boolean16True);
  EXPECT_EQ(older(made)->Status(), notInitialized);
}

TEST_F(ImageServicesDialogTest, TwoObjectsOnOneThreadShareOneStatus) {
  const auto second = std::make_shared<ImageServicesDialog>();
  EXPECT_EQ(older(second)->ShowDialog(), boolean16False);
  EXPECT_EQ(older(made)->Status(), notInitialized);
  removeDefinition();
  EXPECT_EQ(older(made)->Init("", olderClient()), boolean16False);
  EXPECT_EQ(newer(second)->Status(), missing);
}

TEST_F(ImageServicesDialogTest, StatusSurvivesTheObjectAndIsOneForEachThread) {
  EXPECT_EQ(older(made)->ShowDialog(), boolean16False);
  made = std::make_shared<ImageServicesDialog>();
  EXPECT_EQ(older(made)->Status(), notInitialized);
  std::string elsewhere = "not read";
  std::thread([&] { elsewhere = threadState().imageServicesDialogStatus; }).join();
  EXPECT_EQ(elsewhere, "");
}

// Init.

TEST_F(ImageServicesDialogTest, InitSucceedsWhateverTheConfigurationIs) {
  for (const char* configuration : {"", "<broken", "C:\\no\\such\\file", "<Vorlane/>"}) {
    EXPECT_EQ(older(made)->Init(configuration, olderClient()), boolean16True);
    EXPECT_EQ(newer(made)->Init(configuration, newerClient()), boolean16True);
  }
  EXPECT_TRUE(made->InitSucceed);
}

TEST_F(ImageServicesDialogTest, InitBuildsThePathsOfTheThread) {
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16True);
  EXPECT_EQ(threadState().UserDataFolder, "C:\\Documents\\Ostrel\\Vor Lane");
  EXPECT_EQ(threadState().ClientXADefPath, "C:\\Program\\VLClient.XADef");
}

TEST_F(ImageServicesDialogTest, InitMakesAMissingUserFolderThroughACopyOfItsPath) {
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16True);
  EXPECT_THAT(system->createdPaths, ElementsAre("C:\\Documents\\Ostrel\\Vor Lane \\ "));
  EXPECT_EQ(threadState().UserDataFolder, "C:\\Documents\\Ostrel\\Vor Lane");
  EXPECT_TRUE(fs::is_directory(system->nativeFile("C:\\Documents\\Ostrel\\Vor Lane")));
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16True);
  EXPECT_EQ(system->createdPaths.size(), 1U) << "a folder that is there is not made again";
}

TEST_F(ImageServicesDialogTest, InitSucceedsAlsoWhenTheUserFolderCannotBeMade) {
  system->folderCreationWorks = false;
  EXPECT_EQ(older(made)->Init("", olderClient()), boolean16True);
}

TEST_F(ImageServicesDialogTest, AFailedInitMakesNoFolder) {
  removeDefinition();
  EXPECT_EQ(older(made)->Init("", olderClient()), boolean16False);
  EXPECT_THAT(system->createdPaths, IsEmpty());
}

TEST_F(ImageServicesDialogTest, ASystemThatFailsEndsInitWithFalseAndNoText) {
  system->everythingFails = true;
  EXPECT_EQ(older(made)->Init("", olderClient()), boolean16False);
  EXPECT_EQ(newer(made)->Init("", newerClient()), boolean16False);
  EXPECT_EQ(older(made)->Status(), "");
}

TEST_F(ImageServicesDialogTest, TheLastInitDecides) {
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16True);
  breakDefinition("");
  EXPECT_EQ(older(made)->Init("", olderClient()), boolean16False);
  EXPECT_EQ(older(made)->ShowDialog(), boolean16False);
  breakDefinition(templateXml);
  EXPECT_EQ(older(made)->Init("", olderClient()), boolean16True);
  EXPECT_EQ(older(made)->ShowDialog(), boolean16True);
}

// The two generations.

TEST_F(ImageServicesDialogTest, TheOlderInitStoresAServerClientAndClearsTheFlag) {
  ASSERT_EQ(newer(made)->Init("", newerClient()), boolean16True);
  EXPECT_TRUE(made->myOVLClientInitialized);
  EXPECT_NE(made->myOVLClient, nullptr);
  EXPECT_EQ(made->myClient, nullptr);
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16True);
  EXPECT_FALSE(made->myOVLClientInitialized);
  EXPECT_NE(made->myClient, nullptr);
}

TEST_F(ImageServicesDialogTest, TheNewerInitStoresAnyObjectAsItIs) {
  const auto stranger = std::make_shared<FakeStranger>();
  EXPECT_EQ(newer(made)->Init("", stranger), boolean16True);
  EXPECT_EQ(made->myOVLClient, stranger);
  EXPECT_EQ(newer(made)->ShowDialog(), boolean16True) << "its call fails inside the load, not here";
}

TEST_F(ImageServicesDialogTest, AFailedNewerInitLeavesTheClientSetAndTheFlagAsItWas) {
  removeDefinition();
  const auto client = newerClient();
  EXPECT_EQ(newer(made)->Init("", client), boolean16False);
  EXPECT_EQ(made->myOVLClient, client);
  EXPECT_FALSE(made->myOVLClientInitialized);
  breakDefinition(templateXml);
  ASSERT_EQ(newer(made)->Init("", client), boolean16True);
  removeDefinition();
  const auto second = newerClient();
  EXPECT_EQ(newer(made)->Init("", second), boolean16False);
  EXPECT_EQ(made->myOVLClient, second);
  EXPECT_TRUE(made->myOVLClientInitialized);
}

TEST_F(ImageServicesDialogTest, AnOlderInitWithAStrangerStopsAtTheCastAndStoresNoText) {
  EXPECT_EQ(older(made)->Init("", std::make_shared<FakeStranger>()), boolean16False);
  EXPECT_EQ(older(made)->Status(), "");
  EXPECT_EQ(made->myClient, nullptr);
  EXPECT_EQ(threadState().ClientXADefPath.find("never"), std::string::npos);
  EXPECT_EQ(older(made)->ShowDialog(), boolean16False);
  EXPECT_EQ(older(made)->Status(), notInitialized) << "nothing after the cast ran";
}

TEST_F(ImageServicesDialogTest, AnOlderInitWithAStrangerLeavesWhatAGoodOneLeft) {
  const auto good = std::make_shared<FakeServerClient>(server);
  ASSERT_EQ(older(made)->Init("", good), boolean16True);
  EXPECT_EQ(older(made)->Init("", newerClient()), boolean16False);
  EXPECT_EQ(made->myClient, good);
  EXPECT_TRUE(made->InitSucceed);
  EXPECT_EQ(older(made)->ShowDialog(), boolean16True);
  EXPECT_EQ(server->requests.size(), 1U);
}

TEST_F(ImageServicesDialogTest, AnOlderInitWithAStrangerStillTakesTheNewerClientOutOfUse) {
  ASSERT_EQ(newer(made)->Init("", newerClient()), boolean16True);
  EXPECT_EQ(older(made)->Init("", std::make_shared<FakeStranger>()), boolean16False);
  EXPECT_FALSE(made->myOVLClientInitialized);
  EXPECT_EQ(older(made)->ShowDialog(), boolean16True);
  ASSERT_EQ(toolkit->messages().size(), 1U);
  EXPECT_EQ(toolkit->messages()[0].text, "Could not show the services. Client object is empty");
}

TEST_F(ImageServicesDialogTest, TheFlagChoosesTheClientThatTheWindowGets) {
  const auto newerServer = std::make_shared<FakeServer>();
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16True);
  ASSERT_EQ(newer(made)->Init("", std::make_shared<FakeOVLServerClient>(newerServer)), boolean16True);
  EXPECT_EQ(older(made)->ShowDialog(), boolean16True);
  EXPECT_EQ(server->requests.size(), 0U);
  EXPECT_EQ(newerServer->requests.size(), 1U);
  EXPECT_EQ(made->window().myOVLClient, made->myOVLClient);
  EXPECT_EQ(made->window().myClient, nullptr);
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16True);
  EXPECT_EQ(newer(made)->ShowDialog(), boolean16True);
  EXPECT_EQ(server->requests.size(), 1U);
  EXPECT_EQ(newerServer->requests.size(), 1U);
}

TEST_F(ImageServicesDialogTest, BothInterfacesAreFacetsOfOneObject) {
  const auto first = older(made);
  const auto second = newer(made);
  EXPECT_EQ(first->identity(), second->identity());
  EXPECT_EQ(first->identity(), made->identity());
  EXPECT_EQ(first->typeName(), "ImageServicesDialog");
  EXPECT_EQ(queryInterface<IOVLImageServicesDialog>(first).get(), second.get());
  EXPECT_EQ(made->queryInterface("IExportImageDialog"), nullptr);
  made.reset();
  EXPECT_EQ(second->ShowDialog(), boolean16False) << "a facet keeps the object alive";
}

// Showing.

TEST_F(ImageServicesDialogTest, TheServerIsAskedBeforeTheWindowAppears) {
  bool shown = false;
  server->duringCall = [&] { EXPECT_FALSE(shown); };
  toolkit->scriptModal([&](Form&) {
    shown = true;
    EXPECT_EQ(server->requests.size(), 1U);
  });
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16True);
  EXPECT_EQ(older(made)->ShowDialog(), boolean16True);
  EXPECT_TRUE(shown);
}

TEST_F(ImageServicesDialogTest, ShowDialogIsTrueAfterCancelAndTheResultIsEmpty) {
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16True);
  EXPECT_EQ(older(made)->GetSelectedServices(), "");
  toolkit->scriptModal(
      [](Form& form) { dynamic_cast<ImageServicesDialogForm&>(form).controls().uibtncancel.userClicks(); });
  EXPECT_EQ(older(made)->ShowDialog(), boolean16True);
  EXPECT_EQ(older(made)->GetSelectedServices(), "");
  EXPECT_EQ(newer(made)->GetSelectedServices(), "");
}

TEST_F(ImageServicesDialogTest, GetSelectedServicesNeedsNoInit) {
  EXPECT_EQ(older(made)->GetSelectedServices(), "");
  EXPECT_EQ(older(made)->Status(), "");
}

TEST_F(ImageServicesDialogTest, TheNewerInterfaceHandsBackWhatTheOlderGives) {
  ASSERT_EQ(newer(made)->Init("", newerClient()), boolean16True);
  toolkit->scriptModal([&](Form& form) {
    doubleClick("A");
    dynamic_cast<ImageServicesDialogForm&>(form).controls().uibtnok.userClicks();
  });
  EXPECT_EQ(newer(made)->ShowDialog(), boolean16True);
  EXPECT_EQ(newer(made)->GetSelectedServices(),
            "<SelectedImageServices><Name>ImageService://127.0.0.1/A</Name></SelectedImageServices>");
  EXPECT_EQ(older(made)->GetSelectedServices(), newer(made)->GetSelectedServices());
}

// The extent.

TEST_F(ImageServicesDialogTest, AnEmptyExtentBehavesAsShowDialog) {
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_FALSE(control.FilterCalled);
    EXPECT_FALSE(control.Check1.visible());
  });
}

TEST_F(ImageServicesDialogTest, TheExtentGoesToTheControl) {
  show(
      [&](auto&, ImageServicesControl& control) {
        EXPECT_TRUE(control.FilterCalled);
        EXPECT_EQ(control.MyXMin, -1.5);
        EXPECT_EQ(control.myXMax, 20);
        EXPECT_EQ(control.myYMin, 3e2);
        EXPECT_EQ(control.myYMax, 4000);
      },
      extent("<XMin>-1.5</XMin><XMax>20</XMax><YMin>3E2</YMin><YMax>4,000</YMax>"));
}

TEST_F(ImageServicesDialogTest, CornersThatAreMissingStayAtZeroAndTheFilterBoxShows) {
  show(
      [&](auto&, ImageServicesControl& control) {
        EXPECT_EQ(control.MyXMin, 7);
        EXPECT_EQ(control.myXMax, 0);
        EXPECT_EQ(control.myYMin, 0);
        EXPECT_EQ(control.myYMax, 0);
        EXPECT_TRUE(control.Check1.visible());
      },
      extent("<XMin>7</XMin>"));
}

TEST_F(ImageServicesDialogTest, TheExtentIsReadUnderTheUsersLocale) {
  system->locale = {",", ".", "\u20AC"};
  show(
      [&](auto&, ImageServicesControl& control) {
        EXPECT_EQ(control.MyXMin, 1.5);
        EXPECT_EQ(control.myXMax, 1234.25);
        EXPECT_EQ(control.myYMin, 15) << "a point stands between thousands here";
        EXPECT_EQ(control.myYMax, 2);
      },
      extent("<XMin>1,5</XMin><XMax>1.234,25</XMax><YMin>1.5</YMin><YMax>2</YMax>"));
}

TEST_F(ImageServicesDialogTest, AnExtentThatDoesNotParseStillShowsTheFilterWithZeros) {
  for (const char* xml : {"<AddImageServiceDialog>", "text", " ", "<Other/>"}) {
    show(
        [&](auto&, ImageServicesControl& control) {
          EXPECT_TRUE(control.FilterCalled) << xml;
          EXPECT_TRUE(control.Check1.visible()) << xml;
          EXPECT_EQ(control.MyXMin, 0) << xml;
          EXPECT_EQ(control.myYMax, 0) << xml;
        },
        xml);
  }
}

TEST_F(ImageServicesDialogTest, ACornerThatIsNoNumberEndsTheShowWithFalse) {
  ASSERT_EQ(older(made)->Init("", olderClient()), boolean16True);
  toolkit->scriptModal([](Form&) { ADD_FAILURE() << "no window may appear"; });
  EXPECT_EQ(older(made)->ShowDialogEx(extent("<XMax>5</XMax><XMin>west</XMin><YMax>6</YMax>")),
            boolean16False);
  EXPECT_EQ(older(made)->Status(), "");
  EXPECT_THAT(server->requests, IsEmpty());
  EXPECT_FALSE(made->window().loaded()) << "the next show builds its controls anew";
}

TEST_F(ImageServicesDialogTest, TheFilterOfAnEarlierShowDoesNotCarryOver) {
  show([&](auto&, ImageServicesControl& control) { EXPECT_TRUE(control.FilterCalled); },
       extent("<XMin>7</XMin>"));
  toolkit->scriptModal([&](Form& form) {
    auto& control = dynamic_cast<ImageServicesDialogForm&>(form).controls().ImageServicesControl1;
    EXPECT_FALSE(control.FilterCalled);
    EXPECT_EQ(control.MyXMin, 0);
    EXPECT_FALSE(control.Check1.visible());
  });
  EXPECT_EQ(older(dialog)->ShowDialog(), boolean16True);
}

// The helpers.

TEST_F(ImageServicesDialogTest, CreatePathIsTrueInAnyCaseAndChangesTheCallersText) {
  std::string path = "C:\\x";
  EXPECT_EQ(made->CreatePath(path), boolean16True);
  EXPECT_EQ(path, "C:\\x \\ ");
  std::string whole = "C:\\x\\";
  EXPECT_EQ(made->CreatePath(whole), boolean16True);
  EXPECT_EQ(whole, "C:\\x\\");
  EXPECT_THAT(system->createdPaths, ElementsAre("C:\\x \\ ", "C:\\x\\"));
  system->folderCreationWorks = false;
  EXPECT_EQ(made->CreatePath(whole), boolean16True);
  system->everythingFails = true;
  EXPECT_EQ(made->CreatePath(whole), boolean16True);
}

TEST_F(ImageServicesDialogTest, FileExistIsTrueForAnEmptyFileAndFalseForAnyError) {
  system->writeFile("C:\\empty", "");
  EXPECT_EQ(made->FileExist("C:\\empty"), boolean16True);
  EXPECT_EQ(made->FileExist("C:\\none"), boolean16False);
  system->everythingFails = true;
  EXPECT_EQ(made->FileExist("C:\\empty"), boolean16False);
}

}  // namespace
}  // namespace vlclientui::test
