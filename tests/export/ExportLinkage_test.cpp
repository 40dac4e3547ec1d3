#include <gmock/gmock.h>

#include "documents/NumberText.h"
#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;

/// Every box that an edit may move, by name.
std::map<std::string, std::string> textsOf(const ExportControl& control) {
  std::map<std::string, std::string> texts;
  for (const TextBox* const box :
       {&control.uiTxtLeft, &control.uiTxtTop, &control.uiTxtRight, &control.uiTxtBottom, &control.uiTxtWidth,
        &control.uiTxtHeight, &control.uiTxtCols, &control.uiTxtRows, &control.uiTxtGSDX, &control.uiTxtGSDY,
        &control.uiTxtMB}) {
    texts[box->name().substr(5)] = box->text();
  }
  return texts;
}

/// Names of the boxes whose text differs, in alphabetical order.
std::vector<std::string> movedSince(const std::map<std::string, std::string>& before,
                                    const ExportControl& control) {
  std::vector<std::string> moved;
  for (const auto& [name, text] : textsOf(control)) {
    if (before.at(name) != text) moved.push_back(name);
  }
  return moved;
}

class ExportLinkage : public ExportFixture {
 protected:
  /// The boxes that an edit moves; the edit starts from 1000 by 1000 units in 1000 by 1000 pixels.
  std::vector<std::string> movedBy(TextBox ExportControl::*box, const std::string& text) {
    std::vector<std::string> moved;
    show([&](ExportDialogForm&, ExportControl& control) {
      const auto before = textsOf(control);
      edit(control, control.*box, text);
      moved = movedSince(before, control);
    });
    return moved;
  }
  /// Runs the act in each of the three locales; it is told the separator.
  void inEachLocale(const std::function<void(const std::string&)>& act) {
    for (const LocaleFormat& locale : {LocaleFormat{}, germanFormat(), frenchFormat()}) {
      system->locale = locale;
      act(locale.decimalSeparator);
    }
  }
};

// What follows and what stays.

TEST_F(ExportLinkage, AnEdgeMovesSizePixelSizeAndEstimateOnly) {
  EXPECT_THAT(movedBy(&ExportControl::uiTxtLeft, "1500"), ElementsAre("GSDX", "Left", "Width"));
  EXPECT_THAT(movedBy(&ExportControl::uiTxtRight, "1500"), ElementsAre("GSDX", "Right", "Width"));
  EXPECT_THAT(movedBy(&ExportControl::uiTxtTop, "1500"), ElementsAre("GSDY", "Height", "Top"));
  EXPECT_THAT(movedBy(&ExportControl::uiTxtBottom, "1500"), ElementsAre("Bottom", "GSDY", "Height"));
}

TEST_F(ExportLinkage, AWidthMovesTheRightEdge) {
  EXPECT_THAT(movedBy(&ExportControl::uiTxtWidth, "500"), ElementsAre("GSDX", "Right", "Width"));
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtWidth, "500");
    EXPECT_EQ(control.uiTxtRight.text(), "1500.000");
    EXPECT_EQ(control.uiTxtGSDX.text(), ".5000");
  });
}

TEST_F(ExportLinkage, AHeightMovesTheBottomEdge) {
  EXPECT_THAT(movedBy(&ExportControl::uiTxtHeight, "500"), ElementsAre("Bottom", "GSDY", "Height"));
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtHeight, "500");
    EXPECT_EQ(control.uiTxtBottom.text(), "1500.000");
    EXPECT_EQ(control.uiTxtGSDY.text(), ".5000");
  });
}

TEST_F(ExportLinkage, ColumnsAndRowsMoveTheirPixelSizeAndTheEstimate) {
  EXPECT_THAT(movedBy(&ExportControl::uiTxtCols, "500"), ElementsAre("Cols", "GSDX", "MB"));
  EXPECT_THAT(movedBy(&ExportControl::uiTxtRows, "500"), ElementsAre("GSDY", "MB", "Rows"));
}

TEST_F(ExportLinkage, APixelSizeXCarriesYAlongAndRefitsBothDirections) {
  EXPECT_THAT(movedBy(&ExportControl::uiTxtGSDX, "30"),
              ElementsAre("Bottom", "Cols", "GSDX", "GSDY", "Height", "MB", "Right", "Rows", "Width"));
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtGSDX, "30");
    EXPECT_EQ(control.uiTxtCols.text(), "33");
    EXPECT_EQ(control.uiTxtRight.text(), "1990.000");
    EXPECT_EQ(control.uiTxtBottom.text(), "1010.000");
    EXPECT_EQ(control.uiTxtGSDY.text(), "30.0000");
  });
}

TEST_F(ExportLinkage, APixelSizeYTouchesTheVerticalDirectionOnly) {
  EXPECT_THAT(movedBy(&ExportControl::uiTxtGSDY, "30"),
              ElementsAre("Bottom", "GSDY", "Height", "MB", "Rows"));
}

TEST_F(ExportLinkage, AQualityMovesTheEstimateOnly) {
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    const auto before = textsOf(control);
    edit(control, control.uiTxtCompression, "10");
    EXPECT_THAT(movedSince(before, control), ElementsAre("MB"));
  });
}

TEST_F(ExportLinkage, AnEdgeLeftWithoutAChangeRecalculatesAndAWidthDoesNot) {
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtGSDX.setText("stale");
    visit(control, control.uiTxtWidth);
    visit(control, control.uiTxtHeight);
    visit(control, control.uiTxtCols);
    visit(control, control.uiTxtRows);
    EXPECT_EQ(control.uiTxtGSDX.text(), "stale");
    visit(control, control.uiTxtTop);
    EXPECT_EQ(control.uiTxtGSDX.text(), "1.0000");
  });
}

TEST_F(ExportLinkage, BlanksAroundAnUnchangedWidthAreNoChange) {
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtRight.setText("9999");
    edit(control, control.uiTxtWidth, "  1000.000 ");
    EXPECT_EQ(control.uiTxtRight.text(), "9999");
  });
}

// Rounding to whole pixels.

TEST_F(ExportLinkage, AWidthThatIsNoMultipleOfThePixelSizeShrinksToWholePixels) {
  inEachLocale([this](const std::string& point) {
    show([&](ExportDialogForm&, ExportControl& control) {
      edit(control, control.uiTxtWidth, "100");
      edit(control, control.uiTxtGSDX, "30");
      EXPECT_EQ(control.uiTxtCols.text(), "3");
      EXPECT_EQ(control.uiTxtRight.text(), "1090" + point + "000");
      EXPECT_EQ(control.uiTxtWidth.text(), "90" + point + "000");
    });
  });
}

TEST_F(ExportLinkage, HalvesOfColumnsAndRowsGoToTheEvenNeighbor) {
  inEachLocale([this](const std::string&) {
    for (const auto& [size, count] :
         {std::pair{"25", "2"}, std::pair{"35", "4"}, std::pair{"5", "0"}, std::pair{"-25", "-2"}}) {
      show([size, count](ExportDialogForm&, ExportControl& control) {
        edit(control, control.uiTxtWidth, size);
        edit(control, control.uiTxtHeight, size);
        edit(control, control.uiTxtGSDX, "10");
        EXPECT_EQ(control.uiTxtCols.text(), count) << size;
        EXPECT_EQ(control.uiTxtRows.text(), count) << size;
      });
    }
  });
}

TEST_F(ExportLinkage, HalvesInPicturesGoAwayFromZero) {
  inEachLocale([this](const std::string& point) {
    show([&](ExportDialogForm&, ExportControl& control) {
      edit(control, control.uiTxtLeft, "1000" + point + "0005");
      EXPECT_EQ(control.uiTxtLeft.text(), "1000" + point + "001");
      edit(control, control.uiTxtBottom, "-1000" + point + "0005");
      EXPECT_EQ(control.uiTxtBottom.text(), "-1000" + point + "001");
    });
  });
}

TEST_F(ExportLinkage, AHalfShowsNothingBeforeThePoint) {
  inEachLocale([this](const std::string& point) {
    show([&](ExportDialogForm&, ExportControl& control) {
      edit(control, control.uiTxtBottom, "0" + point + "5");
      EXPECT_EQ(control.uiTxtBottom.text(), point + "500");
    });
  });
}

// Zeros.

TEST_F(ExportLinkage, APixelSizeOfZeroCollapsesTheExtentInRed) {
  inEachLocale([this](const std::string& point) {
    show([&](ExportDialogForm&, ExportControl& control) {
      edit(control, control.uiTxtGSDX, "0");
      EXPECT_EQ(control.uiTxtCols.text(), "1000");
      EXPECT_EQ(control.uiTxtRows.text(), "1000");
      EXPECT_EQ(control.uiTxtRight.text(), control.uiTxtLeft.text());
      EXPECT_EQ(control.uiTxtBottom.text(), control.uiTxtTop.text());
      for (const TextBox* const box :
           {&control.uiTxtWidth, &control.uiTxtHeight, &control.uiTxtGSDX, &control.uiTxtGSDY}) {
        EXPECT_EQ(box->text(), "0" + point + "000") << box->name();
        EXPECT_EQ(box->textColor(), TextColor::Red) << box->name();
      }
      EXPECT_EQ(control.myPixelXLabel, "The pixel size X cannot be less than or equal to zero.");
      EXPECT_EQ(control.myPixelYLabel, "The pixel size Y cannot be less than or equal to zero.");
    });
  });
}

TEST_F(ExportLinkage, APixelSizeThatIsZeroInOtherWordsCollapsesTheExtentToo) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtGSDX, "0.0");  // the division fails, and what follows goes on
    EXPECT_EQ(control.uiTxtCols.text(), "1000");
    EXPECT_EQ(control.uiTxtWidth.text(), "0.000");
  });
}

TEST_F(ExportLinkage, AnEditedPixelSizeIsCheckedThoughItsRecalculationFails) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "0.0");  // nothing can be divided by it
    edit(control, control.uiTxtRows, "0.0");
    edit(control, control.uiTxtGSDY, "0");
    EXPECT_EQ(control.myPixelYLabel, "The pixel size Y cannot be less than or equal to zero.");
    EXPECT_EQ(control.uiTxtGSDY.textColor(), TextColor::Red);
    EXPECT_EQ(control.myPixelXLabel, "");
    edit(control, control.uiTxtGSDX, "0");
    EXPECT_EQ(control.myPixelXLabel, "The pixel size X cannot be less than or equal to zero.");
    EXPECT_EQ(control.uiTxtGSDX.textColor(), TextColor::Red);
  });
}

TEST_F(ExportLinkage, AnEmptiedPixelSizeXEmptiesYAndStopsThere) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtGSDX, "");
    EXPECT_EQ(control.uiTxtGSDX.text(), "");
    EXPECT_EQ(control.uiTxtGSDY.text(), "");
    EXPECT_EQ(control.uiTxtCols.text(), "1000");
    EXPECT_EQ(control.uiTxtRight.text(), "2000.000");
  });
}

TEST_F(ExportLinkage, EqualTopAndBottomShowZeroInRed) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtTop, "1000");
    EXPECT_EQ(control.uiTxtHeight.text(), "0.000");
    EXPECT_EQ(control.uiTxtHeight.textColor(), TextColor::Red);
    EXPECT_EQ(control.myHeightLabel, "Height cannot be less than or equal to zero.");
    EXPECT_EQ(control.uiTxtGSDY.text(), "0.000");
    EXPECT_EQ(control.uiTxtGSDY.textColor(), TextColor::Red);
    edit(control, control.uiTxtTop, "2000");
    EXPECT_EQ(control.myHeightLabel, "");
    EXPECT_EQ(control.myPixelYLabel, "");
    EXPECT_EQ(control.uiTxtHeight.textColor(), TextColor::Normal);
  });
}

TEST_F(ExportLinkage, EdgesAtZeroHaveNoForcedDigit) {
  inEachLocale([this](const std::string& point) {
    show([&](ExportDialogForm&, ExportControl& control) {
      edit(control, control.uiTxtBottom, "0");
      EXPECT_EQ(control.uiTxtBottom.text(), point + "000");
    });
  });
}

TEST_F(ExportLinkage, ASizeTooSmallToShowIsComplainedOf) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtWidth, "0.0004");
    EXPECT_EQ(control.uiTxtWidth.text(), ".000");  // not exactly zero, so under its picture
    EXPECT_EQ(control.myWidthLabel, "Width cannot be less than or equal to zero.");
  });
}

TEST_F(ExportLinkage, RightBelowLeftGivesANegativeWidthAndNoSwap) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtRight, "900");
    EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
    EXPECT_EQ(control.uiTxtWidth.text(), "-100.000");
    EXPECT_EQ(control.uiTxtWidth.textColor(), TextColor::Red);
    EXPECT_EQ(control.uiTxtGSDX.text(), "-.1000");
    EXPECT_EQ(control.myPixelXLabel, "The pixel size X cannot be less than or equal to zero.");
  });
}

TEST_F(ExportLinkage, EmptyEdgesCountAsZero) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtLeft, "");
    EXPECT_EQ(control.uiTxtLeft.text(), "");
    EXPECT_EQ(control.uiTxtWidth.text(), "2000.000");
  });
}

TEST_F(ExportLinkage, AnEmptiedWidthMovesNothing) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtWidth, "");
    EXPECT_EQ(control.uiTxtWidth.text(), "");
    EXPECT_EQ(control.uiTxtRight.text(), "2000.000");
    edit(control, control.uiTxtLeft, "");
    edit(control, control.uiTxtWidth, "5");
    EXPECT_EQ(control.uiTxtRight.text(), "2000.000");  // no anchor
  });
}

TEST_F(ExportLinkage, EmptyColumnsKeepThePixelSize) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "");
    edit(control, control.uiTxtRight, "4000");
    EXPECT_EQ(control.uiTxtGSDX.text(), "1.0000");
    EXPECT_EQ(control.uiTxtWidth.text(), "3000.000");
    EXPECT_EQ(control.uiTxtMB.text(), "0");
  });
}

TEST_F(ExportLinkage, ADivisionByZeroColumnsLeavesTheStepsAfterItGoing) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "0.0");
    EXPECT_EQ(control.uiTxtGSDX.text(), "1.0000");
    EXPECT_EQ(control.uiTxtMB.text(), "0");
  });
}

TEST_F(ExportLinkage, AComputationBeyondAllNumbersStopsTheStep) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtRight, "1E308");
    edit(control, control.uiTxtLeft, "-1E308");
    EXPECT_NE(control.uiTxtWidth.text().find("1"), std::string::npos);
    edit(control, control.uiTxtLeft, "-1.7E308");
    EXPECT_EQ(control.uiTxtWidth.text().find("Inf"), std::string::npos);
  });
}

// The estimate.

class ExportEstimate : public ExportLinkage {
 protected:
  std::string estimateOf(const std::string& format, const std::string& quality = "") {
    std::string shown;
    show([&](ExportDialogForm&, ExportControl& control) {
      selectFormat(control, format);
      if (!quality.empty()) edit(control, control.uiTxtCompression, quality);
      shown = control.uiTxtMB.text();
    });
    return shown;
  }
};

TEST_F(ExportEstimate, HasTheWorkedFiguresOfEachFormat) {
  inEachLocale([this](const std::string& point) {
    EXPECT_EQ(estimateOf("TIFF-No Compression"), "3");
    EXPECT_EQ(estimateOf("PNG"), "3");
    EXPECT_EQ(estimateOf("TIFF-JPEG"), "0" + point + "508");
    EXPECT_EQ(estimateOf("TIFF-LZ77"), "0" + point + "6");
    EXPECT_EQ(estimateOf("JPEG"), "0" + point + "612");  // quality 80
    EXPECT_EQ(estimateOf("JP2"), "3");                   // quality 100
  });
}

TEST_F(ExportEstimate, ShowsNineDecimalsWithDegreeForms) {
  service->metadata = imageMetadata({.xMin = "0", .xMax = "1"});
  service->info = serviceInfo({.xMin = "0"});
  inEachLocale(
      [this](const std::string& point) { EXPECT_EQ(estimateOf("TIFF-JPEG"), "0" + point + "507640811"); });
}

TEST_F(ExportEstimate, FollowsTheQualityByItsFactorToTheDigit) {
  // 10^6 by 10^8 pixels of 8 bytes are 800 million megabytes, divided by the factor.
  service->metadata =
      imageMetadata({.rows = "1000000", .columns = "100000000", .bands = "2", .pixelType = "FLOAT32"});
  const auto factorOf = [this](const std::string& quality) {
    return 800e6 / textToDouble(estimateOf("JPEG", quality), LocaleFormat{});
  };
  constexpr double halfADigit = 0.00005;
  EXPECT_NEAR(factorOf("0"), 26.2982, halfADigit);
  EXPECT_NEAR(factorOf("50"), 11.2558, halfADigit);
  EXPECT_NEAR(factorOf("75"), 5.9097, halfADigit);
  EXPECT_NEAR(factorOf("80"), 4.8985, halfADigit);
  EXPECT_NEAR(factorOf("99"), 1.1900, halfADigit);
  EXPECT_EQ(factorOf("99.5"), 1);
  EXPECT_EQ(factorOf("100"), 1);
}

TEST_F(ExportEstimate, OfASingleBandIsTwiceItsSize) {
  service->metadata = imageMetadata({.bands = "1"});
  inEachLocale([this](const std::string&) { EXPECT_EQ(estimateOf("TIFF-No Compression"), "2"); });
}

TEST_F(ExportEstimate, AboveTenIsAWholeNumberWithHalvesAwayFromZero) {
  service->metadata = imageMetadata({.rows = "3500"});
  inEachLocale([this](const std::string&) { EXPECT_EQ(estimateOf("TIFF-No Compression"), "11"); });
}

TEST_F(ExportEstimate, OfExactlyTenTakesTheFormOfCoordinates) {
  service->metadata = imageMetadata({.rows = "5000", .bands = "2"});
  EXPECT_EQ(estimateOf("TIFF-No Compression"), "10");
  service->metadata = imageMetadata({.rows = "4999", .bands = "2"});
  EXPECT_EQ(estimateOf("TIFF-No Compression"), "10");  // 9.998 in tenths
  service->metadata = imageMetadata({.rows = "4970", .bands = "2"});
  EXPECT_EQ(estimateOf("TIFF-No Compression"), "9.9");
}

TEST_F(ExportEstimate, StaysWhenTheQualityIsNegative) {
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    edit(control, control.uiTxtCompression, "50");
    const std::string before = control.uiTxtMB.text();
    edit(control, control.uiTxtCompression, "-1");
    EXPECT_EQ(control.uiTxtMB.text(), before);
    EXPECT_EQ(control.myCompFactorLabel, "The compression factor cannot be more than 100 and less than 0.");
  });
}

TEST_F(ExportEstimate, OfNothingIsRed) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "0");
    EXPECT_EQ(control.uiTxtMB.textColor(), TextColor::Red);
    edit(control, control.uiTxtCols, "10");
    EXPECT_EQ(control.uiTxtMB.textColor(), TextColor::Normal);
  });
}

}  // namespace
}  // namespace vlclientui::test
