#include "client/raster/Subdatasets.h"

#include <string>

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

/// A file of rasters as formats describe theirs.
class FileOfRasters : public testing::Test {
 protected:
  [[nodiscard]] ContainerContent holding(int count) const {
    for (int number = 1; number <= count; ++number) {
      const std::string key = "SUBDATASET_" + std::to_string(number);
      const std::string name = "FORMAT:\"/data/a.nc\":part" + std::to_string(number);
      file_->SetMetadataItem((key + "_NAME").c_str(), name.c_str(), "SUBDATASETS");
      file_->SetMetadataItem((key + "_DESC").c_str(), "a raster", "SUBDATASETS");
    }
    return subdatasetsOf(*file_, "/data/a.nc");
  }

  GdalScope scope_;
  DatasetPtr file_{GetGDALDriverManager()->GetDriverByName("MEM")->Create("", 1, 1, 0, GDT_Byte, nullptr)};
};

TEST_F(FileOfRasters, ListsAThousand) {
  const ContainerContent content = holding(1000);
  EXPECT_EQ(content.rasters.size(), 1000U);
  EXPECT_EQ(content.rasters.back().inner, "part1000");
  EXPECT_EQ(content.problem, "");
}

TEST_F(FileOfRasters, TellsWhatItHoldsBeyondAThousand) {
  const ContainerContent content = holding(1001);
  EXPECT_EQ(content.rasters.size(), 1000U);
  EXPECT_EQ(content.problem, "it holds 1001 rasters, of which the first 1000 are listed");
}

}  // namespace
}  // namespace vlclientui::client
