#include "client/catalogue/Catalogue.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"

namespace vlclientui::client {
namespace {

using Names = std::vector<std::string>;

class Catalogue : public test::RasterFixture {
 protected:
  [[nodiscard]] CatalogueContent read() { return readCatalogue(folder(), xml(), cache_); }

  [[nodiscard]] Names names() {
    Names out;
    for (const ServiceRecord& service : read().services) out.push_back(service.name);
    return out;
  }

  [[nodiscard]] std::string fileOf(const std::string& name) {
    const auto entry = findService(folder(), name, xml(), cache_);
    return entry ? entry->file.lexically_relative(folder()).string() : "(none)";
  }

  void makeMosaic(const std::string& name, const Names& files) const {
    std::string rows;
    for (const std::string& file : files) rows += "<Source><File>" + file + "</File></Source>";
    writeText(name,
              "<Vorlane><MosaicDefinition><Sources>" + rows + "</Sources></MosaicDefinition></Vorlane>");
  }

  RasterCache cache_;
};

TEST_F(Catalogue, NamesServicesByFolderAndFileWithoutExtension) {
  makeRaster("b.tif");
  makeRaster("Sub/Deep/a.v2.tif");
  EXPECT_EQ(names(), (Names{"Sub/Deep/a.v2", "b"}));
}

TEST_F(Catalogue, FilesThatWouldShareANameKeepTheirExtensions) {
  makeRaster("a.tif");
  makeRaster("a.tiff");
  makeRaster("b.tif");
  EXPECT_EQ(names(), (Names{"a.tif", "a.tiff", "b"}));
}

TEST_F(Catalogue, FilesThatAreNoRastersTakeNoName) {
  makeRaster("a.tif");
  writeText("a.dat", "words");
  EXPECT_EQ(names(), Names{"a"});
  EXPECT_TRUE(read().problems.empty());
}

TEST_F(Catalogue, RastersAmongTextsAreServicesAndOtherTextsNoProblem) {
  writeText("dem.txt", "ncols 2\nnrows 2\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2\n3 4\n");
  writeText("notes.txt", "just words\n");
  writeText("empty.txt", "");
  writeText("points.txt", "1.5 2.5 10\n9.25 2.5 11\n3.125 8 12\n4 1 13\n");
  EXPECT_EQ(names(), Names{"dem"});
  EXPECT_EQ(fileOf("dem"), "dem.txt");
  EXPECT_TRUE(read().problems.empty());
}

TEST_F(Catalogue, TextsThatMayLeadToTheNetworkAreNotTried) {
  for (const char* name : {"dem.xml", "dem.json"}) {
    writeText(name, "ncols 2\nnrows 2\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2\n3 4\n");
  }
  EXPECT_EQ(names(), Names{});
  EXPECT_TRUE(read().problems.empty());
}

TEST_F(Catalogue, LeavesOutAndReportsWhatCannotBeRead) {
  makeRaster("a.tif");
  writeText("broken.tif", "II*\0");
  const CatalogueContent content = read();
  ASSERT_EQ(content.services.size(), 1U);
  ASSERT_EQ(content.problems.size(), 1U);
  EXPECT_EQ(content.problems[0].path, (folder() / "broken.tif").string());
  EXPECT_FALSE(content.problems[0].reason.empty());
}

TEST_F(Catalogue, ReportsAnEmptyFileThatBearsARastersName) {
  writeText("empty.tif", "");
  EXPECT_EQ(read().problems.size(), 1U);
}

TEST_F(Catalogue, MosaicIsOneServiceAroundItsSources) {
  makeRaster("m.sources/a.tif");
  test::RasterRecipe east;
  east.transform = {500600, 50, 0, 5150200, 0, -50};
  makeRaster("m.sources/b.tif", east);
  makeMosaic("m.VLDef", {"m.sources/a.tif", "m.sources/b.tif"});
  const CatalogueContent content = read();
  ASSERT_EQ(content.services.size(), 1U);
  const RasterFacts& facts = content.services[0].facts;
  EXPECT_EQ(facts.title, "m");
  EXPECT_EQ(facts.envelope, (Bounds{500000, 5149400, 501000, 5150200}));
  EXPECT_EQ(facts.pixelSize, 50);
  EXPECT_EQ(facts.columns, 20);
  EXPECT_EQ(facts.rows, 16);
}

TEST_F(Catalogue, MosaicReportsUnreadableSourcesAndStandsOnTheOthers) {
  makeRaster("m.sources/a.tif");
  makeMosaic("m.VLDef", {"m.sources/gone.tif", "m.sources/a.tif"});
  const CatalogueContent content = read();
  ASSERT_EQ(content.services.size(), 1U);
  ASSERT_EQ(content.problems.size(), 1U);
  EXPECT_EQ(content.problems[0].path, (folder() / "m.sources/gone.tif").string());
}

TEST_F(Catalogue, MosaicWithoutAnyReadableSourceIsAProblem) {
  makeMosaic("m.VLDef", {"gone.tif"});
  const CatalogueContent content = read();
  EXPECT_TRUE(content.services.empty());
  ASSERT_EQ(content.problems.size(), 2U);
  EXPECT_EQ(content.problems[1].reason, "none of the mosaic's sources can be read");
}

TEST_F(Catalogue, MosaicTakesSourcesOfOtherSystemsIntoTheFirsts) {
  makeRaster("m.sources/a.tif");
  test::RasterRecipe geographic;
  geographic.epsg = 4326;
  geographic.transform = {9.0, 0.01, 0, 46.6, 0, -0.01};
  makeRaster("m.sources/b.tif", geographic);
  makeMosaic("m.VLDef", {"m.sources/a.tif", "m.sources/b.tif"});
  const CatalogueContent content = read();
  ASSERT_EQ(content.services.size(), 1U);
  EXPECT_EQ(content.services[0].facts.srsId, "EPSG:32632");
  EXPECT_NEAR(content.services[0].facts.envelope.xMax, 506100, 200);
}

TEST_F(Catalogue, FindsOneServiceByItsName) {
  makeRaster("Sub/a.tif");
  makeRaster("b.tif");
  makeRaster("b.tiff");
  makeRaster("m.sources/c.tif");
  makeMosaic("m.VLDef", {"m.sources/c.tif"});
  EXPECT_EQ(fileOf("Sub/a"), "Sub/a.tif");
  EXPECT_EQ(fileOf("b.tiff"), "b.tiff");
  EXPECT_EQ(fileOf("m"), "m.VLDef");
}

TEST_F(Catalogue, FindsAFileByItsPlainNameBesideOthersThatAreShownAlike) {
  for (const char* file : {"a,b.tif", "a;b.tif", "a_b.tif", "Road.tif", "road.tif", "Sub/in.tif", "Sub.tif"})
    makeRaster(file);
  for (const std::string name : {"a,b", "a;b", "a_b", "Road", "road", "Sub", "Sub/in"})
    EXPECT_EQ(fileOf(name), name + ".tif");
  makeRaster("a,b.tiff");
  EXPECT_EQ(fileOf("a,b"), "(none)");
  EXPECT_EQ(fileOf("a,b.tiff"), "a,b.tiff");
}

TEST_F(Catalogue, FindsNothingUnderANameThatNoServiceBears) {
  makeRaster("a.tif");
  makeRaster("b.tif");
  makeRaster("b.tiff");
  EXPECT_EQ(fileOf("b"), "(none)");
  EXPECT_EQ(fileOf("a.tif"), "(none)");
  EXPECT_EQ(fileOf("Nowhere/a"), "(none)");
  EXPECT_EQ(fileOf(""), "(none)");
}

TEST_F(Catalogue, FindsNothingOutsideOfItselfNorWhatIsHidden) {
  makeRaster("inside/Sub/a.tif");
  makeRaster("inside/.hidden/b.tif");
  makeRaster("e.tif");
  const auto finds = [&](const std::string& name) {
    return findService(folder() / "inside", name, xml(), cache_).has_value();
  };
  EXPECT_TRUE(finds("Sub/a"));
  EXPECT_TRUE(finds("Sub//a"));
  for (const std::string& name :
       {std::string("../e"), std::string("Sub/../../e"), std::string("Sub/../Sub/a"), std::string("./Sub/a"),
        std::string("Sub/./a"), std::string(".hidden/b"), (folder() / "e").string(), std::string("/"),
        std::string(".."), std::string("Sub/")}) {
    EXPECT_FALSE(finds(name)) << name;
  }
}

TEST_F(Catalogue, EveryServiceIsFoundByTheNameItIsListedUnder) {
  for (const char* name : {"a.tif", "a.tiff", "x/b.c.tif", "x/b.tif", "\xC3\xBC.tif", "with blank.tif"}) {
    makeRaster(name);
  }
  for (const ServiceRecord& service : read().services) {
    EXPECT_EQ(folder() / fileOf(service.name), service.entry.file) << service.name;
  }
}

TEST_F(Catalogue, ReadsAFileAgainWhenItHasChanged) {
  makeRaster("a.tif");
  EXPECT_EQ(read().services[0].facts.columns, 8);
  test::RasterRecipe wide;
  wide.width = 300;
  makeRaster("a.tif", wide);
  EXPECT_EQ(read().services[0].facts.columns, 300);
}

TEST_F(Catalogue, ReadsManyFilesAtOnceInOrder) {
  for (int i = 100; i < 160; ++i) {
    test::RasterRecipe recipe;
    recipe.width = i;
    makeRaster("r" + std::to_string(i) + ".tif", recipe);
  }
  const CatalogueContent content = read();
  ASSERT_EQ(content.services.size(), 60U);
  for (const ServiceRecord& service : content.services) {
    EXPECT_EQ(service.name, "r" + std::to_string(service.facts.columns));
  }
}

}  // namespace
}  // namespace vlclientui::client
