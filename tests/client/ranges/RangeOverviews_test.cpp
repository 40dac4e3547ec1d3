// Images of strangers that name files of this machine as their overviews.
#include "client/ranges/RangeFixture.h"

namespace vlclientui::client::ranges {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::FaultProxy;

class RangeOverviews : public RangeFixture {
 protected:
  RangeOverviews() { make("overviews.tif", "GTiff", 64); }

  /// @param driver whose files hold metadata themselves.
  void makeNaming(const std::string& name, const std::string& overviews,
                  const std::string& driver = "GTiff") {
    make("plain.tif", "GTiff", 128);
    const GdalScope scope;
    const DatasetPtr plain = openRaster(path("plain.tif"));
    ASSERT_TRUE(plain);
    DatasetPtr memory(GetGDALDriverManager()->GetDriverByName("MEM")->CreateCopy("", plain.get(), FALSE,
                                                                                 nullptr, nullptr, nullptr));
    memory->SetMetadataItem("OVERVIEW_FILE", overviews.c_str(), "OVERVIEWS");
    std::string option = "WRITE_METADATA=YES";
    const std::array<char*, 2> options = {driver == "GTiff" ? nullptr : option.data(), nullptr};
    const DatasetPtr made(
        GetGDALDriverManager()
            ->GetDriverByName(driver.c_str())
            ->CreateCopy(path(name).c_str(), memory.get(), FALSE, options.data(), nullptr, nullptr));
    ASSERT_TRUE(made) << scope.firstFailure("");
    // Copies of this format leave such metadata out.
    if (driver == "GTiff") made->SetMetadataItem("OVERVIEW_FILE", overviews.c_str(), "OVERVIEWS");
  }

  std::string sideCar() {
    return "<PAMDataset><Metadata domain=\"OVERVIEWS\"><MDI key=\"OVERVIEW_FILE\">" + path("overviews.tif") +
           "</MDI></Metadata></PAMDataset>";
  }

  static int overviewsOf(const std::string& name) {
    const GdalScope scope;
    const DatasetPtr raster = opened(name);
    return raster ? raster->GetRasterBand(1)->GetOverviewCount() : -1;
  }

  void tell(const FaultProxy& server, const std::vector<std::string>& names) {
    RemoteFiles::shared().tellFolder(server.address("/"), names);
  }
};

TEST_F(RangeOverviews, AreNoneThatAnImageNamesItself) {
  makeNaming("a.tif", path("overviews.tif"));
  makeNaming("a.jp2", path("overviews.tif"), "JP2OpenJPEG");
  const FaultProxy server{fs::path(folder_)};
  for (const std::string name : {"a.tif", "a.jp2"}) {
    EXPECT_EQ(overviewsOf(path(name)), 1) << name << " of this machine may";
    EXPECT_EQ(overviewsOf(rangeRasterName(server.address("/" + name))), 0) << name;
  }
  EXPECT_FALSE(fs::exists(path("a.tif.aux.xml")));
}

TEST_F(RangeOverviews, AreNoneThatASourceOfAMosaicNames) {
  makeNaming("a.tif", path("overviews.tif"));
  for (const std::string source : {"a", "plain"}) {
    write(source + ".vrt",
          R"(<VRTDataset rasterXSize="128" rasterYSize="128"><VRTRasterBand dataType="Byte" band="1">)"
          R"(<SimpleSource><SourceFilename relativeToVRT="1">)" +
              source + ".tif</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>");
  }
  const FaultProxy server{fs::path(folder_)};
  const DatasetPtr remote = opened(rangeRasterName(server.address("/a.vrt")));
  const DatasetPtr local = opened(path("a.vrt"));
  const DatasetPtr plain = opened(path("plain.vrt"));
  ASSERT_TRUE(remote && local && plain);
  EXPECT_NE(pixelsOf(*local, 64, 64), pixelsOf(*plain, 64, 64)) << "on this machine it may";
  EXPECT_EQ(pixelsOf(*remote, 64, 64), pixelsOf(*plain, 64, 64));
}

TEST_F(RangeOverviews, AreNoneThatASideCarNames) {
  make("a.tif", "GTiff", 128);
  write("a.tif.aux.xml", sideCar());
  const FaultProxy server{fs::path(folder_)};
  const std::string name = rangeRasterName(server.address("/a.tif"));
  tell(server, {"a.tif", "a.tif.aux.xml"});
  EXPECT_EQ(overviewsOf(path("a.tif")), 1);
  EXPECT_EQ(overviewsOf(name), 0);
}

TEST_F(RangeOverviews, BesideImagesAreImagesThemselves) {
  make("a.tif", "GTiff", 128);
  make("b.tif", "GTiff", 128);
  makeNaming("b.tif.ovr", path("overviews.tif"));
  for (const std::string start : {"", "GIF8", "BM"}) {
    write("a.tif.ovr", start +
                           R"(<VRTDataset rasterXSize="64" rasterYSize="64"><VRTRasterBand dataType="Byte" )"
                           R"(band="1"><SimpleSource><SourceFilename relativeToVRT="0">)" +
                           path("overviews.tif") +
                           "</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>");
    RemoteFiles::shared().forget();
    const FaultProxy server{fs::path(folder_)};
    const std::string name = rangeRasterName(server.address("/a.tif"));
    tell(server, {"a.tif", "a.tif.ovr", "b.tif", "b.tif.ovr"});
    EXPECT_EQ(overviewsOf(name), 0) << start;
    EXPECT_EQ(overviewsOf(rangeRasterName(server.address("/b.tif"))), 1) << "its own, and none of these";
  }
}

TEST_F(RangeOverviews, AndSourcesAreNoAddressesOfMemory) {
  const std::string memory = "MEM:::DATAPOINTER=4096,PIXELS=128,LINES=128";
  makeNaming("a.tif", memory);
  EXPECT_EQ(overviewsOf(path("a.tif")), 0);
  const GdalScope scope;
  EXPECT_FALSE(openRaster(memory));
}

}  // namespace
}  // namespace vlclientui::client::ranges
