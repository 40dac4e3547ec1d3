#include "widgets/FileFilters.h"

#include <gtest/gtest.h>

namespace vlclientui::widgets {
namespace {

TEST(FileFilters, LabelsAndPatternsBecomeNameFilters) {
  EXPECT_EQ(nameFiltersOf(QStringLiteral("Images|*.tif;*.jp2|Texts|*.txt")),
            QStringList({QStringLiteral("Images (*.tif *.jp2)"), QStringLiteral("Texts (*.txt)")}));
}

TEST(FileFilters, BlanksAndRepeatedPatternsAreDropped) {
  EXPECT_EQ(nameFiltersOf(QStringLiteral("Definition (*.VLDef) |*.VLDef")),
            QStringList(QStringLiteral("Definition (*.VLDef)")));
}

TEST(FileFilters, AllFilesAlsoMeansFilesWithoutADot) {
  EXPECT_EQ(nameFiltersOf(QStringLiteral("All files (*.*)|*.*")),
            QStringList(QStringLiteral("All files (*)")));
}

TEST(FileFilters, EmptyFilterAndALabelAloneGiveNothing) {
  EXPECT_TRUE(nameFiltersOf(QString()).isEmpty());
  EXPECT_TRUE(nameFiltersOf(QStringLiteral("Images")).isEmpty());
}

TEST(FileFilters, TheSuffixIsThatOfTheFirstPattern) {
  EXPECT_EQ(suffixOf(QStringLiteral("VLRef (*.VLRef)")), QStringLiteral("VLRef"));
  EXPECT_EQ(suffixOf(QStringLiteral("Images (of maps) (*.tif *.jp2)")), QStringLiteral("tif"));
  EXPECT_EQ(suffixOf(QStringLiteral("All files (*)")), QString());
  EXPECT_EQ(suffixOf(QStringLiteral("Years (a*.tif)")), QString());
  EXPECT_EQ(suffixOf(QString()), QString());
}

}  // namespace
}  // namespace vlclientui::widgets
