// What a person does at the add-service window and what comes of it. Built once per window system.

#include <algorithm>
#include <functional>

#include <gtest/gtest.h>

#include "contracts/controls/Form.h"
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

using Texts = std::vector<std::string>;

const char* const extentOfAlps =
    "<AddImageServiceDialog><CustomEnvelope><XMin>5</XMin><YMin>44</YMin><XMax>12</XMax><YMax>48</YMax>"
    "</CustomEnvelope></AddImageServiceDialog>";

std::string described(const std::string& title, double x) {
  return "<ImageServiceInfo><Name>n</Name><GeographicEnvelope><XMin>" + std::to_string(x) + "</XMin><XMax>" +
         std::to_string(x + 1) +
         "</XMax><YMin>45</YMin><YMax>46</YMax></GeographicEnvelope><KeyDetails><Title>" + title +
         "</Title><GeographicRegion>Alps</GeographicRegion><PixelUnit>m</PixelUnit><PixelSource>Radar"
         "</PixelSource></KeyDetails><ColorSpace>1</ColorSpace><PixelType>Byte</PixelType><BitDepth>8"
         "</BitDepth><NBands>3</NBands></ImageServiceInfo>";
}

/// A server that knows one name and is silent under any other.
class NamedServer : public IServerClient {
 public:
  explicit NamedServer(std::string answer) : answer_(std::move(answer)) {}
  std::string GetServerInfo(const std::string& request) override {
    ++calls;
    if (duringCall) duringCall();
    return request.find("<Server>silent</Server>") == std::string::npos ? answer_ : std::string();
  }
  int calls = 0;
  std::function<void()> duringCall;

 private:
  std::string answer_;
};

class SelectionScenarios : public testing::Test {
 protected:
  SelectionScenarios() : person(makeSelectionPerson()), system(std::make_shared<TestSystem>()) {
    system->writeFile("C:\\Program\\VLClient.XADef", sourceFileText("definitions/VLClient.XADef"));
    system->writeFile("C:\\Program\\VLClient.Xfdef", sourceFileText("definitions/VLClient.Xfdef"));
    Platform made;
    made.system = system;
    made.xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
    made.clientLibrary = std::make_shared<FakeClientLibrary>();
    person->equip(made);
    setPlatform(std::make_shared<Platform>(made));
    serve({{"Roads/2004/West", described("Roads of the west", 6)},
           {"Roads/2004/East", described("Roads of the east", 60)},
           {"Relief", described("Relief of the Alps", 7)},
           {"Untitled", "<ImageServiceInfo><Name>n</Name></ImageServiceInfo>"}});
  }
  ~SelectionScenarios() override {
    dialog.reset();
    setPlatform(nullptr);
  }

  void serve(const std::vector<ServiceText>& services) {
    server = std::make_shared<NamedServer>(serverInfo(services));
  }

  /// Shows the dialog as a host does; the visit runs in the open window.
  void visit(const std::function<void()>& actions, const std::string& extent = {}) {
    if (!dialog) dialog = queryInterface<IImageServicesDialog>(createObject("ImageServicesDialog"));
    ASSERT_EQ(dialog->Init("", server), boolean16True);
    bool ran = false;
    person->whenWindowAppears([&] {
      actions();
      ran = true;
    });
    EXPECT_EQ(dialog->ShowDialogEx(extent), boolean16True);
    EXPECT_TRUE(ran);
    EXPECT_FALSE(person->windowIsOpen());
  }

  std::unique_ptr<SelectionPerson> person;
  std::shared_ptr<TestSystem> system;
  std::shared_ptr<NamedServer> server;
  std::shared_ptr<IImageServicesDialog> dialog;
};

TEST_F(SelectionScenarios, TheWindowOpensOnTheServicesOfTheLocalServer) {
  visit([&] {
    EXPECT_EQ(person->caption(), "Add Vor Lane Connection");
    EXPECT_EQ(person->serverText(), "127.0.0.1");
    EXPECT_EQ(person->rows(), (Texts{"Roads", "Relief", "Untitled"}));
    EXPECT_EQ(person->columns(), (Texts{"Name", "Geographic Region", "Pixel Source", "Pixel Unit",
                                        "Color Space", "Pixel Type", "Bit Depth", "Bands"}));
    EXPECT_EQ(person->cells("Relief"), (Texts{"Relief", "Alps", "Radar", "m", "RGB", "Byte", "8", "3"}));
    EXPECT_FALSE(person->isEnabled("uibtnok"));
    EXPECT_FALSE(person->isEnabled("Remove"));
    EXPECT_FALSE(person->isVisible("Check1"));
  });
}

TEST_F(SelectionScenarios, AWindowShownAgainWhileItsServerAnswersForTheFirstTimeOpensOnce) {
  server->duringCall = [&] {
    EXPECT_EQ(dialog->ShowDialog(), boolean16False);
    EXPECT_EQ(dialog->Status(), Form::alreadyOnShow);
  };
  visit([&] {
    EXPECT_EQ(person->rows(), (Texts{"Roads", "Relief", "Untitled"}));
    EXPECT_EQ(dialog->ShowDialogEx(extentOfAlps), boolean16False);
    EXPECT_TRUE(person->windowIsOpen());
  });
  EXPECT_EQ(server->calls, 1);
}

TEST_F(SelectionScenarios, ADoubleClickEntersAFolderAndBackspaceGoesUp) {
  visit([&] {
    person->doubleClickRow("Roads");
    EXPECT_EQ(person->rows(), (Texts{"2004"}));
    person->doubleClickRow("2004");
    EXPECT_EQ(person->rows(), (Texts{"East", "West"}));
    person->pressBackspaceInList();
    EXPECT_EQ(person->rows(), (Texts{"2004"}));
    person->pressBackspaceInList();
    EXPECT_EQ(person->rows(), (Texts{"Roads", "Relief", "Untitled"}));
    person->pressBackspaceInList();
    EXPECT_EQ(person->rows(), (Texts{"Roads", "Relief", "Untitled"}));
    EXPECT_TRUE(person->selectedList().empty());
  });
}

TEST_F(SelectionScenarios, AServiceWithTheNameOfAFolderOpensTheFolderAndItsPathIsKept) {
  serve({{"Roads", described("Roads", 6)},
         {"Roads/West", described("Roads of the west", 6)},
         {"Roads/Roads/Old", described("Old roads", 6)}});
  visit([&] {
    EXPECT_EQ(person->rows(), (Texts{"Roads", "Roads"}));
    person->doubleClickLastRow("Roads");
    EXPECT_EQ(person->rows(), (Texts{"Roads", "West"}));
    EXPECT_TRUE(person->selectedList().empty());
    person->doubleClickRow("West");
    EXPECT_EQ(person->selectedList(), (Texts{"ImageService://127.0.0.1/Roads/West"}));
    person->clickRow("West");
    EXPECT_EQ(person->title(), "Roads of the west");
    person->doubleClickRow("Roads");
    person->doubleClickRow("Old");
    EXPECT_EQ(person->selectedList().back(), "ImageService://127.0.0.1/Roads/Roads/Old");
    person->pressBackspaceInList();
    person->pressBackspaceInList();
    EXPECT_EQ(person->rows(), (Texts{"Roads", "Roads"}));
    person->clickRow("Roads");
    person->clickButton("SelectButton");
    EXPECT_EQ(person->selectedList().back(), "ImageService://127.0.0.1/Roads");
  });
}

TEST_F(SelectionScenarios, EnterInTheListEntersAFolderToo) {
  visit([&] {
    person->clickRow("Roads");
    person->pressEnterInList();
    EXPECT_EQ(person->rows(), (Texts{"2004"}));
  });
}

TEST_F(SelectionScenarios, OkGivesTheReferencesOfTheSelectedServicesAndSavesTheServer) {
  visit([&] {
    person->doubleClickRow("Relief");
    person->doubleClickRow("Roads");
    person->doubleClickRow("2004");
    person->clickRow("West");
    person->clickButton("SelectButton");
    EXPECT_EQ(person->selectedList(),
              (Texts{"ImageService://127.0.0.1/Relief", "ImageService://127.0.0.1/Roads/2004/West"}));
    EXPECT_TRUE(person->isEnabled("uibtnok"));
    person->clickButton("uibtnok");
  });
  EXPECT_EQ(dialog->GetSelectedServices(),
            "<SelectedImageServices><Name>ImageService://127.0.0.1/Relief</Name>"
            "<Name>ImageService://127.0.0.1/Roads/2004/West</Name></SelectedImageServices>");
  const std::string settings = system->readFile("C:\\Documents\\Ostrel\\Vor Lane\\VLClientUI.VLConfig.Xml");
  EXPECT_NE(settings.find("<ServerName>127.0.0.1</ServerName></MruServers>"), std::string::npos) << settings;
}

TEST_F(SelectionScenarios, AServiceIsAddedOnceHoweverOftenItIsChosen) {
  visit([&] {
    person->clickRow("Relief");
    person->clickButton("SelectButton");
    person->clickButton("SelectButton");
    person->doubleClickRow("Relief");
    EXPECT_EQ(person->selectedList(), (Texts{"ImageService://127.0.0.1/Relief"}));
  });
}

TEST_F(SelectionScenarios, SelectWithNoRowClickedAddsNothing) {
  visit([&] {
    person->clickButton("SelectButton");
    EXPECT_TRUE(person->selectedList().empty());
    EXPECT_FALSE(person->isEnabled("uibtnok"));
  });
}

TEST_F(SelectionScenarios, AClickShowsTheTitleOrThatThereIsNone) {
  visit([&] {
    person->clickRow("Relief");
    EXPECT_EQ(person->title(), "Relief of the Alps");
    person->clickRow("Untitled");
    EXPECT_EQ(person->title(), "Title not defined for this service");
    person->doubleClickRow("Roads");
    person->doubleClickRow("2004");
    person->clickRow("West");
    EXPECT_EQ(person->title(), "Roads of the west");
  });
}

TEST_F(SelectionScenarios, ASilentServerShowsItsMessageRowAndLeavesTheBoxAlone) {
  visit([&] {
    person->typeServer("silent");
    EXPECT_EQ(person->rows(), (Texts{"Roads", "Relief", "Untitled"}));
    person->pressEnterInServerBox();
    EXPECT_EQ(person->rows(), (Texts{"(Server not found)"}));
    EXPECT_EQ(person->serverText(), "silent");
    EXPECT_EQ(person->serverEntries(), (Texts{"127.0.0.1"}));
    EXPECT_FALSE(person->isEnabled("SelectButton"));
    EXPECT_FALSE(person->isEnabled("Info"));
    person->doubleClickRow("(Server not found)");
    EXPECT_TRUE(person->selectedList().empty());
  });
}

TEST_F(SelectionScenarios, AServerThatAnswersGoesToTheTopOfTheBox) {
  visit([&] {
    person->typeServer("maps.example");
    person->pressEnterInServerBox();
    EXPECT_EQ(person->serverEntries(), (Texts{"maps.example", "127.0.0.1"}));
    EXPECT_EQ(person->serverText(), "maps.example");
    person->pickServer(1);
    EXPECT_EQ(person->serverEntries(), (Texts{"127.0.0.1", "maps.example"}));
    person->doubleClickRow("Relief");
    EXPECT_EQ(person->selectedList(), (Texts{"ImageService://127.0.0.1/Relief"}));
    person->clickButton("uibtnok");
  });
  visit([&] { EXPECT_EQ(person->serverEntries(), (Texts{"127.0.0.1", "maps.example"})); });
}

TEST_F(SelectionScenarios, TheFilterKeepsServicesInTheViewAfterItIsTicked) {
  visit(
      [&] {
        EXPECT_TRUE(person->isVisible("Check1"));
        person->doubleClickRow("Roads");
        person->doubleClickRow("2004");
        EXPECT_EQ(person->rows(), (Texts{"East", "West"}));
        person->clickButton("Check1");
        EXPECT_EQ(person->rows(), (Texts{"Roads", "Relief", "Untitled"}));
        person->doubleClickRow("Roads");
        person->doubleClickRow("2004");
        EXPECT_EQ(person->rows(), (Texts{"West"}));
        person->clickButton("Check1");
        person->doubleClickRow("Roads");
        person->doubleClickRow("2004");
        EXPECT_EQ(person->rows(), (Texts{"East", "West"}));
      },
      extentOfAlps);
}

TEST_F(SelectionScenarios, AFilterThatRemovesEveryServiceShowsTheEmptyRow) {
  serve({{"East", described("East", 60)}});
  visit(
      [&] {
        person->clickButton("Check1");
        EXPECT_EQ(person->rows(), (Texts{"(empty)"}));
        EXPECT_TRUE(person->isEnabled("SelectButton"));
      },
      extentOfAlps);
}

TEST_F(SelectionScenarios, RemoveTakesAdjacentSelectedEntriesAndDisablesOkWithTheLast) {
  visit([&] {
    person->doubleClickRow("Relief");
    person->doubleClickRow("Untitled");
    person->selectEntries({0, 1});
    EXPECT_TRUE(person->isEnabled("Remove"));
    person->clickButton("Remove");
    EXPECT_TRUE(person->selectedList().empty());
    EXPECT_FALSE(person->isEnabled("Remove"));
    EXPECT_FALSE(person->isEnabled("uibtnok"));
  });
}

TEST_F(SelectionScenarios, AFileIsPickedByItsEnding) {
  visit([&] {
    person->chooseFile("C:\\Data\\north.VLRef");
    person->clickButton("Browse");
    person->chooseFile("C:\\Data\\Mosaic.vldef");
    person->clickButton("Browse");
    person->chooseFile("C:\\Data\\notes.txt");
    person->clickButton("Browse");
    person->clickButton("uibtnok");
  });
  EXPECT_EQ(dialog->GetSelectedServices(),
            "<SelectedImageServices><Name>C:\\Data\\north.VLRef</Name>"
            "<Name>VLDef://C:\\Data\\Mosaic.vldef</Name></SelectedImageServices>");
}

TEST_F(SelectionScenarios, TheInformationWindowTellsOfTheClickedService) {
  visit([&] {
    bool seen = false;
    person->whenInformationAppears([&seen] { seen = true; });
    person->clickRow("Relief");
    person->clickButton("Info");
    EXPECT_TRUE(seen);
    const Texts lines = person->information();
    EXPECT_NE(
        std::ranges::find_if(lines, [](const auto& line) { return line.ends_with("|Relief of the Alps"); }),
        lines.end());
    EXPECT_NE(std::ranges::find_if(lines, [](const auto& line) { return line.ends_with("|RGB"); }),
              lines.end());
  });
}

TEST_F(SelectionScenarios, AMissingDefinitionFileIsToldInPlaceOfTheInformation) {
  std::filesystem::remove(system->nativeFile("C:\\Program\\VLClient.Xfdef"));
  visit([&] {
    person->clickRow("Relief");
    person->clickButton("Info");
  });
  ASSERT_EQ(person->messages().size(), 1U);
  EXPECT_TRUE(person->messages().front().starts_with("Error|The file: '"));
  EXPECT_TRUE(person->messages().front().ends_with("VLClient.Xfdef' is missing. Cannot show information."));
}

TEST_F(SelectionScenarios, CancelAndTheCloseBoxLeaveNothing) {
  for (const bool byButton : {true, false}) {
    visit([&] {
      person->doubleClickRow("Relief");
      if (byButton) {
        person->clickButton("uibtncancel");
      } else {
        person->closeByFrame();
      }
    });
    EXPECT_EQ(dialog->GetSelectedServices(), "");
  }
  EXPECT_FALSE(std::filesystem::exists(
      system->nativeFile("C:\\Documents\\Ostrel\\Vor Lane\\VLClientUI.VLConfig.Xml")));
}

TEST_F(SelectionScenarios, CtrlF1OpensTheHelpPageOfTheWindow) {
  visit([&] { person->pressCtrlF1InServerBox(); });
  EXPECT_EQ(system->launched,
            (Texts{"hh.exe C:\\Home\\Help\\Vorlane_Clients.chm::/Adding_an_Image_Service.htm"}));
}

TEST_F(SelectionScenarios, EachShowAsksTheServerAnewAndBeginsWithAnEmptySelectedList) {
  visit([&] { person->doubleClickRow("Relief"); });
  const int calls = server->calls;
  visit([&] { EXPECT_TRUE(person->selectedList().empty()); });
  EXPECT_EQ(server->calls, calls + 1);
}

}  // namespace

}  // namespace vlclientui::test
