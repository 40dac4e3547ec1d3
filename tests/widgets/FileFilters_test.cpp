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

}  // namespace
}  // namespace vlclientui::widgets
