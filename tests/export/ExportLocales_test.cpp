// What is easy to get wrong about shown numbers, each under a point and under two kinds of comma.

#include <array>
#include <string>

#include <gmock/gmock.h>

#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

using testing::HasSubstr;

class ExportLocales : public ExportFixture, public testing::WithParamInterface<LocaleFormat> {
 protected:
  ExportLocales() { system->locale = GetParam(); }

  /// A text with a point, as the locale has it.
  static std::string shown(std::string text) {
    const auto point = text.find('.');
    return point == std::string::npos ? text : text.replace(point, 1, GetParam().decimalSeparator);
  }
  static void expectBox(const TextBox& box, const std::string& text) {
    EXPECT_EQ(box.text(), shown(text)) << box.name();
  }
};

TEST_P(ExportLocales, ShowNothingBeforeThePointOfAHalf) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtWidth, shown("0.5"));
    expectBox(control.uiTxtWidth, ".500");
    expectBox(control.uiTxtRight, "1000.500");
    expectBox(control.uiTxtGSDX, ".0005");
  });
}

TEST_P(ExportLocales, RoundHalvesOfPicturesAwayFromZero) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtLeft, shown("999.0625"));
    expectBox(control.uiTxtLeft, "999.063");
    edit(control, control.uiTxtLeft, shown("-999.0625"));
    expectBox(control.uiTxtLeft, "-999.063");
  });
}

TEST_P(ExportLocales, RoundHalvesOfColumnsAndRowsToTheEvenNeighbor) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtWidth, "625");
    edit(control, control.uiTxtHeight, "875");
    edit(control, control.uiTxtGSDX, "250");
    expectBox(control.uiTxtCols, "2");
    expectBox(control.uiTxtRows, "4");
  });
}

TEST_P(ExportLocales, ShowForcedDigitsForASizeOfNothing) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtBottom, control.uiTxtTop.text());
    expectBox(control.uiTxtHeight, "0.000");
    expectBox(control.uiTxtGSDY, "0.000");
    edit(control, control.uiTxtTop, "0");
    edit(control, control.uiTxtBottom, "0");
    expectBox(control.uiTxtTop, ".000");
    expectBox(control.uiTxtHeight, "0.000");
  });
}

TEST_P(ExportLocales, TakeTheFormOfTheOldTextInOneLoadAndOfTheNewInTheOthers) {
  service->metadata = imageMetadata({.xMin = "5.5"});
  service->info = serviceInfo({.xMin = "1000.25"});
  const std::string extents = exportExtents(customEnvelope("Mine", "7.5", "1", "9", "2"));
  show(
      [](ExportDialogForm&, ExportControl& control) {
        control.MainCombo.userSelects(1);
        expectBox(control.uiTxtLeft, "1000.250");
        control.MainCombo.userSelects(0);
        expectBox(control.uiTxtLeft, "5.500");
        control.MainCombo.userSelects(0);
        expectBox(control.uiTxtLeft, "5.500000000");
        control.MainCombo.userSelects(1);
        control.MainCombo.userSelects(3);
        expectBox(control.uiTxtLeft, "7.500000000");
        expectBox(control.uiTxtBottom, "1.000000000");
      },
      extents);
}

TEST_P(ExportLocales, EmptyTheRightEdgeAtARefusalAndRestoreTheOthers) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtRight, "letters");
    expectBox(control.uiTxtRight, "");
    edit(control, control.uiTxtTop, "letters");
    expectBox(control.uiTxtTop, "2000.000");
  });
}

TEST_P(ExportLocales, EstimateByQualityBandsAndSize) {
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    edit(control, control.uiTxtCompression, shown("99.5"));
    expectBox(control.uiTxtMB, "3");
    edit(control, control.uiTxtCompression, "75");
    expectBox(control.uiTxtMB, "0.508");
    edit(control, control.uiTxtCompression, "-1");
    expectBox(control.uiTxtMB, "0.508");
    selectFormat(control, "PNG");
    edit(control, control.uiTxtRows, "3300");
    expectBox(control.uiTxtMB, "9.9");
    edit(control, control.uiTxtRows, "3500");
    expectBox(control.uiTxtMB, "11");
  });
  service->metadata = imageMetadata({.bands = "1"});
  show([](ExportDialogForm&, ExportControl& control) { expectBox(control.uiTxtMB, "2"); });
}

TEST_P(ExportLocales, ComplainOfAQualityAboveAHundredBySmallParts) {
  show([](ExportDialogForm&, ExportControl& control) {
    selectFormat(control, "JPEG");
    edit(control, control.uiTxtCompression, shown("100.5"));
    EXPECT_EQ(control.uiTxtCompression.textColor(), TextColor::Red);
    EXPECT_EQ(control.uiTxtCompression.complaint(), control.myCompFactorLabel);
    edit(control, control.uiTxtCompression, "100");
    EXPECT_EQ(control.uiTxtCompression.complaint(), "");
  });
}

TEST_P(ExportLocales, WritePointsIntoTheRequestAndLeaveThemInTheBoxes) {
  show([](ExportDialogForm&, ExportControl& control) {
    edit(control, control.uiTxtWidth, shown("500.25"));
    control.OnClose();
    EXPECT_THAT(control.finalXml, HasSubstr("<Right>1500.250</Right>"));
    EXPECT_THAT(control.finalXml, HasSubstr("<Width>500.250</Width>"));
    EXPECT_EQ(control.uiTxtWidth.text(), "500.250");
    EXPECT_EQ(control.uiTxtGSDX.text(), ".5003");
  });
}

TEST_P(ExportLocales, SendTheSizeOfADegreeServiceFinerThanElevenMeters) {
  service->metadata = imageMetadata(
      {.xMin = "7.5", .yMin = "46.5", .xMax = "7.50003", .yMax = "46.50002", .rows = "10", .columns = "10"});
  service->info = serviceInfo({.xMin = "7", .yMin = "46", .xMax = "8", .yMax = "47"});
  show([this](ExportDialogForm& form, ExportControl& control) {
    expectBox(control.uiTxtRight, "7.500030000");
    expectBox(control.uiTxtWidth, ".000030000");
    expectBox(control.uiTxtHeight, ".000020000");
    expectBox(control.uiTxtGSDX, ".000003000000");
    expectBox(control.uiTxtMB, "0.0003");
    form.controls().Command1.userClicks();
    EXPECT_TRUE(toolkit->messages().empty());
  });
  EXPECT_THAT(service->exportRequest, HasSubstr("<Top>46.500020000</Top><Left>7.500000000</Left>"));
  EXPECT_THAT(service->exportRequest, HasSubstr("<Width>.000030000</Width><Height>.000020000</Height>"));
  EXPECT_THAT(service->exportRequest, HasSubstr("<ApproxMB>0.0003</ApproxMB>"));
}

TEST_P(ExportLocales, FollowAPixelSizeFinerThanElevenMeters) {
  service->metadata = imageMetadata({.xMin = "7", .yMin = "46", .xMax = "7.001", .yMax = "46.001"});
  service->info = serviceInfo({.xMin = "7", .yMin = "46", .xMax = "8", .yMax = "47"});
  show([this](ExportDialogForm& form, ExportControl& control) {
    edit(control, control.uiTxtGSDX, shown("0.000015"));
    expectBox(control.uiTxtCols, "67");
    expectBox(control.uiTxtRight, "7.001005000");
    expectBox(control.uiTxtWidth, ".001005000");
    expectBox(control.uiTxtGSDX, ".000015000000");
    expectBox(control.uiTxtGSDY, ".000015000000");
    edit(control, control.uiTxtWidth, shown("1.34E-05"));
    expectBox(control.uiTxtRight, "7.000013400");
    expectBox(control.uiTxtGSDX, ".000000200000");
    form.controls().Command1.userClicks();
    EXPECT_TRUE(toolkit->messages().empty());
  });
  EXPECT_THAT(service->exportRequest, HasSubstr("<Width>.000013400</Width>"));
}

TEST_P(ExportLocales, SendNumbersOfSixteenDigitsAsTheyAre) {
  show([](ExportDialogForm& form, ExportControl& control) {
    edit(control, control.uiTxtLeft, "0");
    edit(control, control.uiTxtRight, "3E+15");
    expectBox(control.uiTxtRight, "3000000000000000.000");
    expectBox(control.uiTxtWidth, "3000000000000000.000");
    expectBox(control.uiTxtGSDX, "3000000000000.0000");
    form.controls().Command1.userClicks();
  });
  EXPECT_TRUE(toolkit->messages().empty());
  EXPECT_THAT(service->exportRequest, HasSubstr("<Right>3000000000000000.000</Right>"));
  EXPECT_THAT(service->exportRequest, HasSubstr("<Width>3000000000000000.000</Width>"));
}

std::string localeName(const testing::TestParamInfo<LocaleFormat>& info) {
  return std::array{"enUS", "deDE", "frFR", "deCH"}[info.index];
}

INSTANTIATE_TEST_SUITE_P(Locales, ExportLocales,
                         testing::Values(LocaleFormat{}, germanFormat(), frenchFormat(),
                                         LocaleFormat{".", "\u2019", "CHF"}),
                         localeName);

}  // namespace
}  // namespace vlclientui::test
