// What tells that a raster is not the one of another day.
#include "client/raster/ContentMark.h"

#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

class ContentMarks : public test::RasterFixture {
 protected:
  static void touch(const fs::path& file) {
    fs::last_write_time(file, fs::last_write_time(file) + std::chrono::milliseconds(3));
  }
  [[nodiscard]] fs::path virtualOf(const std::string& name, const std::string& source) const {
    return writeText(name,
                     "<VRTDataset rasterXSize='8' rasterYSize='6'><VRTRasterBand dataType='Byte' band='1'>"
                     "<SimpleSource><SourceFilename relativeToVRT='1'>" +
                         source + "</SourceFilename></SimpleSource></VRTRasterBand></VRTDataset>");
  }
};

TEST_F(ContentMarks, StayWhileNothingIsWritten) {
  const fs::path raster = makeRaster("a.tif");
  EXPECT_EQ(contentMark(raster), contentMark(raster));
}

TEST_F(ContentMarks, TellAFileThatWasWrittenAgainInTheSameSecond) {
  const fs::path raster = makeRaster("a.tif");
  const std::string before = contentMark(raster);
  touch(raster);
  EXPECT_NE(contentMark(raster), before);
}

TEST_F(ContentMarks, TellSourcesThatChangeThroughVirtualRastersInVirtualRasters) {
  const fs::path source = makeRaster("a.tif");
  static_cast<void>(virtualOf("inner.vrt", "a.tif"));
  const fs::path outer = virtualOf("outer.vrt", "inner.vrt");
  const std::string before = contentMark(outer);
  EXPECT_EQ(contentMark(outer), before);
  touch(source);
  EXPECT_NE(contentMark(outer), before);
}

TEST_F(ContentMarks, DoNotFollowStatisticsThatOthersWriteDown) {
  const fs::path raster = makeRaster("a.tif");
  const std::string before = contentMark(raster);
  static_cast<void>(writeText("a.tif.aux.xml", "<PAMDataset/>"));
  EXPECT_EQ(contentMark(raster), before);
}

TEST_F(ContentMarks, AreNoneWhereThereIsNoRaster) {
  EXPECT_THROW(static_cast<void>(contentMark(folder() / "gone.tif")), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::client
