#include "export/ExportControl.h"

#include <gmock/gmock.h>

#include "library/ClassFactory.h"
#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ExportControls : public ExportFixture {
 protected:
  ExportControl alone{nullptr};
};

TEST_F(ExportControls, AreMadeByTheClassFactory) {
  const ObjectPtr object = createObject("ExportControl");
  EXPECT_TRUE(dynamic_cast<ExportControl*>(object->queryInterface("_ExportControl")));
}

TEST_F(ExportControls, HaveTheirBoxesWithLabelsAndToolTips) {
  struct Row {
    const Control& control;
    const Label& label;
    const char* name;
    const char* caption;
    const char* toolTip;
  };
  const Row rows[] = {
      {alone.ExportMD, alone.uiLblExportMD, "ExportMD", "&Export Metadata XML:", ""},
      {alone.TileSizeCombo, alone.uiLblTileSize, "TileSizeCombo",
       "Tile Size:", "Size of internal tiles in the exported image for TIFF images only. "},
      {alone.uiTxtFileName, alone.uiLblFileName, "uiTxtFileName",
       "File Name:", "Path and name of the exported image. By default the name is \"Untitled\"."},
      {alone.uiTxtGSDY, alone.uiLblGSDY, "uiTxtGSDY",
       "Ground Pixel Size Y:", "Size of the pixels at the ground level in Y direction."},
      {alone.uiTxtRight, alone.uiLblRight, "uiTxtRight", "Right:", "Right-most X coordinate."},
      {alone.uiTxtBottom, alone.uiLblBottom, "uiTxtBottom", "Bottom:", "Bottom-most Y coordinate."},
      {alone.uiTxtTop, alone.uiLblTop, "uiTxtTop", "Top:", "Top-most Y coordinate."},
      {alone.uiTxtLeft, alone.uiLblLeft, "uiTxtLeft", "Left:", "Left most X coordinate."},
      {alone.uiTxtCompression, alone.uiLblCompression, "uiTxtCompression", "Compression Quality:",
       "Defines the quality of compression. A compression quality of 100% is the best."},
      {alone.FormatCombo, alone.uiLblFormat, "FormatCombo", "Format:", "Tiff - No Compression"},
      {alone.uiTxtMB, alone.uiLblMB, "uiTxtMB",
       "Approx. MB:", "Approximate size of the image in Mega Bytes."},
      {alone.uiTxtGSDX, alone.uiLblGSDX, "uiTxtGSDX",
       "Ground Pixel Size X:", "Size of the pixels at the ground level in X direction."},
      {alone.uiTxtCols, alone.uiLblCols, "uiTxtCols",
       "Columns:", "Number of columns of pixels in the exported image."},
      {alone.uiTxtRows, alone.uiLblRows, "uiTxtRows",
       "Rows:", "Number of rows of pixels in the exported image."},
      {alone.uiTxtHeight, alone.uiLblHeight, "uiTxtHeight",
       "Height:", "Height of the exported image, expressed in the units of the Data Frame."},
      {alone.uiTxtWidth, alone.uiLblWidth, "uiTxtWidth",
       "Width:", "Width of the exported image, expressed in the units of the Data Frame. "},
      {alone.MainCombo, alone.uiLblMain, "MainCombo",
       "Set the extent to:", "Set extents to Current, Default or User-defined."},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.control.name(), row.name);
    EXPECT_EQ(row.label.caption(), row.caption) << row.name;
    EXPECT_EQ(row.control.toolTip(), row.toolTip) << row.name;
    EXPECT_EQ(alone.findControl(row.name), &row.control);
  }
  EXPECT_EQ(alone.Frame1.caption(), "Extents");
  EXPECT_EQ(alone.OpenFile.caption(), "...");
}

TEST_F(ExportControls, BeginWithTheFirstFormatAndNoExtent) {
  EXPECT_THAT(alone.FormatCombo.entries(),
              ElementsAre("TIFF-No Compression", "TIFF-JPEG", "TIFF-LZ77", "JPEG", "JP2", "PNG"));
  EXPECT_THAT(alone.TileSizeCombo.entries(), ElementsAre("None", "128", "256", "512"));
  EXPECT_EQ(alone.FormatCombo.index(), 0U);
  EXPECT_EQ(alone.uiTxtCompression.text(), "0");
  EXPECT_FALSE(alone.uiTxtCompression.enabled());
  EXPECT_FALSE(alone.uiTxtMB.enabled());
  EXPECT_FALSE(alone.ExportMD.checked());
  EXPECT_EQ(alone.MainCombo.count(), 0U);
  EXPECT_EQ(alone.uiTxtFileName.text(), "");
}

TEST_F(ExportControls, FillTheirFieldsAtFirstDisplay) {
  show([](ExportDialogForm&, ExportControl& control) {
    EXPECT_THAT(control.MainCombo.entries(),
                ElementsAre("Current View Extent", "Default Extent of Image Service", "Custom Extent"));
    EXPECT_EQ(control.MainCombo.index(), 0U);
    EXPECT_EQ(control.TileSizeCombo.text(), "None");
    EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
    EXPECT_EQ(control.uiTxtTop.text(), "2000.000");
    EXPECT_EQ(control.uiTxtWidth.text(), "1000.000");
    EXPECT_EQ(control.uiTxtHeight.text(), "1000.000");
    EXPECT_EQ(control.uiTxtGSDX.text(), "1.0000");
    EXPECT_EQ(control.uiTxtGSDY.text(), "1.0000");
    EXPECT_EQ(control.uiTxtMB.text(), "3");
    EXPECT_EQ(control.uiTxtFileName.text(), "C:\\AppData\\Ostrel\\Vor Lane\\Untitled.tif");
  });
}

TEST_F(ExportControls, TakeTheRowsAndColumnsOfTheMetadataAtFirstDisplay) {
  service->metadata = imageMetadata({.rows = "50", .columns = "40"});
  show([](ExportDialogForm&, ExportControl& control) {
    EXPECT_EQ(control.uiTxtRows.text(), "50");
    EXPECT_EQ(control.uiTxtCols.text(), "40");
    EXPECT_EQ(control.uiTxtGSDX.text(), "25.0000");
    EXPECT_EQ(control.uiTxtGSDY.text(), "20.0000");
  });
}

TEST_F(ExportControls, AreFilledOnlyOnce) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "10");
    control.mylabel = "left over";
    control.windowAppeared();
    EXPECT_EQ(control.mylabel, "");
    EXPECT_EQ(control.uiTxtCols.text(), "10");
    EXPECT_EQ(control.MainCombo.count(), 3U);
  });
}

TEST_F(ExportControls, KeepAFileNameThatIsThereAtFirstDisplay) {
  alone.uiTxtFileName.setText(" a ");
  alone.windowAppeared();
  EXPECT_EQ(alone.uiTxtFileName.text(), " a ");
  ExportControl other{nullptr};
  other.uiTxtFileName.setText("   ");
  other.windowAppeared();
  EXPECT_EQ(other.uiTxtFileName.text(), "C:\\AppData\\Ostrel\\Vor Lane\\Untitled.tif");
}

TEST_F(ExportControls, StandAtTheRootOfTheFolderWithoutTheVariable) {
  system->variables.clear();
  alone.windowAppeared();
  EXPECT_EQ(alone.uiTxtFileName.text(), "\\Ostrel\\Vor Lane\\Untitled.tif");
}

TEST_F(ExportControls, WithoutValuesForTheExtentListFillNothingAndLetAPersonEdit) {
  alone.mylabel = "left over";
  alone.windowAppeared();
  EXPECT_EQ(alone.mylabel, "");
  EXPECT_EQ(alone.uiTxtCols.text(), "");
  EXPECT_EQ(alone.TileSizeCombo.text(), "None");
  alone.FormatCombo.userSelects(1);  // stops at the extent list, which has no third entry
  EXPECT_EQ(alone.uiTxtCompression.text(), "0");
}

TEST_F(ExportControls, ShowNoTilesAtFirstDisplayWhereThereAreValuesForTheExtentList) {
  alone.FormatCombo.userSelects(1);
  alone.windowAppeared();
  EXPECT_EQ(alone.TileSizeCombo.text(), "256");
  ExportControl other{nullptr};
  other.FormatCombo.userSelects(1);
  other.MainComboValues.emplace();
  other.windowAppeared();
  EXPECT_EQ(other.TileSizeCombo.text(), "None");
}

TEST_F(ExportControls, WithoutEntriesShowTheGridOfTheDefaultExtentAndComplain) {
  dialog = std::make_shared<ExportDialog>();
  show([](ExportDialogForm&, ExportControl& control) {
    EXPECT_EQ(control.uiTxtCols.text(), "1000");
    EXPECT_EQ(control.uiTxtRows.text(), "1000");
    EXPECT_EQ(control.uiTxtLeft.text(), "");
    EXPECT_EQ(control.uiTxtWidth.text(), "0.000");
    EXPECT_EQ(control.myWidthLabel, "Width cannot be less than or equal to zero.");
  });
}

TEST_F(ExportControls, PreselectTheLastOfTheHostsExtents) {
  const std::string extents = exportExtents(customEnvelope("A", "400", "400", "500", "600") +
                                            customEnvelope("B", "4000", "4000", "4500", "5000"));
  show(
      [](ExportDialogForm&, ExportControl& control) {
        EXPECT_EQ(control.MainCombo.text(), "B");
        EXPECT_EQ(control.uiTxtLeft.text(), "4000.000");
        EXPECT_EQ(control.uiTxtTop.text(), "5000.000");
        EXPECT_EQ(control.uiTxtRight.text(), "4500.000");
        EXPECT_EQ(control.uiTxtBottom.text(), "4000.000");
        EXPECT_EQ(control.uiTxtGSDX.text(), ".5000");
        EXPECT_EQ(control.uiTxtRows.text(), "1000");  // those of the metadata
      },
      extents);
}

// The help key.

TEST_F(ExportControls, OpenHelpOnControlAndF1Alone) {
  clientLibrary->home = "C:\\Home";
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtLeft.userFocuses();
    control.uiTxtLeft.userPresses(keyCode::f1);
    control.uiTxtLeft.userPresses(keyCode::f1, keyModifier::control | keyModifier::shift);
    control.uiTxtLeft.userPresses(keyCode::f1, keyModifier::control);
  });
  EXPECT_THAT(system->launched,
              ElementsAre("hh.exe C:\\Home\\Help\\Vorlane_Clients.chm::/Exporting_Image_Services.htm"));
}

TEST_F(ExportControls, OpenHelpFromTheProgramFolderWithoutAHome) {
  clientLibrary->home = "";
  show([](ExportDialogForm&, ExportControl& control) {
    control.FormatCombo.userPresses(keyCode::f1, keyModifier::control);
  });
  EXPECT_THAT(system->launched,
              ElementsAre("hh.exe C:\\Program Files\\Ostrel\\Vor Lane\\Help\\Vorlane_Clients."
                          "chm::/Exporting_Image_Services.htm"));
}

TEST_F(ExportControls, OpenNoHelpWithoutAParent) {
  alone.uiTxtLeft.userPresses(keyCode::f1, keyModifier::control);
  EXPECT_THAT(system->launched, IsEmpty());
}

// The switch to the custom extent.

TEST_F(ExportControls, AnyKeyInAFieldSelectsTheThirdExtent) {
  show([](ExportDialogForm&, ExportControl& control) {
    for (TextBox* const box :
         {&control.uiTxtLeft, &control.uiTxtRight, &control.uiTxtTop, &control.uiTxtBottom,
          &control.uiTxtWidth, &control.uiTxtHeight, &control.uiTxtCols, &control.uiTxtRows,
          &control.uiTxtGSDX, &control.uiTxtGSDY}) {
      control.MainCombo.userSelects(0);
      box->userPresses(65);
      EXPECT_EQ(control.MainCombo.text(), "Custom Extent") << box->name();
    }
    selectFormat(control, "JPEG");
    control.MainCombo.userSelects(0);
    control.uiTxtCompression.userPresses(65);
    EXPECT_EQ(control.MainCombo.index(), 2U);
    control.uiTxtMB.setEnabled(true);  // hosts can do so
    control.MainCombo.userSelects(0);
    control.uiTxtMB.userPresses(65);
    EXPECT_EQ(control.MainCombo.index(), 2U);
  });
}

TEST_F(ExportControls, BeforeTheFirstDisplayNeitherAKeyNorAFormatMovesTheExtent) {
  for (const char* const entry : {"A", "B", "C"}) alone.MainCombo.addEntry(entry);
  alone.uiTxtCols.userPresses(65);
  alone.FormatCombo.userSelects(1);
  EXPECT_FALSE(alone.MainCombo.index());
  EXPECT_EQ(alone.uiTxtCompression.text(), "75");
  alone.windowAppeared();
  alone.uiTxtCols.userPresses(65);
  EXPECT_EQ(alone.MainCombo.index(), 2U);
}

TEST_F(ExportControls, AModifierAloneKeepsTheExtentAndTwoTogetherDoNot) {
  show([](ExportDialogForm&, ExportControl& control) {
    for (const std::int32_t shift : {keyModifier::shift, keyModifier::control, keyModifier::alt}) {
      control.uiTxtCols.userPresses(65, shift);
      EXPECT_EQ(control.MainCombo.index(), 0U) << shift;
    }
    control.uiTxtCols.userPresses(65, keyModifier::shift | keyModifier::control);
    EXPECT_EQ(control.MainCombo.index(), 2U);
  });
}

TEST_F(ExportControls, AKeyInTheFileNameKeepsTheExtent) {
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtFileName.userPresses(65);
    EXPECT_EQ(control.MainCombo.index(), 0U);
  });
}

TEST_F(ExportControls, AKeyWithFewerThanThreeExtentsReachesTheTopLevelHandler) {
  dialog = std::make_shared<ExportDialog>();
  show([](ExportDialogForm&, ExportControl& control) { control.uiTxtCols.userPresses(65); });
  EXPECT_EQ(toolkit->failures().size(), 1U);
}

TEST_F(ExportControls, AreNamedLikeTheirClass) { EXPECT_EQ(alone.typeName(), "ExportControl"); }

}  // namespace
}  // namespace vlclientui::test
