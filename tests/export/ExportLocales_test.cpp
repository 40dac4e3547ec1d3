// The rules of shown numbers that are easy to get wrong, each under a point and under two kinds of comma.

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

TEST_P(ExportLocales, RoundHalvesOfColumnsAndRowsToTheEvenNeighbour) {
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
    EXPECT_EQ(control.uiTxtCompression.textColour(), TextColour::Red);
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

std::string localeName(const testing::TestParamInfo<LocaleFormat>& info) {
  return std::array{"enUS", "deDE", "frFR"}[info.index];
}

INSTANTIATE_TEST_SUITE_P(Locales, ExportLocales,
                         testing::Values(LocaleFormat{}, germanFormat(), frenchFormat()), localeName);

}  // namespace
}  // namespace vlclientui::test
