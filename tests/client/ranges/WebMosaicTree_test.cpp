// Virtual rasters within virtual rasters, counted before any of them is opened.
#include "client/ranges/WebMosaicTree.h"

#include <gtest/gtest.h>

#include "client/ranges/RangeFixture.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client::ranges {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::FaultProxy;

/// Virtual rasters by their names.
class MosaicTrees : public testing::Test {
 protected:
  std::string refusal(const std::string& root) {
    MosaicTree tree([this](const std::string& name) -> MosaicTree::Found {
      ++read_;
      const auto found = nodes_.find(name);
      if (found == nodes_.end()) return MosaicTree::Other{};
      return found->second;
    });
    return tree.refusal(nodes_.at(root));
  }

  /// Each names the next one several times.
  void makeChain(int length, std::size_t times) {
    for (int i = 0; i < length; ++i)
      nodes_[std::to_string(i)] = {100, times, std::vector<std::string>(times, std::to_string(i + 1))};
  }

  std::map<std::string, MosaicNode> nodes_;
  int read_ = 0;
};

TEST_F(MosaicTrees, ThatAreSmallAreOpenedAndEachMosaicIsReadOnce) {
  makeChain(3, 10);
  EXPECT_EQ(refusal("0"), "");
  EXPECT_EQ(read_, 3) << "the third one leads to an image";
}

TEST_F(MosaicTrees, AreAsDeepAsTheBoundAndNoDeeper) {
  makeChain(MosaicTree::deepest, 1);
  EXPECT_EQ(refusal("0"), "");
  makeChain(MosaicTree::deepest + 1, 1);
  EXPECT_EQ(refusal("0"), "virtual rasters stand more than 8 deep in each other");
}

TEST_F(MosaicTrees, ThatHoldThemselvesAreTooDeep) {
  nodes_["0"] = {100, 1, {"1"}};
  nodes_["1"] = {100, 2, {"0", "0"}};
  EXPECT_EQ(refusal("0"), "virtual rasters stand more than 8 deep in each other");
}

TEST_F(MosaicTrees, OfFewMosaicsThatMultiplyAreRefusedAtOnce) {
  makeChain(6, 10);
  EXPECT_EQ(refusal("0"), "it leads to more than 100000 sources");
  EXPECT_LE(read_, 6);
  nodes_["0"] = {100, MosaicTree::mostSources + 1, {}};
  EXPECT_EQ(refusal("0"), "it leads to more than 100000 sources");
}

TEST_F(MosaicTrees, OfTooManyOrTooLargeMosaicsAreRefused) {
  MosaicNode& root = nodes_["root"];
  for (std::size_t i = 0; i < MosaicTree::mostMosaics; ++i) {
    root.mayBeMosaics.push_back(std::to_string(i));
    nodes_[std::to_string(i)] = {100, 1, {}};
  }
  root.sources = root.mayBeMosaics.size();
  const std::string tooMany = "it leads to more than 1000 virtual rasters, or to 64 MB of them";
  EXPECT_EQ(refusal("root"), tooMany);
  nodes_.at("root").mayBeMosaics.resize(2);
  EXPECT_EQ(refusal("root"), "");
  nodes_.at("1").bytes = MosaicTree::mostBytes;
  EXPECT_EQ(refusal("root"), tooMany);
}

TEST_F(MosaicTrees, EndWhereNothingMoreIsToBeRead) {
  MosaicTree tree([this](const std::string&) -> MosaicTree::Found {
    ++read_;
    return std::string("enough");
  });
  EXPECT_EQ(tree.refusal({100, 3, {"a", "b", "c"}}), "enough");
  EXPECT_EQ(read_, 1);
}

class NestedMosaics : public RangeFixture {
 protected:
  void writeMosaic(const std::string& name, const std::string& source, int times) {
    std::string sources;
    for (int i = 0; i < times; ++i)
      sources +=
          "<SimpleSource><SourceFilename relativeToVRT=\"1\">" + source + "</SourceFilename></SimpleSource>";
    write(name, R"(<VRTDataset rasterXSize="64" rasterYSize="64"><VRTRasterBand dataType="Byte" band="1">)" +
                    sources + "</VRTRasterBand></VRTDataset>");
  }

  /// A row of virtual rasters that multiply to more sources than anybody reads.
  void writeBomb() {
    make("a.tif", "GTiff", 64);
    for (int i = 0; i < 7; ++i)
      writeMosaic(std::to_string(i) + ".vrt", i == 6 ? "a.tif" : std::to_string(i + 1) + ".vrt", 40);
  }

  static std::string refusalOf(const std::string& name) {
    const GdalScope scope;
    const DatasetPtr raster = openRaster(name);
    return raster ? std::string() : scope.firstFailure("");
  }
};

TEST_F(NestedMosaics, HaveThePixelsOfTheSameOnesOfThisMachine) {
  make("a.tif", "GTiff", 64);
  writeMosaic("0.vrt", "1.vrt", 1);
  writeMosaic("1.vrt", "a.tif", 1);
  const FaultProxy server{fs::path(folder_)};
  const DatasetPtr remote = opened(rangeRasterName(server.address("/0.vrt")));
  const DatasetPtr local = opened(path("0.vrt"));
  ASSERT_TRUE(remote && local);
  EXPECT_EQ(pixelsOf(*remote), pixelsOf(*local));
}

TEST_F(NestedMosaics, ThatMultiplyAreRefusedInWordsAndBeforeTheyAreOpened) {
  writeBomb();
  const FaultProxy server{fs::path(folder_)};
  const std::string address = server.address("/0.vrt");
  EXPECT_EQ(refusalOf(rangeRasterName(address)),
            "The virtual raster \"" + address + "\" is not opened: it leads to more than 100000 sources.");
  EXPECT_LE(server.counts().requests, 7U) << "each is read once";
}

TEST_F(NestedMosaics, MayNotCallThemselvesAnotherKindOfImage) {
  make("a.tif", "GTiff", 64);
  writeMosaic("b.tif", "a.tif", 1);
  writeMosaic("c", "a.tif", 1);
  const FaultProxy server{fs::path(folder_)};
  EXPECT_NE(refusalOf(rangeRasterName(server.address("/b.tif"))).find("is no image of a kind"),
            std::string::npos);
  EXPECT_EQ(refusalOf(rangeRasterName(server.address("/c"))), "");
}

TEST_F(NestedMosaics, AreGivenUpBetweenTheirParts) {
  make("a.tif", "GTiff", 64);
  writeMosaic("0.vrt", "1.vrt", 1);
  writeMosaic("1.vrt", "a.tif", 1);
  const FaultProxy server{fs::path(folder_)};
  const std::string name = rangeRasterName(server.address("/0.vrt"));
  CancelToken token;
  {
    const WaitScope scope(nullptr, token);
    token.cancel();
    EXPECT_NE(refusalOf(name), "");
  }
  EXPECT_EQ(server.counts().requests, 0U);
  EXPECT_EQ(refusalOf(name), "") << "and come for the next one who wants them";
}

TEST_F(NestedMosaics, AreReadAnewWhenTheyHaveChanged) {
  writeBomb();
  const FaultProxy server{fs::path(folder_)};
  const std::string name = rangeRasterName(server.address("/0.vrt"));
  EXPECT_NE(refusalOf(name), "");
  writeMosaic("0.vrt", "a.tif", 1);
  RemoteFiles::shared().forget();
  EXPECT_EQ(refusalOf(name), "");
}

}  // namespace
}  // namespace vlclientui::client::ranges
