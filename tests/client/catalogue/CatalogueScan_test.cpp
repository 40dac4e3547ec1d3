#include "client/catalogue/CatalogueScan.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr auto definitionPath =
    "<Vorlane><MosaicDefinition><Sources><Source><File>parts/a.tif</File></Source></Sources>"
    "</MosaicDefinition></Vorlane>";

class CatalogueScan : public test::RasterFixture {
 protected:
  [[nodiscard]] std::vector<std::string> names(ScanDepth depth = ScanDepth::Tree) const {
    std::vector<std::string> out;
    for (const CatalogueEntry& entry : scanCatalogue(folder(), xml(), depth).entries) {
      out.push_back(entry.folder + "|" + entry.file.filename().string());
    }
    return out;
  }
};

using Names = std::vector<std::string>;

TEST_F(CatalogueScan, ListsFilesByFolderAndNameInByteOrder) {
  for (const char* name : {"b.tif", "a.tif", "Z.tif", "sub/deep/x.tif", "sub/y.tif"}) writeText(name, "-");
  EXPECT_EQ(names(), (Names{"|Z.tif", "|a.tif", "|b.tif", "sub|y.tif", "sub/deep|x.tif"}));
}

TEST_F(CatalogueScan, ListsOneFolderOnlyWhenAskedTo) {
  writeText("a.tif", "-");
  writeText("sub/b.tif", "-");
  EXPECT_EQ(names(ScanDepth::OneFolder), Names{"|a.tif"});
}

TEST_F(CatalogueScan, LeavesOutHiddenFoldersButNoHiddenFiles) {
  writeText(".hidden.tif", "-");
  writeText(".git/a.tif", "-");
  writeText("a.tif", "-");
  EXPECT_EQ(names(), (Names{"|.hidden.tif", "|a.tif"}));
}

TEST_F(CatalogueScan, LeavesOutWhatOnlyStandsBesideARaster) {
  for (const char* name : {"a.tif", "a.tif.aux.xml", "a.tif.ovr", "a.tfw", "a.prj", "a.TFW", "a.msk"}) {
    writeText(name, "-");
  }
  EXPECT_EQ(names(), Names{"|a.tif"});
}

TEST_F(CatalogueScan, LeavesOutTheSourcesOfAMosaic) {
  writeText("m.VLDef", definitionPath);
  writeText("m.sources/a.tif", "-");
  writeText("m.sources/deep/b.tif", "-");
  writeText("m.sourcesOther/c.tif", "-");
  EXPECT_EQ(names(), (Names{"|m.VLDef", "m.sourcesOther|c.tif"}));
}

TEST_F(CatalogueScan, LeavesOutTheFolderThatTheDefinitionNames) {
  writeText("m.VLDef",
            "<Vorlane><MosaicDefinition><SourceFolder>parts</SourceFolder><Sources><Source>"
            "<File>parts/a.tif</File></Source></Sources></MosaicDefinition></Vorlane>");
  writeText("parts/a.tif", "-");
  writeText("b.tif", "-");
  EXPECT_EQ(names(), (Names{"|b.tif", "|m.VLDef"}));
}

TEST_F(CatalogueScan, LeavesThatFolderOutHoweverItIsWritten) {
  writeText("parts/a.tif", "-");
  writeText("parts/deep/b.tif", "-");
  for (const char* const name : {"parts/", "./parts", "parts/.", "parts//", "deep/../parts/"}) {
    writeText("m.VLDef", "<Vorlane><MosaicDefinition><SourceFolder>" + std::string(name) +
                             "</SourceFolder><Sources><Source><File>parts/a.tif</File></Source></Sources>"
                             "</MosaicDefinition></Vorlane>");
    EXPECT_EQ(names(), Names{"|m.VLDef"}) << name;
  }
}

TEST_F(CatalogueScan, KeepsSourcesThatStandAmongTheServices) {
  writeText("m.VLDef", definitionPath);
  writeText("parts/a.tif", "-");
  EXPECT_EQ(names(), (Names{"|m.VLDef", "parts|a.tif"}));
}

TEST_F(CatalogueScan, ReportsABrokenDefinitionAndGoesOn) {
  writeText("m.VLDef", "<Vorlane><MosaicDefinition>");
  writeText("a.tif", "-");
  EXPECT_EQ(names(), Names{"|a.tif"});
  const auto problems = scanCatalogue(folder(), xml()).problems;
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0].path, (folder() / "m.VLDef").string());
  EXPECT_EQ(problems[0].reason, "the mosaic definition is not well-formed XML");
}

TEST_F(CatalogueScan, EndsOnFoldersLinkedInACircle) {
  writeText("sub/a.tif", "-");
  fs::create_directory_symlink(folder(), folder() / "sub" / "up");
  EXPECT_EQ(names(), Names{"sub|a.tif"});
}

TEST_F(CatalogueScan, ListsAFolderWhereItStandsWhateverLinksLeadToIt) {
  writeText("Zeal/a.tif", "-");
  writeText("Above/b.tif", "-");
  fs::create_directory_symlink(folder() / "Zeal", folder() / "Alias");
  fs::create_directory_symlink(folder() / "Zeal", folder() / "Above" / "Deeper");
  EXPECT_EQ(names(), (Names{"Above|b.tif", "Zeal|a.tif"}));
}

TEST_F(CatalogueScan, ListsAFolderElsewhereBehindTheFirstLinkToIt) {
  writeText("catalogue/z.tif", "-");
  writeText("elsewhere/a.tif", "-");
  fs::create_directory_symlink(folder() / "elsewhere", folder() / "catalogue" / "One");
  fs::create_directory_symlink(folder() / "elsewhere", folder() / "catalogue" / "Two");
  const auto entries = scanCatalogue(folder() / "catalogue", xml()).entries;
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[1].folder, "One");
}

TEST_F(CatalogueScan, ReportsALinkThatLeadsNowhere) {
  fs::create_symlink(folder() / "gone.tif", folder() / "link.tif");
  EXPECT_EQ(names(), Names{});
  EXPECT_EQ(scanCatalogue(folder(), xml()).problems.at(0).reason, "the link leads nowhere");
}

TEST_F(CatalogueScan, ReportsNamesThatAreNoText) {
  for (const char* name : {"a\xFF.tif", "a\x7F.tif", "a\nb.tif"}) writeText(name, "-");
  writeText("a\\b.tif", "-");
  EXPECT_EQ(names(), Names{"|a\\b.tif"});
  EXPECT_EQ(scanCatalogue(folder(), xml()).problems.size(), 3U);
}

TEST_F(CatalogueScan, KeepsNamesOfOtherScripts) {
  writeText(
      "\xE5\x9C\xB0\xE5\x9B\xBE/\xC3\xBC"
      "ber.tif",
      "-");
  EXPECT_EQ(names(), Names{"\xE5\x9C\xB0\xE5\x9B\xBE|\xC3\xBC"
                           "ber.tif"});
}

}  // namespace
}  // namespace vlclientui::client
