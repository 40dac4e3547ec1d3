// Numbers at the export window: degrees, and separators other than the point. Built once per window system.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenarios/ExportVisit.h"

namespace vlclientui::test {

namespace {

using testing::IsEmpty;

class ExportNumberScenarios : public ExportVisit {};

TEST_F(ExportNumberScenarios, DegreesHaveNineDecimals) {
  service->metadata = imageMetadata({.xMin = "5", .yMin = "44", .xMax = "12", .yMax = "48"});
  service->info = serviceInfo({.xMin = "5", .yMin = "44", .xMax = "12", .yMax = "48"});
  visit([&] {
    expectText("uiTxtLeft", "5.000000000");
    expectText("uiTxtGSDX", ".007000000000");
    expectText("uiTxtHeight", "4.000000000");
  });
}

TEST_F(ExportNumberScenarios, ACommaIsShownAndAPointWritten) {
  system->locale = germanFormat();
  service->metadata = imageMetadata({.xMax = "2000.5"});
  visit([&] {
    expectText("uiTxtRight", "2000,500");
    edit("uiTxtWidth", "10,5");
    expectText("uiTxtRight", "1010,500");
    person->click("Command1");
  });
  EXPECT_EQ(requested("Right"), "1010.500");
  EXPECT_EQ(requested("Width"), "10.500");
}

TEST_F(ExportNumberScenarios, ADegreeServiceOfAFewMetersIsExportedUnderEveryComma) {
  service->metadata = imageMetadata(
      {.xMin = "7.5", .yMin = "46.5", .xMax = "7.50003", .yMax = "46.50003", .rows = "10", .columns = "10"});
  service->info = serviceInfo({.xMin = "7", .yMin = "46", .xMax = "8", .yMax = "47"});
  for (const LocaleFormat& locale : {germanFormat(), frenchFormat()}) {
    system->locale = locale;
    service->exportRequest.clear();
    visit([&] {
      expectText("uiTxtWidth", ",000030000");
      edit("uiTxtHeight", "0,00002");
      expectText("uiTxtHeight", ",000020000");
      expectText("uiTxtGSDY", ",000002000000");
      person->click("Command1");
    });
    EXPECT_THAT(person->messages(), IsEmpty());
    EXPECT_TRUE(exported());
    EXPECT_EQ(requested("Width"), ".000030000");
    EXPECT_EQ(requested("Height"), ".000020000");
  }
}

}  // namespace

}  // namespace vlclientui::test
