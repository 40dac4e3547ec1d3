#include <gmock/gmock.h>

#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const MessageBox refusal{"Cannot enter characters", "Export Properties", MessageIcon::Exclamation,
                         MessageButtons::Ok};

class ExportValidation : public ExportFixture {
 protected:
  ExportValidation() { service->info = serviceInfo({.maxColumns = "2000", .maxRows = "1500"}); }
};

// Refusals.

TEST_F(ExportValidation, RefusesLettersAndPutsTheOldTextBack) {
  show([this](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    std::size_t messages = 0;
    for (TextBox* const box :
         {&control.uiTxtLeft, &control.uiTxtTop, &control.uiTxtBottom, &control.uiTxtWidth,
          &control.uiTxtHeight, &control.uiTxtCols, &control.uiTxtRows, &control.uiTxtGSDX,
          &control.uiTxtGSDY, &control.uiTxtCompression}) {
      const std::string before = box->text();
      control.uiTxtMB.setText("stale");
      edit(control, *box, "abc");
      EXPECT_EQ(box->text(), before) << box->name();
      EXPECT_EQ(control.uiTxtMB.text(), "stale") << box->name();
      EXPECT_THAT(toolkit->messages(), SizeIs(++messages));
      EXPECT_EQ(toolkit->messages().back(), refusal);
    }
  });
}

TEST_F(ExportValidation, RefusesLettersInTheRightEdgeAndEmptiesIt) {
  show([this](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtRight, "abc");
    EXPECT_EQ(control.uiTxtRight.text(), "");
    EXPECT_EQ(control.uiTxtWidth.text(), "1000.000");
    EXPECT_THAT(toolkit->messages(), ElementsAre(refusal));
  });
}

TEST_F(ExportValidation, PutsBackWhatTheBoxHeldWhenItTookTheFocus) {
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtWidth.setText("  7  ");
    edit(control, control.uiTxtWidth, "abc");
    EXPECT_EQ(control.uiTxtWidth.text(), "7");  // saved without its blanks
    control.uiTxtTop.setText("  7  ");
    edit(control, control.uiTxtTop, "abc");
    EXPECT_EQ(control.uiTxtTop.text(), "  7  ");
  });
}

TEST_F(ExportValidation, RefusesBlanksButNotNothing) {
  show([this](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtTop, "");
    EXPECT_THAT(toolkit->messages(), IsEmpty());
    edit(control, control.uiTxtTop, "  ");
    EXPECT_THAT(toolkit->messages(), SizeIs(1));
  });
}

TEST_F(ExportValidation, ARefusalOnTheWayToOkKeepsTheClickFromCounting) {
  show([this](ExportDialogForm& window, ExportControl& control) {
    control.uiTxtCols.userFocuses();
    control.uiTxtCols.userTypes("abc");
    window.controls().Command1.userClicks();
    EXPECT_THAT(toolkit->messages(), ElementsAre(refusal));
    EXPECT_FALSE(window.acceptPressed);
    EXPECT_EQ(control.uiTxtCols.text(), "1000");
  });
}

TEST_F(ExportValidation, TheEstimateIsRefusedAndNothingMore) {
  show([this](ExportDialogForm&, ExportControl& control) {
    control.uiTxtMB.setEnabled(true);  // hosts can do so
    edit(control, control.uiTxtMB, "abc");
    EXPECT_EQ(control.uiTxtMB.text(), "3");
    edit(control, control.uiTxtMB, "99");
    EXPECT_EQ(control.uiTxtMB.text(), "99");
    EXPECT_THAT(toolkit->messages(), SizeIs(1));
  });
}

// The decimal point under a comma.

TEST_F(ExportValidation, TurnsAPointIntoTheUsersSeparatorWhereThePointReadsAsANumber) {
  system->locale = germanFormat();
  show([this](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtLeft, "1500.5");
    EXPECT_EQ(control.uiTxtLeft.text(), "1500,500");
    edit(control, control.uiTxtWidth, "10.5");
    EXPECT_EQ(control.uiTxtWidth.text(), "10,500");
    edit(control, control.uiTxtGSDY, "2.5");
    EXPECT_EQ(control.uiTxtGSDY.text(), "2,5000");
    EXPECT_THAT(toolkit->messages(), IsEmpty());
  });
}

TEST_F(ExportValidation, ConvertsNoPointInTheRightEdge) {
  system->locale = germanFormat();
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtRight, "1500.5");  // a group separator, so 15005
    EXPECT_EQ(control.uiTxtRight.text(), "15005,000");
  });
}

TEST_F(ExportValidation, ConvertsNoPointInTheQuality) {
  system->locale = germanFormat();
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    edit(control, control.uiTxtCompression, "7.5");
    EXPECT_EQ(control.uiTxtCompression.text(), "7.5");
    EXPECT_EQ(control.myCompFactorLabel, "");
  });
}

TEST_F(ExportValidation, RefusesAPointWhereItIsNoPartOfANumber) {
  system->locale = frenchFormat();
  show([this](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtLeft, "1500.5");
    EXPECT_EQ(control.uiTxtLeft.text(), "1000,000");
    EXPECT_THAT(toolkit->messages(), ElementsAre(refusal));
  });
}

TEST_F(ExportValidation, RefusesColumnsASecondTimeForWhatTheConversionMadeOfThem) {
  system->locale = germanFormat();
  service->info = serviceInfo({});  // without limits, so that the count itself is not looked at
  show([this](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "1.000.000");  // becomes 1,000,000, which is no number there
    EXPECT_EQ(control.uiTxtCols.text(), "1000");
    EXPECT_THAT(toolkit->messages(), SizeIs(1));
    edit(control, control.uiTxtRows, "1.000.000");
    EXPECT_EQ(control.uiTxtRows.text(), "1,000,000");
    EXPECT_THAT(toolkit->messages(), SizeIs(1));
  });
}

// Columns and rows.

TEST_F(ExportValidation, ComplainsOfColumnsAboveTheLimitAndKeepsThem) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "2001");
    EXPECT_EQ(control.uiTxtCols.text(), "2001");
    EXPECT_EQ(control.uiTxtCols.textColor(), TextColor::Red);
    EXPECT_EQ(control.uiTxtCols.toolTip(), "Maximum number of columns allowed is 2000.");
    EXPECT_EQ(
        control.myColsLabel,
        "Number of columns cannot be more than the maximum columns allowed. [Max. columns allowed: 2000]");
    EXPECT_EQ(control.uiTxtGSDX.text(), ".4998");
    edit(control, control.uiTxtCols, "2000");
    EXPECT_EQ(control.uiTxtCols.textColor(), TextColor::Normal);
    EXPECT_EQ(control.uiTxtCols.toolTip(), "Number of columns of pixels in the exported image.");
    EXPECT_EQ(control.myColsLabel, "");
  });
}

TEST_F(ExportValidation, ComplainsOfRowsAboveTheLimitAndKeepsThem) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtRows, "1501");
    EXPECT_EQ(control.uiTxtRows.textColor(), TextColor::Red);
    EXPECT_EQ(control.uiTxtRows.toolTip(), "Maximum number of rows allowed is 1500.");
    EXPECT_EQ(control.myRowsLabel,
              "Number of rows cannot be more than the maximum rows allowed. [Max. rows allowed: 1500]");
    edit(control, control.uiTxtRows, "1500");
    EXPECT_EQ(control.uiTxtRows.toolTip(), "Number of rows of pixels in the exported image.");
    EXPECT_EQ(control.myRowsLabel, "");
  });
}

TEST_F(ExportValidation, ComplainsOfNoColumnsAndKeepsThePixelSize) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "0");
    EXPECT_EQ(control.uiTxtCols.textColor(), TextColor::Red);
    EXPECT_EQ(control.myColsLabel, "Columns cannot be a negative value or zero.");
    EXPECT_EQ(control.uiTxtCols.toolTip(), "Columns cannot be a negative value or zero.");
    EXPECT_EQ(control.uiTxtGSDX.text(), "1.0000");
    edit(control, control.uiTxtRows, "0");
    EXPECT_EQ(control.myRowsLabel, "Rows cannot be a negative value or zero.");
    EXPECT_EQ(control.uiTxtRows.toolTip(), "Rows cannot be a negative value or zero.");
  });
}

TEST_F(ExportValidation, ComplainsOfNegativeColumnsAndOfTheirPixelSize) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "-10");
    EXPECT_EQ(control.myColsLabel, "Columns cannot be a negative value or zero.");
    EXPECT_EQ(control.uiTxtGSDX.text(), "-100.0000");
    EXPECT_EQ(control.uiTxtGSDX.textColor(), TextColor::Red);
  });
}

TEST_F(ExportValidation, WithoutALimitLeavesNegativeColumnsToThePixelSize) {
  service->info = serviceInfo({});
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "-10");
    EXPECT_EQ(control.myColsLabel, "");
    EXPECT_EQ(control.uiTxtCols.textColor(), TextColor::Normal);
    EXPECT_EQ(control.myPixelXLabel, "The pixel size X cannot be less than or equal to zero.");
  });
}

TEST_F(ExportValidation, EmptyColumnsEndTheHandlingWhereALimitIsKnown) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "");
    EXPECT_EQ(control.uiTxtMB.text(), "3");  // not recalculated
    edit(control, control.uiTxtRows, "");
    EXPECT_EQ(control.uiTxtMB.text(), "3");
  });
}

TEST_F(ExportValidation, ColumnsLeftUnchangedAreCheckedAndNotRecalculated) {
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtCols.setText("5000");
    control.uiTxtRows.setText("5000");
    visit(control, control.uiTxtCols);
    visit(control, control.uiTxtRows);
    EXPECT_NE(control.myColsLabel, "");
    EXPECT_NE(control.myRowsLabel, "");
    EXPECT_EQ(control.uiTxtGSDX.text(), "1.0000");
  });
}

TEST_F(ExportValidation, APixelSizeThatAsksForTooManyColumnsIsComplainedOfAtTheColumns) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtGSDX, "0.1");
    EXPECT_EQ(control.uiTxtCols.text(), "10000");
    EXPECT_NE(control.myColsLabel, "");
    EXPECT_NE(control.myRowsLabel, "");
    EXPECT_EQ(control.myPixelXLabel, "");
  });
}

TEST_F(ExportValidation, CountsOfZeroAndPixelSizesOfZeroAreNotDividedByAndStillChecked) {
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtGSDX.setText("-1.0000");
    edit(control, control.uiTxtCols, "0");
    EXPECT_EQ(control.uiTxtGSDX.text(), "-1.0000");
    EXPECT_NE(control.myPixelXLabel, "");
    control.uiTxtRows.setText("5000");
    edit(control, control.uiTxtGSDY, "0");
    EXPECT_EQ(control.uiTxtRows.text(), "5000");
    EXPECT_NE(control.myRowsLabel, "");
  });
}

// Quality.

TEST_F(ExportValidation, TakesQualitiesFromZeroToAHundred) {
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    for (const auto& [quality, good] : {std::pair{"0", true}, std::pair{"100", true}, std::pair{"99.5", true},
                                        std::pair{"100.5", false}, std::pair{"-0.5", false}}) {
      edit(control, control.uiTxtCompression, quality);
      EXPECT_EQ(control.uiTxtCompression.text(), quality);
      EXPECT_EQ(control.uiTxtCompression.textColor(), good ? TextColor::Normal : TextColor::Red) << quality;
      EXPECT_EQ(control.myCompFactorLabel.empty(), good) << quality;
    }
  });
}

TEST_F(ExportValidation, AnEmptyQualityLeavesColorAndComplaintAsTheyWere) {
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    edit(control, control.uiTxtCompression, "101");
    control.uiTxtMB.setText("stale");
    edit(control, control.uiTxtCompression, "");
    EXPECT_EQ(control.uiTxtCompression.textColor(), TextColor::Red);
    EXPECT_EQ(control.myCompFactorLabel, "The compression factor cannot be more than 100 and less than 0.");
    EXPECT_EQ(control.uiTxtMB.text(), "stale");
  });
}

TEST_F(ExportValidation, AQualityLeftUnchangedIsEstimatedAndFormatted) {
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    control.uiTxtMB.setText("stale");
    control.uiTxtTop.setText("7");
    visit(control, control.uiTxtCompression);
    EXPECT_EQ(control.uiTxtMB.text(), "0.612");
    EXPECT_EQ(control.uiTxtTop.text(), "7.000");
    EXPECT_EQ(control.uiTxtHeight.text(), "1000.000");
  });
}

// Sizes.

TEST_F(ExportValidation, AComplaintComesAndGoesWithTheValuesOfOtherFields) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtWidth, "-5");
    EXPECT_EQ(control.myWidthLabel, "Width cannot be less than or equal to zero.");
    EXPECT_EQ(control.myPixelXLabel, "The pixel size X cannot be less than or equal to zero.");
    edit(control, control.uiTxtRight, "5000");
    EXPECT_EQ(control.myWidthLabel, "");
    EXPECT_EQ(control.myPixelXLabel, "");
    edit(control, control.uiTxtHeight, "-5");
    EXPECT_EQ(control.myHeightLabel, "Height cannot be less than or equal to zero.");
    edit(control, control.uiTxtGSDY, "-2");
    EXPECT_EQ(control.myPixelYLabel, "The pixel size Y cannot be less than or equal to zero.");
  });
}

}  // namespace
}  // namespace vlclientui::test
