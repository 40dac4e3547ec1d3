#include <gmock/gmock.h>

#include "export/PixelTypes.h"
#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;

constexpr std::size_t current = 0;
constexpr std::size_t defaultKind = 1;
constexpr std::size_t firstCustom = 3;

std::vector<std::string> edgesOf(const ExportControl& control) {
  return {control.uiTxtLeft.text(), control.uiTxtTop.text(), control.uiTxtRight.text(),
          control.uiTxtBottom.text()};
}

class ExportExtents : public ExportFixture {};

// The current view.

TEST_F(ExportExtents, OfTheCurrentViewRecalculatesAndKeepsTheGridOnceAPersonEdits) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtCols, "500");
    edit(control, control.uiTxtRight, "9000");
    control.MainCombo.userSelects(current);
    EXPECT_THAT(edgesOf(control), ElementsAre("1000.000", "2000.000", "2000.000", "1000.000"));
    EXPECT_EQ(control.uiTxtCols.text(), "500");
    EXPECT_EQ(control.uiTxtGSDX.text(), "2.0000");
    EXPECT_EQ(control.uiTxtMB.text(), "1.5");
  });
}

TEST_F(ExportExtents, OfTheCurrentViewPicksFormsByWhatTheBoxHeldBefore) {
  service->metadata = imageMetadata({.xMin = "10.5"});
  show([](ExportDialogForm&, ExportControl& control) {
    // Three loads at first display: old texts "", then "500.000" of the default extent, then "10.500".
    EXPECT_EQ(control.uiTxtLeft.text(), "10.500000000");
    edit(control, control.uiTxtLeft, "5000");
    control.MainCombo.userSelects(current);
    EXPECT_EQ(control.uiTxtLeft.text(), "10.500");
    EXPECT_EQ(control.uiTxtGSDY.text(), "1.0000");
    control.MainCombo.userSelects(current);
    EXPECT_EQ(control.uiTxtLeft.text(), "10.500000000");
    EXPECT_EQ(control.uiTxtGSDY.text(), "1.000000000000");
  });
}

TEST_F(ExportExtents, OfTheCurrentViewTakesGroundFormsWhenTheBoxWasEmpty) {
  service->metadata = imageMetadata({.xMin = "10.5"});
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtLeft.userTypes("");
    control.MainCombo.userSelects(current);
    EXPECT_EQ(control.uiTxtLeft.text(), "10.500");
  });
}

TEST_F(ExportExtents, OfTheCurrentViewStopsBeforeAnythingIsWrittenWhenTheBoxHeldLetters) {
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtLeft.userTypes("abc");
    control.uiTxtTop.userTypes("7");
    control.MainCombo.userSelects(current);
    EXPECT_EQ(control.uiTxtLeft.text(), "abc");
    EXPECT_EQ(control.uiTxtTop.text(), "7");
  });
}

TEST_F(ExportExtents, LeavesABoxWhoseElementIsAbsentAsItWas) {
  service->metadata = imageMetadata({.xMin = "", .yMax = "", .rows = "", .columns = ""});
  show([](ExportDialogForm&, ExportControl& control) {
    EXPECT_THAT(edgesOf(control), ElementsAre("500.000", "2500.000", "2000.000", "1000.000"));
    EXPECT_EQ(control.uiTxtRows.text(), "1000");
  });
}

TEST_F(ExportExtents, SwapsReversedEdgesAndKeepsTheNegativeSizeUntilTheNextRecalculation) {
  service->metadata = imageMetadata({.xMin = "2000", .yMin = "2000", .xMax = "1000", .yMax = "1000"});
  show([](ExportDialogForm&, ExportControl& control) {
    EXPECT_THAT(edgesOf(control), ElementsAre("1000.000", "2000.000", "2000.000", "1000.000"));
    EXPECT_EQ(control.uiTxtWidth.text(), "-1000.000");
    EXPECT_EQ(control.uiTxtHeight.text(), "-1000.000");
    EXPECT_EQ(control.uiTxtWidth.textColor(), TextColor::Red);
    visit(control, control.uiTxtTop);
    EXPECT_EQ(control.uiTxtWidth.text(), "1000.000");
    EXPECT_EQ(control.uiTxtWidth.textColor(), TextColor::Normal);
    EXPECT_EQ(control.myWidthLabel, "");
  });
}

TEST_F(ExportExtents, OfAMalformedDocumentChangesNoBox) {
  service->metadata = "<Vorlane>";
  show([](ExportDialogForm&, ExportControl& control) {
    EXPECT_THAT(edgesOf(control), ElementsAre("500.000", "2500.000", "2500.000", "500.000"));
    EXPECT_EQ(control.uiTxtCols.text(), "1000");
    EXPECT_EQ(control.uiTxtMB.text(), "0");
  });
}

// The default extent.

TEST_F(ExportExtents, OfTheServiceSetsTheGridToAThousandAndLeavesPixelSizesAndEstimateAlone) {
  service->metadata = imageMetadata({.rows = "100", .columns = "100"});
  show([](ExportDialogForm&, ExportControl& control) {
    control.MainCombo.userSelects(defaultKind);
    EXPECT_THAT(edgesOf(control), ElementsAre("500.000", "2500.000", "2500.000", "500.000"));
    EXPECT_EQ(control.uiTxtCols.text(), "1000");
    EXPECT_EQ(control.uiTxtRows.text(), "1000");
    EXPECT_EQ(control.uiTxtWidth.text(), "2000.000");
    EXPECT_EQ(control.uiTxtHeight.text(), "2000.000");
    EXPECT_EQ(control.uiTxtGSDX.text(), "10.0000");
    EXPECT_EQ(control.uiTxtGSDY.text(), "10.0000");
    EXPECT_EQ(control.uiTxtMB.text(), "0.03");
  });
}

TEST_F(ExportExtents, OfTheServicePicksFormsByTheNewText) {
  service->info = serviceInfo({.xMin = "-359.5"});
  show([](ExportDialogForm&, ExportControl& control) {
    control.MainCombo.userSelects(defaultKind);
    EXPECT_EQ(control.uiTxtLeft.text(), "-359.500000000");
    EXPECT_EQ(control.uiTxtTop.text(), "2500.000000000");
  });
}

TEST_F(ExportExtents, CountsThreeHundredAndSixtyAsGroundUnits) {
  for (const auto& [left, shown] :
       {std::pair{"360", "360.000"}, std::pair{"-360", "-360.000"}, std::pair{"359.9999", "359.999900000"}}) {
    service->info = serviceInfo({.xMin = left});
    show([shown](ExportDialogForm&, ExportControl& control) {
      control.MainCombo.userSelects(defaultKind);
      EXPECT_EQ(control.uiTxtLeft.text(), shown);
    });
  }
}

TEST_F(ExportExtents, OfTheServiceSwapsBeforeItComputesTheSize) {
  service->info = serviceInfo({.xMin = "2500", .yMin = "2500", .xMax = "500", .yMax = "500"});
  show([](ExportDialogForm&, ExportControl& control) {
    control.MainCombo.userSelects(defaultKind);
    EXPECT_EQ(control.uiTxtWidth.text(), "2000.000");
    EXPECT_EQ(control.uiTxtHeight.text(), "2000.000");
    EXPECT_THAT(edgesOf(control), ElementsAre("500.000", "2500.000", "2500.000", "500.000"));
  });
}

TEST_F(ExportExtents, OfAServiceWhoseLimitExceedsSixteenBitsEndsAtTheLimit) {
  service->info = serviceInfo({.maxColumns = "40000", .maxRows = "50"});
  show([](ExportDialogForm&, ExportControl& control) {
    control.MainCombo.userSelects(defaultKind);
    EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
    edit(control, control.uiTxtCols, "32000");
    edit(control, control.uiTxtRows, "32000");
    EXPECT_EQ(control.myColsLabel, "");
    EXPECT_EQ(control.myRowsLabel, "");
  });
}

TEST_F(ExportExtents, OfAServiceWhoseRowLimitExceedsSixteenBitsKeepsTheLimitOfColumns) {
  service->info = serviceInfo({.maxColumns = "50", .maxRows = "40000"});
  show([](ExportDialogForm&, ExportControl& control) {
    control.MainCombo.userSelects(defaultKind);
    EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
    edit(control, control.uiTxtCols, "51");
    edit(control, control.uiTxtRows, "32000");
    EXPECT_NE(control.myColsLabel, "");
    EXPECT_EQ(control.myRowsLabel, "");
  });
}

TEST_F(ExportExtents, OfAServiceWhosePixelSizeIsNoNumberEndsThere) {
  service->info = serviceInfo({.pixelSize = "wide"});
  service->metadata = imageMetadata({.rows = "7", .columns = "7"});
  show([](ExportDialogForm&, ExportControl& control) {
    control.MainCombo.userSelects(defaultKind);
    EXPECT_EQ(control.uiTxtLeft.text(), "500.000");
    EXPECT_EQ(control.uiTxtCols.text(), "7");
    EXPECT_EQ(control.uiTxtWidth.text(), "1000.000");
  });
}

TEST_F(ExportExtents, OfAServiceWhoseLeftEdgeIsNoNumberEndsThere) {
  service->info = serviceInfo({.xMin = "west"});
  show([](ExportDialogForm&, ExportControl& control) {
    control.MainCombo.userSelects(defaultKind);
    EXPECT_EQ(control.uiTxtLeft.text(), "west");
    EXPECT_EQ(control.uiTxtTop.text(), "2000.000");
  });
}

TEST_F(ExportExtents, ReadNumbersThatPassThroughNoBoxWithAPoint) {
  system->locale = germanFormat();
  service->info = serviceInfo({.maxColumns = "99.6", .pixelSize = "1.5"});
  service->metadata = imageMetadata({.bands = "3.0"});
  show([](ExportDialogForm&, ExportControl& control) {
    EXPECT_EQ(control.uiTxtMB.text(), "3");
    edit(control, control.uiTxtCols, "101");
    EXPECT_EQ(
        control.myColsLabel,
        "Number of columns cannot be more than the maximum columns allowed. [Max. columns allowed: 100]");
  });
}

// The host's extents.

TEST_F(ExportExtents, OfTheHostPicksFormsByTheNewTextAndRecalculates) {
  show(
      [](ExportDialogForm&, ExportControl& control) {
        control.MainCombo.userSelects(firstCustom);
        EXPECT_THAT(edgesOf(control),
                    ElementsAre("10.500000000", "21.000000000", "20.500000000", "1.000000000"));
        EXPECT_EQ(control.uiTxtWidth.text(), "10.000000000");
        EXPECT_EQ(control.uiTxtGSDX.text(), ".010000000000");
        EXPECT_EQ(control.uiTxtCols.text(), "1000");
      },
      exportExtents(customEnvelope("A", "10.5", "1", "20.5", "21")));
}

TEST_F(ExportExtents, OfTheHostSwapsAfterTheRecalculation) {
  show(
      [](ExportDialogForm&, ExportControl& control) {
        EXPECT_THAT(edgesOf(control), ElementsAre("1000.000", "4000.000", "3000.000", "2000.000"));
        EXPECT_EQ(control.uiTxtWidth.text(), "-2000.000");
        EXPECT_EQ(control.uiTxtHeight.text(), "-2000.000");
      },
      exportExtents(customEnvelope("A", "3000", "4000", "1000", "2000")));
}

TEST_F(ExportExtents, OfTheHostShowSmallEdgesUnderEveryLocale) {
  const std::string extents = exportExtents(customEnvelope("A", "300", "0.000015", "300.00004", "0.00009"));
  for (const LocaleFormat& locale : {LocaleFormat{}, germanFormat(), frenchFormat()}) {
    system->locale = locale;
    show(
        [&](ExportDialogForm&, ExportControl& control) {
          const std::string& point = locale.decimalSeparator;
          EXPECT_EQ(control.uiTxtBottom.text(), point + "000015000");
          EXPECT_EQ(control.uiTxtTop.text(), point + "000090000");
          EXPECT_EQ(control.uiTxtWidth.text(), point + "000040000");
          EXPECT_EQ(control.uiTxtHeight.text(), point + "000075000");
          EXPECT_EQ(control.uiTxtGSDX.text(), point + "000000040000");
        },
        extents);
  }
}

TEST_F(ExportExtents, NamedByNoEnvelopeLoadsNothing) {
  show(
      [](ExportDialogForm&, ExportControl& control) {
        customEnvelopes().clear();
        control.MainCombo.userSelects(current);
        control.MainCombo.userSelects(firstCustom);
        EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
      },
      exportExtents(customEnvelope("A", "3000", "4000", "1000", "2000")));
}

TEST_F(ExportExtents, OfAPersonLoadsNothing) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtLeft, "1500");
    control.MainCombo.userSelects(2);
    EXPECT_EQ(control.uiTxtLeft.text(), "1500.000");
  });
}

TEST_F(ExportExtents, OfAPersonLoadsNothingEvenWhereAnExtentOfTheHostHasItsName) {
  show(
      [](ExportDialogForm&, ExportControl& control) {
        EXPECT_EQ(control.MainCombo.text(), "Custom Extent");
        EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
        control.MainCombo.userSelects(2);
        EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
      },
      exportExtents(customEnvelope("Custom Extent", "3000", "2000", "4000", "4000")));
}

TEST_F(ExportExtents, OfTheHostAreNotLoadedByThePlainShow) {
  auto envelope = std::make_shared<Envelope>();
  envelope->Description("A");
  customEnvelopes().push_back(std::move(envelope));
  for (const Boolean16 extended : {boolean16False, boolean16True}) {
    ExportControl control(nullptr);
    control.MainComboValues = {"A"};
    control.ExModalCalled = extended;
    control.windowAppeared();
    EXPECT_EQ(control.MainCombo.text(), "A");
    EXPECT_EQ(control.uiTxtLeft.text().empty(), extended == boolean16False);
  }
}

TEST_F(ExportExtents, PickedAgainRunsAgain) {
  show([](ExportDialogForm&, ExportControl& control) {
    control.uiTxtLeft.userTypes("1500");
    control.MainCombo.userSelects(current);
    EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
  });
}

// Locales.

TEST_F(ExportExtents, ShowDocumentNumbersWithTheUsersSeparator) {
  service->metadata = imageMetadata({.xMin = "1010.5", .xMax = "2010.75"});
  for (const LocaleFormat& locale : {germanFormat(), frenchFormat()}) {
    system->locale = locale;
    show([](ExportDialogForm&, ExportControl& control) {
      EXPECT_EQ(control.uiTxtLeft.text(), "1010,500");
      EXPECT_EQ(control.uiTxtRight.text(), "2010,750");
      EXPECT_EQ(control.uiTxtWidth.text(), "1000,250");
      EXPECT_EQ(control.uiTxtGSDX.text(), "1,0003");
      EXPECT_EQ(control.uiTxtCols.text(), "1000");
    });
  }
}

TEST_F(ExportExtents, ShowTenAndAHalfWithGroundFormsUnderAComma) {
  system->locale = germanFormat();
  service->metadata = imageMetadata({.yMin = "10.5"});
  show([](ExportDialogForm&, ExportControl& control) { EXPECT_EQ(control.uiTxtBottom.text(), "10,500"); });
}

TEST_F(ExportExtents, TurnThePointsThatAnOkLeftBehindBackIntoTheUsersSeparator) {
  system->locale = frenchFormat();  // where a point is no part of a number
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    edit(control, control.uiTxtCompression, "99,5");
    control.OnClose();
    EXPECT_EQ(control.uiTxtGSDX.text(), "1.0000");
    control.MainCombo.userSelects(defaultKind);
    EXPECT_EQ(control.uiTxtGSDX.text(), "1,0000");
    EXPECT_EQ(control.uiTxtCompression.text(), "99,5");
  });
}

TEST_F(ExportExtents, ReadTheSeparatorAnewAtEachLoad) {
  service->metadata = imageMetadata({.xMin = "1000.5"});
  service->info = serviceInfo({.xMin = "500.5"});
  for (const auto& [entry, left] : {std::pair{current, "1000"}, std::pair{defaultKind, "500"}}) {
    system->locale = {};
    show([this, entry, left](ExportDialogForm&, ExportControl& control) {
      system->locale = germanFormat();
      control.MainCombo.userSelects(entry);
      EXPECT_EQ(control.uiTxtLeft.text(), left + std::string(",500"));
      system->locale = {};
      control.MainCombo.userSelects(entry);
      EXPECT_EQ(control.uiTxtLeft.text(), left + std::string(".500"));
    });
  }
}

// Pixel facts.

TEST_F(ExportExtents, OfThePlainShowEstimateNothing) {
  showPlainly([](ExportDialogForm&, ExportControl& control) {
    EXPECT_EQ(control.uiTxtMB.text(), "0");
    EXPECT_EQ(control.uiTxtMB.textColor(), TextColor::Red);
    EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
    control.MainCombo.userSelects(defaultKind);
    EXPECT_EQ(control.uiTxtLeft.text(), "500.000");
  });
}

TEST_F(ExportExtents, PlainAfterExtendedEstimateNothingEither) {
  show([](ExportDialogForm&, ExportControl& control) { EXPECT_EQ(control.uiTxtMB.text(), "3"); });
  showPlainly([](ExportDialogForm&, ExportControl& control) { EXPECT_EQ(control.uiTxtMB.text(), "0"); });
}

TEST_F(ExportExtents, EstimateByThePixelTypeInAnyCase) {
  for (const auto& [type, size] :
       {std::pair{"byte", "3"}, std::pair{"FLOAT64", "24"}, std::pair{"odd", "0"}, std::pair{"", "0"}}) {
    service->metadata = imageMetadata({.pixelType = type});
    show([type, size](ExportDialogForm&, ExportControl& control) {
      EXPECT_EQ(control.uiTxtMB.text(), size) << type;
    });
  }
}

TEST_F(ExportExtents, WithTooManyBandsForSixteenBitsAreNotLoaded) {
  service->metadata = imageMetadata({.bands = "40000"});
  show([](ExportDialogForm&, ExportControl& control) {
    EXPECT_EQ(control.uiTxtMB.text(), "0");
    control.MainCombo.userSelects(defaultKind);
    EXPECT_EQ(control.uiTxtLeft.text(), "1000.000");
  });
}

TEST(PixelTypes, HaveTheBytesOfTheirParts) {
  const std::pair<const char*, int> table[] = {
      {"BYTE", 1},    {"UINT16", 2}, {"INT16", 2},  {"UINT32", 4},   {"INT32", 4},    {"FLOAT32", 4},
      {"FLOAT64", 8}, {"CINT16", 2}, {"CINT32", 4}, {"CFLOAT32", 4}, {"CFLOAT64", 8}, {"ELEVATION", 4},
      {"other", 0},   {"", 0},       {"uInt16", 2}, {" BYTE", 0},
  };
  for (const auto& [name, bytes] : table) EXPECT_EQ(bytesPerSampleOf(name), bytes) << name;
}

}  // namespace
}  // namespace vlclientui::test
