#include <filesystem>

#include <gmock/gmock.h>

#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class ExportFormats : public ExportFixture {
 protected:
  /// The name after a change to the format, from a name that another format has left alone.
  std::string nameUnder(const std::string& format, const std::string& name) {
    std::string result;
    show([&](ExportDialogForm&, ExportControl& control) {
      control.uiTxtFileName.setText(name);
      selectFormat(control, format);
      result = control.uiTxtFileName.text();
    });
    return result;
  }

  ExportControl alone{nullptr};
};

TEST_F(ExportFormats, SetWhatTheirRowSays) {
  struct Row {
    const char* entry;
    const char* tileSize;
    bool tiles;
    const char* quality;
    bool takesQuality;
    const char* toolTip;
    const char* name;
  };
  const Row rows[] = {
      {"PNG", "None", false, "0", false, "PNG", "a.PNG"},
      {"TIFF-JPEG", "256", true, "75", true, "Tiff - JPEG", "a.Tif"},
      {"TIFF-LZ77", "512", true, "75", true, "Tiff - LZ77", "a.Tif"},
      {"JPEG", "None", false, "80", true, "JPEG", "a.JPEG"},
      {"JP2", "None", false, "100", true, "JP2", "a.JP2"},
      {"TIFF-No Compression", "None", true, "0", false, "Tiff - No Compression", "a.Tif"},
  };
  show([&rows](ExportDialogForm&, ExportControl& control) {
    control.uiTxtFileName.setText("a.tif");
    for (const Row& row : rows) {
      selectFormat(control, row.entry);
      EXPECT_EQ(control.TileSizeCombo.text(), row.tileSize) << row.entry;
      EXPECT_EQ(control.TileSizeCombo.enabled(), row.tiles) << row.entry;
      EXPECT_EQ(control.uiTxtCompression.text(), row.quality) << row.entry;
      EXPECT_EQ(control.uiTxtCompression.enabled(), row.takesQuality) << row.entry;
      EXPECT_EQ(control.FormatCombo.toolTip(), row.toolTip) << row.entry;
      EXPECT_EQ(control.uiTxtFileName.text(), row.name) << row.entry;
    }
  });
}

TEST_F(ExportFormats, ResetQualityAndTileSizeAtEachChange) {
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "TIFF-JPEG");
    edit(control, control.uiTxtCompression, "10");
    control.TileSizeCombo.userSelects(1);
    selectFormat(control, "TIFF-LZ77");
    EXPECT_EQ(control.uiTxtCompression.text(), "75");
    EXPECT_EQ(control.TileSizeCombo.text(), "512");
    control.TileSizeCombo.userSelects(0);
    selectFormat(control, "TIFF-LZ77");  // the entry that is already selected
    EXPECT_EQ(control.TileSizeCombo.text(), "512");
  });
}

TEST_F(ExportFormats, MoveTheExtentToItsThirdEntryAndRecalculateTheEstimateOnly) {
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtGSDX.setText("stale");
    selectFormat(control, "TIFF-LZ77");
    EXPECT_EQ(control.MainCombo.index(), 2U);
    EXPECT_EQ(control.uiTxtMB.text(), "0.6");
    EXPECT_EQ(control.uiTxtGSDX.text(), "stale");
    EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
  });
}

TEST_F(ExportFormats, TakeTheRedFromTheQualityAndLeaveTheComplaint) {
  show([this](ExportDialogForm& window, ExportControl& control) {
    selectFormat(control, "JPEG");
    edit(control, control.uiTxtCompression, "101");
    selectFormat(control, "PNG");
    EXPECT_EQ(control.uiTxtCompression.text(), "0");
    EXPECT_EQ(control.uiTxtCompression.textColor(), TextColor::Normal);
    EXPECT_FALSE(control.uiTxtCompression.enabled());
    window.controls().Command1.userClicks();
    EXPECT_EQ(toolkit->messages().back().text,
              "The compression factor cannot be more than 100 and less than 0.");
  });
}

TEST_F(ExportFormats, OfAnEntryThatIsNoneTakeAnyQualityAndKeepNameToolTipAndFilter) {
  toolkit->chooseFile("C:\\out\\b.doc");
  show([this](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "PNG");
    control.OpenFile.userClicks();
    control.uiTxtFileName.setText("a.png");
    control.FormatCombo.addEntry("BMP");  // hosts can do so
    selectFormat(control, "BMP");
    EXPECT_EQ(control.TileSizeCombo.text(), "None");
    EXPECT_FALSE(control.TileSizeCombo.enabled());
    EXPECT_EQ(control.uiTxtCompression.text(), "100");
    EXPECT_TRUE(control.uiTxtCompression.enabled());
    EXPECT_EQ(control.FormatCombo.toolTip(), "PNG");
    EXPECT_EQ(control.uiTxtFileName.text(), "a.png");
    toolkit->chooseFile("C:\\out\\c.doc");
    control.OpenFile.userClicks();
    EXPECT_EQ(toolkit->saveDialogs().back().filter, "PNG (*.PNG) | *.PNG");
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\out\\c.doc");
  });
}

// Extensions.

TEST_F(ExportFormats, ReplaceWhateverExtensionTheNameHas) {
  EXPECT_EQ(nameUnder("PNG", "C:\\out.d\\image"), "C:\\out.d\\image.PNG");
  EXPECT_EQ(nameUnder("PNG", "C:\\out\\image"), "C:\\out\\image.PNG");
  EXPECT_EQ(nameUnder("JPEG", "image"), "image.JPEG");
  EXPECT_EQ(nameUnder("JP2", "image."), "image.JP2");
  EXPECT_EQ(nameUnder("TIFF-JPEG", "report.final.png"), "report.final.Tif");
  EXPECT_EQ(nameUnder("TIFF-LZ77", "a.tif"), "a.Tif");
  EXPECT_EQ(nameUnder("TIFF-LZ77", "C:\\a.b\\c.d"), "C:\\a.b\\c.Tif");
  EXPECT_EQ(nameUnder("PNG", ""), "");
  EXPECT_EQ(nameUnder("PNG", "C:\\"), "C:\\.PNG");
}

TEST_F(ExportFormats, ReplaceTheExtensionWhenTheNameIsLeft) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtFileName, "a.doc");
    EXPECT_EQ(control.uiTxtFileName.text(), "a.Tif");
    edit(control, control.uiTxtFileName, "");
    EXPECT_EQ(control.uiTxtFileName.text(), "");
  });
}

// The file dialog.

TEST_F(ExportFormats, OpenTheFileDialogWithTheirFilter) {
  const std::pair<const char*, const char*> filters[] = {{"TIFF-No Compression", "Tif (*.Tif) | *.Tif"},
                                                         {"TIFF-JPEG", "Tif (*.Tif) | *.Tif"},
                                                         {"TIFF-LZ77", "Tif (*.Tif) | *.Tif"},
                                                         {"JP2", "JP2 (*.JP2) | *.JP2"},
                                                         {"JPEG", "JPEG (*.JPEG) | *.JPEG"},
                                                         {"PNG", "PNG (*.PNG) | *.PNG"}};
  show([&](ExportDialogForm&, ExportControl& control) {
    for (const auto& [format, filter] : filters) {
      selectFormat(control, format);
      control.OpenFile.userClicks();
      EXPECT_EQ(toolkit->saveDialogs().back(),
                (FileDialog{"", filter, "Export image to:", "C:\\AppData\\Ostrel\\Vorlane\\"}))
          << format;
    }
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\AppData\\Ostrel\\Vor Lane\\Untitled.PNG");
  });
}

TEST_F(ExportFormats, KeepAKnownExtensionOfAChosenFileUntilTheNameIsLeft) {
  toolkit->chooseFile("C:\\out\\a.png");
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "TIFF-LZ77");
    control.OpenFile.userClicks();
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\out\\a.png");
    visit(control, control.uiTxtFileName);
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\out\\a.Tif");
  });
}

TEST_F(ExportFormats, AppendTheirExtensionToAChosenFileWithAnotherOrNone) {
  toolkit->chooseFile("C:\\out\\a.doc");
  toolkit->chooseFile("C:\\out\\a");
  toolkit->chooseFile("C:\\out\\a.JpEg");
  show([](ExportDialogForm&, ExportControl& control) {
    control.OpenFile.userClicks();
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\out\\a.doc.Tif");
    visit(control, control.uiTxtFileName);
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\out\\a.doc.Tif");
    control.OpenFile.userClicks();
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\out\\a.Tif");
    control.OpenFile.userClicks();
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\out\\a.JpEg");
  });
}

TEST_F(ExportFormats, BringAnEarlierChoiceBackWhenTheDialogIsCanceled) {
  toolkit->chooseFile("C:\\out\\a.tif");
  show([this](ExportDialogForm&, ExportControl& control) {
    control.OpenFile.userClicks();
    edit(control, control.uiTxtFileName, "C:\\other.tif");
    control.OpenFile.userClicks();
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\out\\a.tif");
    EXPECT_EQ(toolkit->saveDialogs().back().fileName, "C:\\out\\a.tif");
  });
}

// File helpers.

TEST_F(ExportFormats, StripAFileNameUpToTheLastBackslash) {
  EXPECT_EQ(ExportControl::StripFileName("C:\\a\\b.tif"), "C:\\a\\");
  EXPECT_EQ(ExportControl::StripFileName("C:\\a\\"), "C:\\a\\");
  EXPECT_EQ(ExportControl::StripFileName("b.tif"), "b.tif");
  EXPECT_EQ(ExportControl::StripFileName(""), "");
}

TEST_F(ExportFormats, MakeThePathOfAFolderStepByStep) {
  fs::create_directories(system->nativeFile("C:\\a"));
  alone.MakeDirPath("C:\\a\\b\\c");
  EXPECT_THAT(system->createdPaths, ElementsAre("C:\\a\\b\\", "C:\\a\\b\\c\\"));
  EXPECT_EQ(alone.DirExists("C:\\a\\b\\c"), boolean16True);
  alone.MakeDirPath("C:\\a\\b\\c\\");
  EXPECT_EQ(system->createdPaths.size(), 2U);
}

TEST_F(ExportFormats, EndSilentlyWhereAFolderCannotBeMade) {
  system->folderCreationWorks = false;
  alone.MakeDirPath("C:\\a\\b");
  EXPECT_THAT(system->createdPaths, ElementsAre("C:\\a\\"));
  alone.MakeDirPath("\\server\\share");
  EXPECT_EQ(system->createdPaths.size(), 1U);
  system->everythingFails = true;
  alone.MakeDirPath("C:\\a\\b");
}

TEST_F(ExportFormats, AskForAFileAndPrepareItsFolder) {
  system->writeFile("C:\\there\\a.Tif", "");
  EXPECT_EQ(alone.FExists("C:\\there\\a.Tif"), boolean16True);
  EXPECT_THAT(system->createdPaths, IsEmpty());
  EXPECT_EQ(alone.FExists("C:\\new\\folder\\a.Tif"), boolean16False);
  EXPECT_EQ(alone.DirExists("C:\\new\\folder"), boolean16True);
  EXPECT_EQ(alone.DirExists("C:\\there\\a.Tif"), boolean16False);
  EXPECT_EQ(alone.uiTxtFileName.text(), "");
}

TEST_F(ExportFormats, PutABareFileNameIntoTheRootOfDriveC) {
  alone.uiTxtFileName.setText("a.png");
  EXPECT_EQ(alone.FExists("a.png"), boolean16False);
  EXPECT_EQ(alone.uiTxtFileName.text(), "C:\\a.Tif");
  alone.uiTxtFileName.setText("C:\\out\\");
  EXPECT_EQ(alone.FExists("C:\\out\\"), boolean16False);
  EXPECT_EQ(alone.uiTxtFileName.text(), "C:\\C:\\out\\.Tif");
}

TEST_F(ExportFormats, LetAFailingSystemReachTheCallerOfTheQueries) {
  system->everythingFails = true;
  EXPECT_THROW(alone.FExists("C:\\a"), RuntimeFailure);
  EXPECT_THROW(static_cast<void>(alone.DirExists("C:\\a")), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::test
