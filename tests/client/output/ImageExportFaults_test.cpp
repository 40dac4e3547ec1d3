#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "client/ExportFixture.h"
#include "client/output/ImageExport.h"

namespace vlclientui::client {
namespace {

using test::contentOf;
using test::GetImage;
using test::holds;

class ExportFaults : public test::ExportFixture {};

TEST_F(ExportFaults, SourceIsNeverItsOwnTarget) {
  const auto source = makeNumbered("a.tif").string();
  const std::string before = contentOf(source);
  GetImage wanted = request("Tiff", "");
  wanted.fileName = source;
  EXPECT_TRUE(holds(exportFrom("a", wanted), "belongs to the service"));
  EXPECT_EQ(contentOf(source), before);
}

TEST_F(ExportFaults, CancelLeavesTheFormerFileAndNothingElse) {
  makeSlope();
  for (const std::string& format :
       {std::string("Tiff"), std::string("JPEG"), std::string("PNG"), std::string("JPEG2000")}) {
    writeText("out/former", "former");
    const auto made = service("ImageService://localhost/slope");
    double last = -1;
    int calls = 0;
    made->setProgress([&](double share) {
      EXPECT_GE(share, last);
      EXPECT_LE(share, 1);
      last = share;
      return ++calls < 1;
    });
    made->ExportProperties(wholeSlope(format, "former").document());
    EXPECT_FALSE(made->ExportImage()) << format;
    EXPECT_TRUE(holds(made->status(), "cancelled")) << made->status();
    EXPECT_TRUE(contentOf(out("former")) == "former");
    EXPECT_EQ(outputs(), (std::vector<std::string>{"former"})) << format;
  }
}

TEST_F(ExportFaults, CancelInTheMiddleLeavesNothingEither) {
  makeSlope();
  for (const std::string& format :
       {std::string("Tiff"), std::string("JPEG"), std::string("PNG"), std::string("JPEG2000")}) {
    writeText("out/former", "former");
    const auto made = service("ImageService://localhost/slope");
    double last = 0;
    made->setProgress([&](double share) {
      last = share;
      return share < 0.3;
    });
    GetImage wanted = wholeSlope(format, "former");
    wanted.columns = 4000;
    wanted.rows = 3000;
    made->ExportProperties(wanted.document());
    EXPECT_FALSE(made->ExportImage()) << format;
    EXPECT_LT(last, 1) << format;
    EXPECT_TRUE(holds(made->status(), "cancelled")) << made->status();
    EXPECT_TRUE(contentOf(out("former")) == "former");
    EXPECT_EQ(outputs(), (std::vector<std::string>{"former"})) << format;
  }
}

TEST_F(ExportFaults, ProgressRunsToItsEnd) {
  makeSlope();
  for (const std::string& format :
       {std::string("Tiff"), std::string("JPEG"), std::string("PNG"), std::string("JPEG2000")}) {
    const auto made = service("ImageService://localhost/slope");
    double last = -1;
    made->setProgress([&](double share) {
      last = share;
      return true;
    });
    made->ExportProperties(wholeSlope(format, "a." + format).document());
    EXPECT_TRUE(made->ExportImage());
    EXPECT_EQ(last, 1);
  }
}

// The image is small enough to be read in one piece, the source large enough for that to take time.
class ReducedExport : public test::ExportFixture, public testing::WithParamInterface<const char*> {
 protected:
  [[nodiscard]] GetImage wanted() const {
    test::RasterRecipe recipe;
    recipe.width = 10000;
    recipe.height = 10000;
    recipe.option = "SPARSE_OK=TRUE";
    makeRaster("large.tif", recipe);
    GetImage image = request(GetParam(), "former");
    image.extent = {500000, 4150000, 1500000, 5150000};
    image.columns = 100;
    image.rows = 100;
    return image;
  }
};

INSTANTIATE_TEST_SUITE_P(Formats, ReducedExport, testing::Values("Tiff", "JPEG", "PNG", "JPEG2000"),
                         [](const auto& one) { return std::string(one.param); });

TEST_P(ReducedExport, TellsHowFarItIsWhileTheOnlyWindowIsRead) {
  const GetImage image = wanted();
  const auto made = service("ImageService://localhost/large");
  double last = 0;
  int within = 0;
  made->setProgress([&](double share) {
    EXPECT_GE(share, last);
    if (share > last && share < 1) ++within;
    last = share;
    return true;
  });
  made->ExportProperties(image.document());
  EXPECT_TRUE(made->ExportImage()) << made->status();
  EXPECT_EQ(last, 1);
  EXPECT_GE(within, 2);
}

TEST_P(ReducedExport, IsCanceledWhileTheOnlyWindowIsRead) {
  const GetImage image = wanted();
  writeText("out/former", "former");
  const auto made = service("ImageService://localhost/large");
  int later = 0;
  double last = 0;
  made->setProgress([&](double share) {
    if (last > 0) ++later;
    last = share;
    return share == 0;
  });
  made->ExportProperties(image.document());
  EXPECT_FALSE(made->ExportImage());
  EXPECT_GT(last, 0);
  EXPECT_LT(last, 0.9);
  EXPECT_EQ(later, 0) << "asked on after the cancel";
  EXPECT_TRUE(holds(made->status(), "The export was cancelled.")) << made->status();
  EXPECT_EQ(contentOf(out("former")), "former");
  EXPECT_EQ(outputs(), (std::vector<std::string>{"former"}));
}

TEST_F(ExportFaults, SuccessReplacesTheFormerFileAndWhatDescribedIt) {
  const auto source = makeNumbered("a.tif").string();
  writeText("out/a.Tif", "former");
  writeText("out/a.Tif.aux.xml", "<PAMDataset><SRS>LOCAL_CS[\"wrong\"]</SRS></PAMDataset>");
  ASSERT_EQ(exportFrom("a", request("Tiff", "a.Tif")), "");
  EXPECT_EQ(test::valuesOf(out("a.Tif")), test::valuesOf(source));
  EXPECT_EQ(outputs(), (std::vector<std::string>{"a.Tif"}));
}

TEST_F(ExportFaults, LinkAsTargetLeadsToTheImageAfterwards) {
  const auto source = makeNumbered("a.tif").string();
  writeText("store/former.tif", "former");
  std::filesystem::permissions(folder() / "store/former.tif", std::filesystem::perms(0600));
  std::filesystem::create_symlink(folder() / "store/former.tif", out("a.PNG"));
  GetImage wanted = request("PNG", "a.PNG");
  wanted.worldFile = true;
  ASSERT_EQ(exportFrom("a", wanted), "");
  EXPECT_TRUE(std::filesystem::is_symlink(out("a.PNG")));
  EXPECT_EQ(test::valuesOf((folder() / "store/former.tif").string()), test::valuesOf(source));
  EXPECT_EQ(test::systemOf(out("a.PNG")), "32632");
  EXPECT_EQ(std::filesystem::status(out("a.PNG")).permissions(), std::filesystem::perms(0600));
  EXPECT_EQ(outputs(), (std::vector<std::string>{"a.PNG", "a.PNG.aux.xml", "a.pgw"}));
}

TEST_F(ExportFaults, FolderThatCannotBeWrittenIsToldOf) {
  makeNumbered("a.tif");
  GetImage wanted;
  wanted.fileName = "/proc/a.Tif";
  EXPECT_TRUE(holds(exportFrom("a", wanted), "/proc"));
  wanted.fileName = (folder() / "none" / "a.Tif").string();
  EXPECT_TRUE(holds(exportFrom("a", wanted), "no such folder"));
  wanted.fileName = (folder() / "out").string();
  EXPECT_TRUE(holds(exportFrom("a", wanted), "folder of this name"));
}

TEST_F(ExportFaults, SourceThatWentAwayIsNamed) {
  const auto source = makeNumbered("a.tif");
  const auto made = service("ImageService://localhost/a");
  std::filesystem::remove(source);
  made->ExportProperties(request("Tiff", "a.Tif").document());
  EXPECT_FALSE(made->ExportImage());
  EXPECT_TRUE(holds(made->status(), source.string())) << made->status();
  EXPECT_TRUE(outputs().empty());
}

// A tall column of sources: the first rows are written before the last are read.
TEST_F(ExportFaults, SourceOfAMosaicThatGoesAwayMeanwhileIsNamed) {
  std::string sources;
  for (int i = 0; i < 8; ++i) {
    test::RasterRecipe recipe;
    recipe.width = 400;
    recipe.height = 100;
    recipe.transform = {500000, 1, 0, 5150000.0 - 100 * i, 0, -1};
    const std::string name = "m.sources/" + std::to_string(i) + ".tif";
    makeNumbered(name, recipe);
    sources += "<Source><File>" + name + "</File></Source>";
  }
  writeText("m.VLDef",
            "<Vorlane><MosaicDefinition><Sources>" + sources + "</Sources></MosaicDefinition></Vorlane>");
  writeText("out/former", "former");
  GetImage wanted = request("Tiff", "former");
  wanted.extent = {500000, 5149200, 500400, 5150000};
  wanted.columns = 4000;
  wanted.rows = 16000;
  const auto made = service("ImageService://localhost/m");
  const std::filesystem::path last = folder() / "m.sources/7.tif";
  made->setProgress([&](double) {
    std::filesystem::remove(last);
    return true;
  });
  made->ExportProperties(wanted.document());
  EXPECT_FALSE(made->ExportImage());
  EXPECT_TRUE(holds(made->status(), last.string())) << made->status();
  EXPECT_TRUE(contentOf(out("former")) == "former");
  EXPECT_EQ(outputs(), (std::vector<std::string>{"former"}));
}

// The header is intact, so the damage shows only when pixels are read.
TEST_F(ExportFaults, SourceThatIsCutOffIsNamed) {
  test::RasterRecipe recipe;
  recipe.width = 1000;
  recipe.height = 1000;
  const auto source = makeNumbered("a.tif", recipe);
  std::filesystem::resize_file(source, std::filesystem::file_size(source) / 2);
  writeText("out/former", "former");
  for (const std::string& format :
       {std::string("Tiff"), std::string("JPEG"), std::string("PNG"), std::string("JPEG2000")}) {
    GetImage wanted = request(format, "former");
    wanted.columns = 1000;
    wanted.rows = 1000;
    wanted.extent = {500000, 5050000, 600000, 5150000};
    const std::string message = exportFrom("a", wanted);
    EXPECT_TRUE(message.starts_with("The source cannot be read; its file is damaged, cut off or gone. "))
        << format << " " << message;
    EXPECT_TRUE(holds(message, source.string())) << format << " " << message;
    EXPECT_TRUE(contentOf(out("former")) == "former") << format;
    EXPECT_EQ(outputs(), (std::vector<std::string>{"former"})) << format;
  }
}

TEST_F(ExportFaults, LeftoversOfDeadProcessesAreSweptAway) {
  makeNumbered("a.tif");
  char host[256] = {};
  gethostname(host, sizeof host - 1);
  // No process has this number: the largest that the system gives is smaller.
  const std::string dead = std::string(".a.Tif.") + host + "-2000000000-1.partial";
  const std::string other = std::string(".b.Tif.") + host + "-2000000000-1.partial";
  writeText("out/" + dead + "/a.Tif", "half");
  writeText("out/" + other + "/b.Tif", "half");
  ASSERT_EQ(exportFrom("a", request("Tiff", "a.Tif")), "");
  EXPECT_EQ(outputs(), (std::vector<std::string>{other, "a.Tif"}));
}

}  // namespace
}  // namespace vlclientui::client
