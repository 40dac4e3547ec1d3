// What leaves the one-window dialog: its lock, its outcome, its files and the export.

#include <filesystem>

#include <gmock/gmock.h>

#include "export/ExportDialog.h"
#include "properties/OneWindowDialogFixture.h"

namespace vlclientui::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* savedFile = "C:\\Data\\my.xml";

class LockOfTheWindow : public OneWindowDialog {
 protected:
  void expectLockOf(const std::string& id, const std::string& xml) const {
    EXPECT_EQ(form().myLockImageID, id);
    EXPECT_THAT(xml,
                HasSubstr("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>" + id + "</LockImageID>"));
  }
};

TEST_F(LockOfTheWindow, GoesIntoThePropertiesOfTheWindowAlone) {
  show([this] {
    lock();
    expectLockOf("12", form().myPropertiesXml);
    EXPECT_EQ(threadState().gLockImageID, "");
  });
  EXPECT_EQ(published(), service->properties);
}

TEST_F(LockOfTheWindow, TellsNobody) {
  const auto callback = std::make_shared<FakePropertiesCallback>();
  extension()->SetCallback(callback);
  show([this] { lock(); });
  EXPECT_THAT(callback->told, IsEmpty());
}

TEST_F(LockOfTheWindow, LeavesOutTheStarOfAHiddenRaster) {
  show([this] {
    showRasters();
    controls().metadata.RasterList.userSelects(1);
    EXPECT_EQ(controls().metadata.RasterList.text(), "* south - 2");
    controls().metadata.Command7.userClicks();
    expectLockOf("2", form().myPropertiesXml);
  });
}

TEST_F(LockOfTheWindow, MakesNoPlaceForItself) {
  show([this] {
    edit("<MosaicMethod>By Attribute</MosaicMethod>");
    lock();
    EXPECT_THAT(form().myPropertiesXml,
                AllOf(HasSubstr("<MosaicMethod>LockRaster</MosaicMethod>"), Not(HasSubstr("LockImageID"))));
    edit("<LockImageID/>");
    pickTab(propertiesSide);
    lock();
    EXPECT_THAT(form().myPropertiesXml,
                AllOf(HasSubstr("<LockImageID>12</LockImageID>"), Not(HasSubstr("MosaicMethod"))));
  });
}

TEST_F(LockOfTheWindow, StopsWithoutARaster) {
  show([this] {
    pickTab(metadataSide);
    const std::string before = form().myPropertiesXml;
    controls().metadata.Command7.click.raise();
    EXPECT_EQ(form().myLockImageID, "");
    EXPECT_EQ(form().myPropertiesXml, before);
    EXPECT_THAT(toolkit->failures(), IsEmpty());
  });
}

TEST_F(LockOfTheWindow, StopsAtAnEmptyId) {
  service->metadata =
      imageXml("<Basic/>",
               "<Detailed><Rasters><Raster><Info><RasterId/><RasterName>north</RasterName></Info>"
               "</Raster></Rasters></Detailed>");
  show([this] {
    showRasters();
    ASSERT_EQ(controls().metadata.RasterList.count(), 1U);
    const std::string before = form().myPropertiesXml;
    form().myLockImageID = "kept";
    controls().metadata.Command7.click.raise();
    EXPECT_EQ(form().myLockImageID, "kept");
    EXPECT_EQ(form().myPropertiesXml, before);
  });
}

TEST_F(LockOfTheWindow, StopsWhenTheServiceOffersNoLock) {
  service->definitions[1] = attributeDefinitionXml("By Attribute");
  show([this] {
    lock();
    EXPECT_EQ(form().myLockImageID, "12");
    EXPECT_THAT(form().myPropertiesXml, Not(HasSubstr("LockRaster")));
  });
}

TEST_F(LockOfTheWindow, TakesTheOfferOfALockInAnyCase) {
  service->definitions[1] = attributeDefinitionXml("By Attribute|lock raster");
  show([this] {
    lock();
    expectLockOf("12", form().myPropertiesXml);
  });
}

TEST_F(LockOfTheWindow, GoesOnWhenTheDefinitionIsNoDocument) {
  show([this] {
    showRasters();
    service->definitions[1] = "<broken";
    controls().metadata.Command7.userClicks();
    expectLockOf("12", form().myPropertiesXml);
  });
}

TEST_F(LockOfTheWindow, StopsSilentlyWhenTheServiceFails) {
  show([this] {
    showRasters();
    service->failAt = "GetDefinition";
    controls().metadata.Command7.userClicks();
    EXPECT_EQ(form().myLockImageID, "12");
    EXPECT_THAT(form().myPropertiesXml, Not(HasSubstr("LockRaster")));
    EXPECT_THAT(toolkit->failures(), IsEmpty());
    service->failAt.clear();
  });
}

TEST_F(LockOfTheWindow, WithoutAServiceIsRememberedAndWrittenByOk) {
  beginWithoutService();
  newer()->ImageMetaDataXml(imageOf({{.id = "12.5"}}));
  EXPECT_EQ(show([this] {
              form().myPropertiesXml = propertiesXml("<MosaicMethod>Own</MosaicMethod><LockImageID/>");
              plexa->record->resultXml = form().myPropertiesXml;
              lock();
              EXPECT_EQ(form().myLockImageID, "12");
              EXPECT_THAT(form().myPropertiesXml, HasSubstr("<LockImageID/>"));
              clickOk();
            }),
            1);
  EXPECT_THAT(published(), AllOf(HasSubstr("<MosaicMethod>Own</MosaicMethod>"),
                                 HasSubstr("<LockImageID>12</LockImageID>")));
}

TEST_F(LockOfTheWindow, ReachesTheHostWithOk) {
  EXPECT_EQ(show([this] {
              lock();
              clickOk();
            }),
            1);
  EXPECT_THAT(published(), HasSubstr("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>12</LockImageID>"));
}

TEST_F(LockOfTheWindow, StaysInTheWindowAfterCancel) {
  EXPECT_EQ(show([this] {
              lock();
              clickCancel();
            }),
            0);
  EXPECT_EQ(published(), service->properties);
}

TEST_F(LockOfTheWindow, IsForgottenAtTheNextShow) {
  show([this] { lock(); });
  show([this] {
    EXPECT_EQ(form().myLockImageID, "");
    EXPECT_EQ(form().myLastTab, "Service Properties");
  });
}

class EndOfTheWindow : public OneWindowDialog {};

TEST_F(EndOfTheWindow, WithOkPublishesTheEdits) {
  EXPECT_EQ(show([this] {
              edit("<Edited/>");
              clickOk();
            }),
            1);
  EXPECT_EQ(published(), propertiesXml("<Edited/><ViewPointY>22</ViewPointY><ViewPointX>11</ViewPointX>"));
}

TEST_F(EndOfTheWindow, WithOkOverTheMetadataPublishesWhatWasCollectedBefore) {
  show([this] {
    edit("<Edited/>");
    pickTab(metadataSide);
    edit("<Later/>");
    clickOk();
  });
  EXPECT_THAT(published(), AllOf(HasSubstr("<Edited/>"), Not(HasSubstr("<Later/>"))));
}

TEST_F(EndOfTheWindow, WithOkAndNoLockBlanksTheIdOfTheLock) {
  show([this] { clickOk(); });
  EXPECT_THAT(published(), AllOf(HasSubstr("<LockImageID/>"), HasSubstr("By Attribute")));
}

TEST_F(EndOfTheWindow, WithOkMakesNoPlaceForALock) {
  service->properties = propertiesXml("<MosaicMethod/>");
  show([this] { clickOk(); });
  EXPECT_THAT(published(), Not(HasSubstr("LockImageID")));
}

TEST_F(EndOfTheWindow, WithOkRaisesNoEvent) {
  int raised = 0;
  form().OnOKClick.connect([&raised] { ++raised; });
  EXPECT_EQ(show([this] { clickOk(); }), 1);
  EXPECT_EQ(raised, 0);
}

TEST_F(EndOfTheWindow, WithOkComesAlsoWhenTheEngineFails) {
  EXPECT_EQ(show([this] {
              plexa->record->failAt = "Commit";
              clickOk();
            }),
            1);
  EXPECT_THAT(published(), AllOf(HasSubstr("By Attribute"), HasSubstr(helpBlock)));
}

TEST_F(EndOfTheWindow, WithCancelLeavesTheThreadsDocument) {
  EXPECT_EQ(show([this] {
              edit("<Edited/>");
              clickCancel();
              EXPECT_TRUE(form().myCancelPressed);
            }),
            0);
  EXPECT_EQ(published(), service->properties);
}

TEST_F(EndOfTheWindow, ByItsFrameCountsAsCancelAlsoAfterAnOk) {
  EXPECT_EQ(show([this] { clickOk(); }), 1);
  EXPECT_EQ(show([this] { form().userCloses(); }), 0);
}

TEST_F(EndOfTheWindow, LetsEveryEngineGo) {
  show([this] {
    showRasters();
    controls().metadata.TabStrip1.userSelects(1);
    controls().metadata.TabStrip1.userSelects(3);
    clickOk();
  });
  EXPECT_EQ(plexa->lastEngine(), nullptr);
  const auto& calls = plexa->record->calls;
  for (std::size_t number = 1; number <= plexa->madeCount(); ++number) {
    const std::string detached = std::to_string(number) + ".ParentWindow 0";
    EXPECT_THAT(calls, Contains(detached));
  }
}

TEST_F(EndOfTheWindow, LetsEveryEngineGoWithTheObject) {
  form().load();
  pickTab(metadataSide);
  dialog.reset();
  EXPECT_EQ(plexa->lastEngine(), nullptr);
}

class FilesOfTheWindow : public OneWindowDialog {
 protected:
  FilesOfTheWindow() { std::filesystem::create_directories(system->nativeFile("C:\\Data")); }
  [[nodiscard]] std::string saved() const { return system->readFile(savedFile); }
};

TEST_F(FilesOfTheWindow, AreAskedForWithTheTwoKindsAndAnOverwritePrompt) {
  show([this] { controls().SaveAs.userClicks(); });
  ASSERT_EQ(toolkit->saveDialogs().size(), 1U);
  const FileDialog& asked = toolkit->saveDialogs()[0];
  EXPECT_EQ(asked.filter, "VLRef (*.VLRef)| *.VLRef|Xml (*.xml) | *.xml");
  EXPECT_TRUE(asked.asksBeforeOverwriting);
  EXPECT_EQ(asked.fileName, "");
}

TEST_F(FilesOfTheWindow, HoldTheEditsAndAreNotWrittenByTheService) {
  show([this] {
    edit("<Edited/>");
    toolkit->chooseFile(savedFile);
    controls().SaveAs.userClicks();
    EXPECT_THAT(saved(), HasSubstr("<Edited/><ViewPointY>22</ViewPointY>"));
  });
  EXPECT_THAT(service->savedFiles, IsEmpty());
}

TEST_F(FilesOfTheWindow, CollectNothingAfterACanceledDialog) {
  show([this] { EXPECT_THAT(engineCallsDuring([this] { controls().SaveAs.userClicks(); }), IsEmpty()); });
}

TEST_F(FilesOfTheWindow, CollectNothingOverTheMetadata) {
  show([this] {
    edit("<Edited/>");
    pickTab(metadataSide);
    edit("<Later/>");
    toolkit->chooseFile(savedFile);
    controls().SaveAs.click.raise();
    EXPECT_THAT(saved(), AllOf(HasSubstr("<Edited/>"), Not(HasSubstr("<Later/>"))));
  });
}

TEST_F(FilesOfTheWindow, HoldALockThatThePropertiesHold) {
  show([this] {
    lock();
    toolkit->chooseFile(savedFile);
    controls().SaveAs.click.raise();
    EXPECT_THAT(saved(), HasSubstr("<LockImageID>12</LockImageID>"));
  });
}

TEST_F(FilesOfTheWindow, DoNotGetTheIdOfALockByThemselves) {
  show([this] {
    form().myLockImageID = "99";
    toolkit->chooseFile(savedFile);
    controls().SaveAs.userClicks();
    EXPECT_THAT(saved(), HasSubstr("<LockImageID>7</LockImageID>"));
  });
}

TEST_F(FilesOfTheWindow, ThatCannotBeWrittenAreNotTold) {
  show([this] {
    toolkit->chooseFile("C:\\Nowhere\\my.xml");
    controls().SaveAs.userClicks();
    EXPECT_THAT(toolkit->messages(), IsEmpty());
    EXPECT_THAT(toolkit->failures(), IsEmpty());
    EXPECT_TRUE(form().loaded());
  });
}

TEST_F(FilesOfTheWindow, AreAskedForWithAnEmptyNameEachTime) {
  show([this] {
    for (int pass = 0; pass < 2; ++pass) {
      toolkit->chooseFile(savedFile);
      controls().SaveAs.userClicks();
    }
  });
  EXPECT_EQ(toolkit->saveDialogs().back().fileName, "");
}

TEST_F(FilesOfTheWindow, OfTheHiddenButtonHoldTheUpdatedPropertiesOfTheObject) {
  show([this] {
    published() = propertiesXml("<OfTheThread/>");
    toolkit->chooseFile(savedFile);
    controls().Command1.click.raise();
    EXPECT_THAT(saved(), HasSubstr("<ViewPointX>11</ViewPointX>"));
  });
  const FileDialog& asked = toolkit->saveDialogs().back();
  EXPECT_EQ(asked.filter, "Xml (*.xml) | *.xml");
  EXPECT_FALSE(asked.asksBeforeOverwriting);
}

TEST_F(FilesOfTheWindow, OfTheHiddenButtonAskBeforeOverwritingNeverAlsoBehindTheOthers) {
  show([this] {
    controls().SaveAs.userClicks();
    controls().Command1.click.raise();
  });
  ASSERT_EQ(toolkit->saveDialogs().size(), 2U);
  EXPECT_TRUE(toolkit->saveDialogs().front().asksBeforeOverwriting);
  EXPECT_FALSE(toolkit->saveDialogs().back().asksBeforeOverwriting);
}

TEST_F(FilesOfTheWindow, OfTheHiddenButtonNeedTheObjectThatOpenedTheWindow) {
  toolkit->scriptModal([this](Form&) {
    toolkit->chooseFile(savedFile);
    controls().Command1.click.raise();
  });
  form().myDialogObject = nullptr;
  EXPECT_EQ(form().ShowMe(), 0);
  EXPECT_FALSE(std::filesystem::exists(system->nativeFile(savedFile)));
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

TEST_F(FilesOfTheWindow, OfTheHiddenButtonNeedAName) {
  show([this] { EXPECT_NO_THROW(controls().Command1.click.raise()); });
  EXPECT_FALSE(std::filesystem::exists(system->nativeFile(savedFile)));
}

TEST_F(FilesOfTheWindow, OfTheMetadataHoldTheFullImage) {
  show([this] {
    pickTab(metadataSide);
    toolkit->chooseFile(savedFile);
    controls().metadata.Save.userClicks();
    EXPECT_THAT(service->calls, Contains("GetImageMetadata 'Full'"));
    EXPECT_THAT(saved(), HasSubstr("<RasterName>north</RasterName>"));
  });
}

TEST_F(FilesOfTheWindow, AreAskedForByOneDialogWhichKeepsARefusedName) {
  show([this] {
    toolkit->chooseFile("C:\\Nowhere\\my.xml");
    controls().SaveAs.userClicks();
    pickTab(metadataSide);
    controls().metadata.Save.userClicks();
  });
  EXPECT_EQ(toolkit->saveDialogs().back().fileName, "C:\\Nowhere\\my.xml");
  EXPECT_EQ(toolkit->saveDialogs().back().filter, "Xml (*.xml) | *.xml");
}

class ExportOfTheWindow : public OneWindowDialog {};

TEST_F(ExportOfTheWindow, OpensTheExportDialogOnTheService) {
  show([this] {
    std::string shown;
    toolkit->scriptModal([&shown](Form& opened) { shown = opened.formName(); });
    controls().Command2.userClicks();
    EXPECT_EQ(shown, "ExportDialogForm");
    EXPECT_EQ(form().myExportDialog->myImageServiceObject, service);
    EXPECT_FALSE(form().myExportDialog->myClient);
  });
}

TEST_F(ExportOfTheWindow, MakesItsDialogOnce) {
  show([this] {
    EXPECT_FALSE(form().myExportDialog);
    controls().Command2.userClicks();
    const auto first = form().myExportDialog;
    controls().Command2.userClicks();
    EXPECT_EQ(form().myExportDialog, first);
  });
}

TEST_F(ExportOfTheWindow, FailsSilently) {
  show([this] {
    service->failAt = "GetImageMetadata";
    controls().Command2.userClicks();
    EXPECT_THAT(toolkit->failures(), IsEmpty());
    EXPECT_TRUE(form().loaded());
    service->failAt.clear();
  });
}

}  // namespace
}  // namespace vlclientui::test
