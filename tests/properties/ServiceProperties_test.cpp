#include "properties/ServiceProperties.h"

#include <gmock/gmock.h>

#include "properties/PropertiesEngine.h"
#include "support/PropertiesFixture.h"

namespace vlclientui::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* failureText =
    "Cannot show service properties.Unable to retrieve information from the xml.";

class ServicePropertiesPage : public PropertiesFixture {
 protected:
  ServicePropertiesPage() {
    page->myImageServiceObject = service;
    threadState().gServicePropertiesXml = service->properties;
  }
  ~ServicePropertiesPage() override { page.reset(); }

  [[nodiscard]] const std::vector<std::string>& engineCalls() const { return plexa->record->calls; }
  [[nodiscard]] static std::string& properties() { return threadState().gServicePropertiesXml; }
  void notify(const std::string& control, const std::string& value) const {
    const auto engine = page->plexaUtil;
    ASSERT_TRUE(engine);
    engine->Notify.raise(*engine, {"Change", control, value, "", 0});
  }
  /// Edits the document to this as a person does, shown or not yet committed.
  void edit(const std::string& children) const { plexa->record->resultXml = propertiesXml(children); }

  std::shared_ptr<ServiceProperties> page = std::make_shared<ServiceProperties>(*toolkit);
};

class SavedProperties : public ServicePropertiesPage {
 protected:
  SavedProperties() { page->load(); }
};

TEST_F(ServicePropertiesPage, HasItsThreeControls) {
  const auto& controls = page->controls();
  EXPECT_EQ(controls.Frame1.caption(), "");
  EXPECT_EQ(controls.SaveAs.caption(), "&Save As");
  EXPECT_EQ(controls.SaveAs.toolTip(), "Save as an xml file.");
  EXPECT_EQ(controls.ErrorLabel.caption(), "Label1");
  EXPECT_FALSE(controls.ErrorLabel.visible());
}

TEST_F(ServicePropertiesPage, LoadsItsEngineIntoTheFrame) {
  page->load();
  const auto frame = toolkit->windowOf(page->controls().Frame1);
  ASSERT_NE(frame, 0);
  const std::string width = std::to_string(6600 / 15 - 10);
  EXPECT_THAT(
      engineCalls(),
      ElementsAre("1.EmbeddedMode true", "1.AttributeDefinition " + page->myXADefBody,
                  "1.FormDefinition " + page->myXFDefBody, "1.DataXml " + service->properties,
                  "1.DataRootPath //", "1.ParentWindow " + std::to_string(frame), "1.Top 8", "1.Left 5",
                  "1.Width " + width, "1.Height 300", "1.Show", "1.FindControl @MosaicMethod"));
}

TEST_F(ServicePropertiesPage, AsksTheServiceForNothingButTheDefinitions) {
  page->load();
  EXPECT_THAT(service->calls, ElementsAre("GetDefinition 2", "GetDefinition 1"));
}

TEST_F(ServicePropertiesPage, ShowsTheThreadsDocumentAndNotTheServices) {
  properties() = propertiesXml("<Held/>");
  page->load();
  EXPECT_THAT(engineCalls(), testing::Contains("1.DataXml " + propertiesXml("<Held/>")));
}

TEST_F(ServicePropertiesPage, MakesTheSpatialReferenceReadOnlyAsTold) {
  service->definitions[2] = definitionXml("XFDef", "<Srs Srs_READONLY_=\"\"/>");
  page->mySrsReadOnly = true;
  page->load();
  EXPECT_THAT(page->myXFDefBody, HasSubstr("Srs_READONLY_=\"True\""));
}

TEST_F(ServicePropertiesPage, WithoutAServiceTriesEmptyDefinitions) {
  page->myImageServiceObject.reset();
  plexa->record->showAnswer = false;
  page->load();
  EXPECT_THAT(engineCalls(), AllOf(testing::Contains("1.AttributeDefinition"),
                                   testing::Contains("1.FormDefinition"), testing::Contains("1.Show")));
  EXPECT_EQ(page->controls().ErrorLabel.caption(), failureText);
  EXPECT_TRUE(page->controls().ErrorLabel.visible());
}

TEST_F(ServicePropertiesPage, TellsThatTheEngineCouldNotShowIt) {
  plexa->record->showAnswer = false;
  page->load();
  EXPECT_EQ(page->controls().ErrorLabel.caption(), failureText);
  EXPECT_TRUE(page->controls().ErrorLabel.visible());
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(ServicePropertiesPage, StaysSilentWhenAnyCallOfTheServiceOrTheEngineFails) {
  for (std::size_t call = 1; call <= 2; ++call) {
    service->calls.clear();
    service->failAtCall = call;
    ServiceProperties silent(*toolkit);
    silent.myImageServiceObject = service;
    EXPECT_NO_THROW(silent.load());
    EXPECT_EQ(silent.plexaUtil, nullptr);
    EXPECT_FALSE(silent.controls().ErrorLabel.visible());
  }
  service->failAtCall = 0;
  for (std::size_t call = 1; call <= 12; ++call) {
    plexa->record->calls.clear();
    plexa->record->failAtCall = call;
    ServiceProperties silent(*toolkit);
    silent.myImageServiceObject = service;
    EXPECT_NO_THROW(silent.load());
    EXPECT_EQ(engineCalls().size(), call);
    EXPECT_FALSE(silent.controls().ErrorLabel.visible());
  }
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

TEST_F(ServicePropertiesPage, SurvivesAnObjectThatIsNoService) {
  page->myImageServiceObject = std::make_shared<FakeStranger>();
  EXPECT_NO_THROW(page->load());
  EXPECT_EQ(page->plexaUtil, nullptr);
}

TEST_F(ServicePropertiesPage, LoadedAgainDetachesTheOldEngineFirst) {
  page->load();
  page->unload();
  const std::size_t before = engineCalls().size();
  page->load();
  const auto then = plexa->callsFrom(before);
  EXPECT_EQ(then.at(0), "1.ParentWindow 0");
  EXPECT_EQ(then.at(1), "1.released");
  EXPECT_EQ(then.at(2), "2.EmbeddedMode true");
}

TEST_F(ServicePropertiesPage, ReleasedDetachesItsEngineAndSavesNothing) {
  page->load();
  edit("<Edited/>");
  const std::size_t before = engineCalls().size();
  page.reset();
  EXPECT_THAT(plexa->callsFrom(before), ElementsAre("1.ParentWindow 0", "1.released"));
  EXPECT_EQ(properties(), service->properties);
}

TEST_F(ServicePropertiesPage, ReleasedSurvivesAnEngineThatCannotBeDetached) {
  page->load();
  plexa->record->failAt = "ParentWindow";
  EXPECT_NO_THROW(page.reset());
}

TEST_F(ServicePropertiesPage, UnloadedSaves) {
  page->load();
  edit("<Edited/>");
  page->unload();
  EXPECT_EQ(properties(), propertiesXml("<Edited/><ViewPointY/><ViewPointX/>"));
}

TEST_F(ServicePropertiesPage, FollowsAChangeOfTheMosaicMethod) {
  plexa->record->subControls["@ViewPointControl"] = {};
  page->load();
  const auto& button = plexa->record->subControls.at("@ViewPointControl");
  notify("MosaicMethod", "Viewpoint");
  EXPECT_EQ(button.enabled, true);
  notify("MosaicMethod", "Lock Raster");
  EXPECT_EQ(button.enabled, false);
  notify("MosaicMethod", "Closest to Viewpoint");
  EXPECT_EQ(button.enabled, true);
}

TEST_F(ServicePropertiesPage, IgnoresChangesOfOtherFields) {
  plexa->record->subControls["@ViewPointControl"] = {};
  page->load();
  const std::size_t before = engineCalls().size();
  notify("TileOrderField", "Viewpoint");
  notify("mosaicmethod", "Viewpoint");
  notify("@MosaicMethod", "Viewpoint");
  EXPECT_EQ(engineCalls().size(), before);
}

TEST_F(ServicePropertiesPage, StaysSilentWhenTheEngineFailsInsideANotification) {
  page->load();
  plexa->record->failAt = "FindControl";
  EXPECT_NO_THROW(notify("MosaicMethod", "Viewpoint"));
}

TEST_F(ServicePropertiesPage, OpensTheViewpointDialogOfAFreshObject) {
  page->load();
  service->properties = propertiesXml("<FromService/>");
  service->calls.clear();
  std::vector<std::string> shown;
  ObjectPtr shownService;
  toolkit->scriptModal([&](Form& form) {
    shown.push_back(form.formName());
    shownService = dynamic_cast<ViewPointDialogForm&>(form).myImageServiceObject;
  });
  notify("ViewPointControl", "");
  EXPECT_THAT(shown, ElementsAre("ViewPointDialogForm"));
  EXPECT_EQ(shownService, service);
  // The fresh object's Init has read the thread's documents anew.
  EXPECT_EQ(properties(), propertiesXml("<FromService/>"));
  const std::vector<std::string> first(service->calls.begin(), service->calls.begin() + 4);
  EXPECT_THAT(first, ElementsAre("GetDefinition 1", "GetDefinition 2", "ServiceProperties",
                                 "GetImageMetadata 'Basic'"));
}

TEST_F(ServicePropertiesPage, AsksANewerServiceForDefinitionsOneAndTwoBehindTheViewpointButton) {
  makeNewer();
  page->load();
  service->calls.clear();
  notify("ViewPointControl", "");
  EXPECT_EQ(service->calls.at(0), "GetDefinition 1");
  EXPECT_EQ(service->calls.at(1), "GetDefinition 2");
  EXPECT_EQ(status(), "");
}

TEST_F(ServicePropertiesPage, OpensTheViewpointDialogAlsoWhenItsObjectCannotInitialize) {
  makeNewer();
  page->load();
  service->failAt = "GetDefinition";
  bool shown = false;
  toolkit->scriptModal([&shown](Form&) { shown = true; });
  notify("ViewPointControl", "");
  EXPECT_TRUE(shown);
  EXPECT_EQ(status(), "the service fails at GetDefinition");
}

TEST_F(ServicePropertiesPage, MayBeLetGoWhileTheViewpointDialogIsOpen) {
  page->load();
  toolkit->scriptModal([this](Form&) { page.reset(); });
  EXPECT_NO_FATAL_FAILURE(notify("ViewPointControl", ""));
  EXPECT_EQ(plexa->engine(1), nullptr);
}

TEST_F(ServicePropertiesPage, GivesTheEditedDocumentWithoutACommit) {
  EXPECT_EQ(page->GetGuiUpdates(), "");
  page->load();
  edit("<Edited/>");
  const std::size_t before = engineCalls().size();
  EXPECT_EQ(page->GetGuiUpdates(), propertiesXml("<Edited/>"));
  EXPECT_THAT(plexa->callsFrom(before), ElementsAre("1.GetResultXml"));
  plexa->record->failAt = "GetResultXml";
  EXPECT_EQ(page->GetGuiUpdates(), "");
}

TEST_F(ServicePropertiesPage, RefreshesTheEngineInPlace) {
  EXPECT_FALSE(page->RefreshTheForm());
  page->load();
  properties() = propertiesXml("<New/>");
  const std::size_t before = engineCalls().size();
  EXPECT_FALSE(page->RefreshTheForm());
  EXPECT_THAT(plexa->callsFrom(before), ElementsAre("1.DataXml " + propertiesXml("<New/>"), "1.Commit"));
  plexa->record->failAt = "DataXml";
  EXPECT_FALSE(page->RefreshTheForm());
}

TEST_F(ServicePropertiesPage, ReleasesItsEngineWithTheEdits) {
  page->load();
  edit("<Edited/>");
  const std::size_t before = engineCalls().size();
  page->ReleaseEngine();
  EXPECT_THAT(plexa->callsFrom(before),
              ElementsAre("1.Commit", "1.GetResultXml", "1.ParentWindow 0", "1.released"));
  EXPECT_EQ(properties(), propertiesXml("<Edited/>"));
  EXPECT_EQ(page->plexaUtil, nullptr);
  EXPECT_NO_THROW(page->ReleaseEngine());
}

TEST_F(ServicePropertiesPage, StoresAViewpointInTheThreadsDocument) {
  threadState().gViewPointX = "published";
  threadState().gLockImageID = "7";
  properties() = propertiesXml("<ViewPointX/>");
  page->StoreViewPoint("1", "2");
  EXPECT_EQ(properties(), propertiesXml("<ViewPointX>1</ViewPointX><ViewPointY>2</ViewPointY>"));
  EXPECT_EQ(threadState().gLockImageID, "7");
}

TEST_F(SavedProperties, CommitFirstAndAreReadThen) {
  const std::size_t before = engineCalls().size();
  EXPECT_FALSE(page->Save());
  EXPECT_THAT(plexa->callsFrom(before), ElementsAre("1.Commit", "1.GetResultXml"));
}

TEST_F(SavedProperties, HoldThePublishedViewpointYBeforeX) {
  edit("<MosaicMethod>A</MosaicMethod>");
  threadState().gViewPointX = "10.5";
  threadState().gViewPointY = "20.25";
  page->Save();
  EXPECT_EQ(properties(), propertiesXml("<MosaicMethod>A</MosaicMethod><ViewPointY>20.25</ViewPointY>"
                                        "<ViewPointX>10.5</ViewPointX>"));
}

TEST_F(SavedProperties, HoldAnEmptyViewpointOverAFormerOne) {
  edit("<ViewPointX>1</ViewPointX><ViewPointY>2</ViewPointY>");
  page->Save();
  EXPECT_EQ(properties(), propertiesXml("<ViewPointX/><ViewPointY/>"));
}

TEST_F(SavedProperties, HoldTheLockOverTheMethodThatThePersonChose) {
  edit("<MosaicMethod>By Attribute</MosaicMethod><LockImageID>1</LockImageID>");
  threadState().gLockImageID = "42";
  page->Save();
  EXPECT_THAT(properties(),
              HasSubstr("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>42</LockImageID>"));
}

TEST_F(SavedProperties, KeepTheMethodWithoutALock) {
  edit("<MosaicMethod>By Attribute</MosaicMethod><LockImageID>1</LockImageID>");
  page->Save();
  EXPECT_THAT(properties(),
              HasSubstr("<MosaicMethod>By Attribute</MosaicMethod><LockImageID>1</LockImageID>"));
}

TEST_F(SavedProperties, KeepTheMethodWhenThereIsNoPlaceForTheLock) {
  edit("<MosaicMethod>By Attribute</MosaicMethod>");
  threadState().gLockImageID = "42";
  page->Save();
  EXPECT_THAT(properties(), HasSubstr("<MosaicMethod>By Attribute</MosaicMethod>"));
  EXPECT_THAT(properties(), Not(HasSubstr("LockImageID")));
  EXPECT_EQ(threadState().gLockImageID, "");
}

TEST_F(SavedProperties, TakeALockWithoutAMethod) {
  edit("<LockImageID/>");
  threadState().gLockImageID = "42";
  page->Save();
  EXPECT_THAT(properties(), HasSubstr("<LockImageID>42</LockImageID>"));
  EXPECT_THAT(properties(), Not(HasSubstr("MosaicMethod")));
}

TEST_F(SavedProperties, TakeALockOnce) {
  edit("<MosaicMethod>A</MosaicMethod><LockImageID>1</LockImageID>");
  threadState().gLockImageID = "42";
  page->Save();
  EXPECT_EQ(threadState().gLockImageID, "");
  page->Save();
  EXPECT_THAT(properties(), HasSubstr("<MosaicMethod>A</MosaicMethod><LockImageID>1</LockImageID>"));
}

TEST_F(SavedProperties, WithoutAnEngineTakeTheViewpointAloneAndUseTheLockUp) {
  ServiceProperties unshown(*toolkit);
  properties() = propertiesXml("<MosaicMethod>A</MosaicMethod><LockImageID>1</LockImageID>");
  threadState().gLockImageID = "42";
  EXPECT_FALSE(unshown.Save());
  EXPECT_EQ(properties(), propertiesXml("<MosaicMethod>A</MosaicMethod><LockImageID>1</LockImageID>"
                                        "<ViewPointY/><ViewPointX/>"));
  EXPECT_EQ(threadState().gLockImageID, "");
}

TEST_F(SavedProperties, KeepWhatWasWrittenBeforeAFailure) {
  threadState().gLockImageID = "42";
  const std::string before = properties();
  for (const char* const operation : {"Commit", "GetResultXml"}) {
    plexa->record->failAt = operation;
    EXPECT_FALSE(page->Save());
    EXPECT_EQ(properties(), before);
    EXPECT_EQ(threadState().gLockImageID, "42");
  }
}

class DefinitionFile : public ServicePropertiesPage {
 protected:
  DefinitionFile() { page->load(); }
  void click() const { page->controls().SaveAs.userClicks(); }
};

TEST_F(DefinitionFile, IsWrittenByTheService) {
  toolkit->chooseFile("C:\\Data\\my.VLRef");
  click();
  EXPECT_THAT(service->savedFiles, ElementsAre("C:\\Data\\my.VLRef"));
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_F(DefinitionFile, IsAskedForWithTheTwoKindsAndAnOverwritePrompt) {
  click();
  ASSERT_EQ(toolkit->saveDialogs().size(), 1U);
  const FileDialog& asked = toolkit->saveDialogs().front();
  EXPECT_EQ(asked.filter, "VLRef (*.VLRef)| *.VLRef|Xml (*.xml) | *.xml");
  EXPECT_TRUE(asked.asksBeforeOverwriting);
  EXPECT_EQ(asked.fileName, "");
}

TEST_F(DefinitionFile, IsNotWrittenAfterACancel) {
  click();
  EXPECT_THAT(service->savedFiles, IsEmpty());
}

TEST_F(DefinitionFile, ThatCouldNotBeWrittenIsTold) {
  service->saveAnswer = false;
  toolkit->chooseFile("C:\\Data\\my.VLRef");
  click();
  EXPECT_THAT(toolkit->messages(),
              ElementsAre(MessageBox{"Could not save it to 'C:\\Data\\my.VLRef'.", "Error saving file",
                                     MessageIcon::Critical, MessageButtons::Ok}));
}

TEST_F(DefinitionFile, IsAskedForWithAnEmptyNameEachTime) {
  toolkit->chooseFile("C:\\Data\\my.VLRef");
  click();
  click();
  EXPECT_EQ(toolkit->saveDialogs().at(1).fileName, "");
}

TEST_F(DefinitionFile, FailsSilentlyWithTheServiceOrWithoutOne) {
  service->failAt = "SaveProperties";
  toolkit->chooseFile("C:\\a.xml");
  click();
  page->myImageServiceObject.reset();
  toolkit->chooseFile("C:\\a.xml");
  click();
  EXPECT_EQ(toolkit->saveDialogs().size(), 2U);
  EXPECT_THAT(toolkit->messages(), IsEmpty());
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
