#include "documents/ExportFormats.h"

#include <set>
#include <string>

#include <gmock/gmock.h>

#include "documents/TextCase.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;

std::string entryFor(const char* fileName) {
  const ExportFormat* const format = exportFormatOf(fileName);
  return format ? format->entry : "(none)";
}

TEST(ExportFormatTable, ListsItsEntriesInTheOrderOfTheWindow) {
  std::vector<std::string> entries;
  for (const ExportFormat& format : exportFormats()) entries.emplace_back(format.entry);
  EXPECT_THAT(entries, ElementsAre("TIFF-No Compression", "TIFF-JPEG", "TIFF-LZ77", "JPEG", "JP2", "PNG"));
}

TEST(ExportFormatTable, FindsEachEntryByItsTextAlone) {
  for (const ExportFormat& format : exportFormats()) EXPECT_EQ(findExportFormat(format.entry), &format);
  EXPECT_EQ(findExportFormat("png"), nullptr);
  EXPECT_EQ(findExportFormat(""), nullptr);
}

TEST(ExportFormatTable, HasOneRowForEachKindOfFileAndNoEndingTwice) {
  std::set<std::string> endings;
  for (const FileFormatRow& row : fileFormats()) {
    EXPECT_EQ(&rowOf(row.format), &row);
    EXPECT_TRUE(endings.insert(lowerCased(row.ending)).second) << row.ending;
    const std::string other = row.otherEnding;
    EXPECT_TRUE(other.empty() || endings.insert(other).second) << other;
  }
  std::set<FileFormat> written;
  for (const ExportFormat& format : exportFormats()) written.insert(format.file);
  EXPECT_EQ(written.size(), fileFormats().size());
}

TEST(ExportFormatTable, FindsTheNamesOfARequestInAnyCase) {
  for (const FileFormatRow& row : fileFormats()) {
    EXPECT_EQ(findFileFormat(lowerCased(row.requestName)), &row);
    EXPECT_EQ(findFileFormat(upperCased(row.requestName)), &row);
  }
  EXPECT_EQ(findFileFormat("Tif"), nullptr);
  EXPECT_EQ(findFileFormat(""), nullptr);
  for (const Compression each : {Compression::None, Compression::Jpeg, Compression::Lz77}) {
    const Compression* const found = findCompression(lowerCased(requestName(each)));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(*found, each);
  }
  EXPECT_EQ(findCompression("LZW"), nullptr);
}

TEST(ExportFormatTable, TellsTheFormatOfAFileByTheEndingOfItsName) {
  EXPECT_EQ(entryFor("a.tif"), "TIFF-No Compression");
  EXPECT_EQ(entryFor("a.TIFF"), "TIFF-No Compression");
  EXPECT_EQ(entryFor("C:\\out\\a.jpg"), "JPEG");
  EXPECT_EQ(entryFor("/out/a.b.JPEG"), "JPEG");
  EXPECT_EQ(entryFor("a.jp2"), "JP2");
  EXPECT_EQ(entryFor("a.png"), "PNG");
}

TEST(ExportFormatTable, TellsNoFormatForAnEndingThatNoneHas) {
  EXPECT_EQ(entryFor("a.bmp"), "(none)");
  EXPECT_EQ(entryFor("a"), "(none)");
  EXPECT_EQ(entryFor("a."), "(none)");
  EXPECT_EQ(entryFor(""), "(none)");
  EXPECT_EQ(entryFor("out.png/a"), "(none)");
  EXPECT_EQ(entryFor("out.png\\a"), "(none)");
  EXPECT_EQ(entryFor("apng"), "(none)");
}

TEST(ExportFormatTable, KnowsAFilesOwnEndingsInAnyCase) {
  EXPECT_TRUE(hasEndingOf("a.tif", FileFormat::Tiff));
  EXPECT_TRUE(hasEndingOf("a.Tiff", FileFormat::Tiff));
  EXPECT_FALSE(hasEndingOf("a.png", FileFormat::Tiff));
  EXPECT_FALSE(hasEndingOf("a", FileFormat::Jpeg2000));
}

TEST(ExportFormatTable, TellsAPersonAllEndingsAndAllFormats) {
  EXPECT_EQ(allEndings(), ".tif, .tiff, .jpeg, .jpg, .jp2, .png");
  EXPECT_EQ(allFileFormats(), "Tiff, JPEG, JPEG2000 and PNG");
}

TEST(ExportFormatTable, ShowsInTheFilterTheEndingThatIsWritten) {
  for (const FileFormatRow& row : fileFormats()) {
    const std::string pattern = std::string("*.") + row.ending;
    EXPECT_EQ(row.filter, std::string(row.ending) + " (" + pattern + ") | " + pattern);
  }
}

}  // namespace
}  // namespace vlclientui::test
