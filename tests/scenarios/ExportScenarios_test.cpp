// What a person enters and chooses in the export window, and what follows.

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenarios/ExportVisit.h"

namespace vlclientui::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char* const refusal = "Export Properties|Cannot enter characters";
const char* const tooManyColumns =
    "Number of columns cannot be more than the maximum columns allowed. [Max. columns allowed: 3000]";

class ExportScenarios : public ExportVisit {};

TEST_F(ExportScenarios, TheWindowOpensOnTheImage) {
  visit([&] {
    EXPECT_EQ(person->caption(), "Export Image Properties");
    EXPECT_THAT(person->entries("MainCombo"),
                ElementsAre("Current View Extent", "Default Extent of Image Service", "Custom Extent"));
    expectText("MainCombo", "Current View Extent");
    expectText("uiTxtLeft", "1000.000");
    expectText("uiTxtTop", "2000.000");
    expectText("uiTxtWidth", "1000.000");
    expectText("uiTxtCols", "1000");
    expectText("uiTxtGSDX", "1.0000");
    expectText("uiTxtMB", "3");
    expectText("FormatCombo", "TIFF-No Compression");
    expectText("TileSizeCombo", "None");
    expectText("uiTxtFileName", "C:\\Data\\Ostrel\\Vor Lane\\Untitled.tif");
    EXPECT_FALSE(person->isEnabled("uiTxtMB"));
    EXPECT_FALSE(person->isEnabled("uiTxtCompression"));
    EXPECT_EQ(person->focus(), "MainCombo");
  });
}

TEST_F(ExportScenarios, EachEditMovesWhatFollowsIt) {
  visit([&] {
    edit("uiTxtWidth", "500");
    expectText("uiTxtRight", "1500.000");
    expectText("uiTxtGSDX", ".5000");
    edit("uiTxtCols", "250");
    expectText("uiTxtGSDX", "2.0000");
    expectText("uiTxtRight", "1500.000");
    edit("uiTxtGSDX", "4");
    expectText("uiTxtGSDY", "4.0000");
    expectText("uiTxtCols", "125");
    expectText("uiTxtRows", "250");
    edit("uiTxtTop", "1500");
    expectText("uiTxtHeight", "500.000");
    expectText("uiTxtGSDY", "2.0000");
  });
}

TEST_F(ExportScenarios, AKeyInABoxSelectsTheCustomExtent) {
  visit([&] {
    person->pick("MainCombo", "Default Extent of Image Service");
    expectText("uiTxtLeft", "500.000");
    person->type("uiTxtLeft", "600");
    expectText("MainCombo", "Custom Extent");
  });
}

TEST_F(ExportScenarios, ARefusalIsToldOncePutsTheTextBackAndMovesNothing) {
  visit([&] {
    edit("uiTxtWidth", "wide");
    EXPECT_THAT(person->messages(), ElementsAre(refusal));
    expectText("uiTxtWidth", "1000.000");
    expectText("uiTxtRight", "2000.000");
    EXPECT_FALSE(person->isRed("uiTxtWidth"));
    EXPECT_NE(person->focus(), "uiTxtWidth");
  });
}

TEST_F(ExportScenarios, ARefusalEmptiesTheRightEdgeAndIsToldOncePerLeaving) {
  visit([&] {
    edit("uiTxtRight", "far");
    EXPECT_EQ(person->messages().size(), 1U);
    expectText("uiTxtRight", "");
    edit("uiTxtRight", "farther");
    EXPECT_EQ(person->messages().size(), 2U);
    person->enter("uiTxtRight");
    person->enter("uiTxtTop");
    EXPECT_EQ(person->messages().size(), 2U);
    EXPECT_EQ(person->focus(), "uiTxtTop");
  });
}

TEST_F(ExportScenarios, AMoveFromARefusedBoxToAnotherArrivesThere) {
  visit([&] {
    person->type("uiTxtTop", "high");
    person->type("uiTxtBottom", "1500");
    EXPECT_EQ(person->focus(), "uiTxtBottom");
    person->pressTab();
    EXPECT_THAT(person->messages(), ElementsAre(refusal));
    expectText("uiTxtTop", "2000.000");
    expectText("uiTxtHeight", "500.000");
  });
}

TEST_F(ExportScenarios, ANumberOutOfRangeIsComplainedOfBesideItsBoxAndByOk) {
  visit([&] {
    edit("uiTxtCols", "3001");
    expectText("uiTxtCols", "3001");
    EXPECT_TRUE(person->isRed("uiTxtCols"));
    EXPECT_EQ(person->toolTip("uiTxtCols"), "Maximum number of columns allowed is 3000.");
    EXPECT_EQ(person->complaint("uiTxtCols"), tooManyColumns);
    EXPECT_EQ(person->complaint("uiTxtRows"), "");
    person->click("Command1");
    EXPECT_THAT(person->messages(), ElementsAre(std::string("Warning|") + tooManyColumns));
    EXPECT_FALSE(exported());
    edit("uiTxtCols", "3000");
    EXPECT_FALSE(person->isRed("uiTxtCols"));
    EXPECT_EQ(person->complaint("uiTxtCols"), "");
    person->click("Command1");
  });
  EXPECT_TRUE(exported());
  EXPECT_EQ(requested("Cols"), "3000");
}

TEST_F(ExportScenarios, APixelSizeOfZeroIsComplainedOfAtEveryBoxThatItCollapses) {
  visit([&] {
    edit("uiTxtGSDX", "0");
    EXPECT_EQ(person->complaint("uiTxtWidth"), "Width cannot be less than or equal to zero.");
    EXPECT_EQ(person->complaint("uiTxtHeight"), "Height cannot be less than or equal to zero.");
    EXPECT_EQ(person->complaint("uiTxtGSDX"), "The pixel size X cannot be less than or equal to zero.");
    EXPECT_EQ(person->complaint("uiTxtGSDY"), "The pixel size Y cannot be less than or equal to zero.");
    for (const char* const box : {"uiTxtWidth", "uiTxtHeight", "uiTxtGSDX", "uiTxtGSDY"}) {
      expectText(box, "0.000");
      EXPECT_TRUE(person->isRed(box)) << box;
    }
    EXPECT_EQ(person->toolTip("uiTxtWidth"),
              "Width of the exported image, expressed in the units of the Data Frame. ");
  });
}

TEST_F(ExportScenarios, AFileThatIsThereIsWrittenOverOnlyAfterAYes) {
  system->writeFile("C:\\Data\\Ostrel\\Vor Lane\\Untitled.Tif", "former");
  person->answerQuestion(MessageAnswer::Cancel);
  person->answerQuestion(MessageAnswer::Ok);
  visit([&] {
    person->click("Command1");
    EXPECT_TRUE(person->windowIsOpen());
    EXPECT_FALSE(exported());
    person->click("Command1");
  });
  EXPECT_TRUE(exported());
  EXPECT_EQ(person->messages().size(), 2U);
  EXPECT_THAT(person->messages().front(), HasSubstr("Untitled.Tif' already exists. Overwrite file?"));
}

TEST_F(ExportScenarios, AnExtentOfTheHostIsPickedFromTheList) {
  const std::string extents = exportExtents(customEnvelope("North", "0", "3000", "800", "4000") +
                                            customEnvelope("Drawn", "10", "20", "210", "120"));
  visit(
      [&] {
        expectText("MainCombo", "Drawn");
        person->pick("MainCombo", "North");
        expectText("uiTxtTop", "4000.000000000");
        expectText("uiTxtWidth", "800.000000000");
        person->pick("MainCombo", "Current View Extent");
        expectText("uiTxtTop", "2000.000000000");
        person->pick("MainCombo", "Current View Extent");
        expectText("uiTxtTop", "2000.000");
      },
      extents);
}

TEST_F(ExportScenarios, AFormatBringsItsQualityTileSizeAndExtension) {
  visit([&] {
    person->pick("FormatCombo", "TIFF-JPEG");
    expectText("uiTxtCompression", "75");
    expectText("TileSizeCombo", "256");
    expectText("uiTxtMB", "0.508");
    expectText("MainCombo", "Custom Extent");
    edit("uiTxtCompression", "100.5");
    EXPECT_TRUE(person->isRed("uiTxtCompression"));
    EXPECT_EQ(person->complaint("uiTxtCompression"),
              "The compression factor cannot be more than 100 and less than 0.");
    edit("uiTxtCompression", "100");
    EXPECT_EQ(person->complaint("uiTxtCompression"), "");
    person->pick("FormatCombo", "JPEG");
    expectText("uiTxtCompression", "80");
    EXPECT_TRUE(person->isEnabled("uiTxtCompression"));
    EXPECT_FALSE(person->isEnabled("TileSizeCombo"));
    expectText("uiTxtFileName", "C:\\Data\\Ostrel\\Vor Lane\\Untitled.JPEG");
    person->pick("FormatCombo", "PNG");
    EXPECT_FALSE(person->isEnabled("uiTxtCompression"));
    EXPECT_EQ(person->toolTip("FormatCombo"), "PNG");
  });
}

TEST_F(ExportScenarios, AComplaintOfTheQualityOutlivesTheFormatAndStopsOk) {
  visit([&] {
    person->pick("FormatCombo", "JPEG");
    edit("uiTxtCompression", "101");
    person->pick("FormatCombo", "PNG");
    EXPECT_FALSE(person->isRed("uiTxtCompression"));
    EXPECT_EQ(person->complaint("uiTxtCompression"),
              "The compression factor cannot be more than 100 and less than 0.");
    person->click("Command1");
    EXPECT_THAT(person->messages(),
                ElementsAre("Warning|The compression factor cannot be more than 100 and less than 0."));
  });
  EXPECT_FALSE(exported());
}

TEST_F(ExportScenarios, TileSizeQualityAndMetadataGoIntoTheRequest) {
  visit([&] {
    person->pick("FormatCombo", "TIFF-LZ77");
    person->pick("TileSizeCombo", "128");
    person->click("ExportMD");
    person->click("Command1");
  });
  EXPECT_EQ(requested("TileSize"), "128");
  EXPECT_EQ(requested("CompressionMethod"), "LZ77");
  EXPECT_EQ(requested("ExportMetadataXml"), "True");
  EXPECT_EQ(requested("CreateWorldFile"), "True");
}

}  // namespace

}  // namespace vlclientui::test
