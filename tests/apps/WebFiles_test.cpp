// vlhost on files of a web server, beside the same files of this machine.
#include <array>
#include <cstdio>
#include <cstdlib>

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "platform/TemporaryFolder.h"
#include "servers/MapServer.h"
#include "support/TestFolders.h"

namespace vlclientui::vlhost {
namespace {

using vlclientui::test::StaticServer;

class WebFiles : public platform::TemporaryFolder {
 protected:
  struct Result {
    int status = 0;
    std::string output;
  };
  /// Both streams, as they come.
  static Result run(const std::string& arguments) {
    Result result;
    FILE* const pipe = popen((VLHOST_PROGRAM " " + arguments + " 2>&1").c_str(), "r");
    std::array<char, 4096> part{};
    for (std::size_t size = 0; (size = fread(part.data(), 1, part.size(), pipe)) > 0;)
      result.output.append(part.data(), size);
    result.status = pclose(pipe);
    return result;
  }
  static std::vector<std::int16_t> pixelsOf(const std::string& file) {
    GDALAllRegister();
    const auto raster = GDALDatasetUniquePtr(GDALDataset::Open(file.c_str()));
    if (!raster) return {};
    const int width = raster->GetRasterXSize();
    const int height = raster->GetRasterYSize();
    std::vector<std::int16_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    EXPECT_EQ(raster->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, width, height, pixels.data(), width, height,
                                                 GDT_Int16, 0, 0, nullptr),
              CE_None);
    return pixels;
  }

  const std::string server_ = StaticServer::samples().address();
};

TEST_F(WebFiles, AreListedWithTheirFolders) {
  const Result listed = run("services " + server_ + "/");
  EXPECT_EQ(listed.status, 0) << listed.output;
  for (const std::string words : {"Elevation/Terrain_30m ", "World/EGM96_Geoid ", "6 x UInt16", "7 services",
                                  "Imagery/Overlap_Study ", "Imagery/Valley/Ortho_Mosaic "})
    EXPECT_NE(listed.output.find(words), std::string::npos) << words << "\n" << listed.output;
}

TEST_F(WebFiles, AreExportedWithThePixelsOfTheSameFilesOfThisMachine) {
  const std::string options = " --cols 300 --rows 200 --extent 455000 5144000 470000 5160000 -o ";
  for (const std::string& reference :
       {server_ + "/Elevation/Terrain_30m", server_ + "/Elevation/Terrain_30m.tif/Terrain_30m",
        samplesFolder() + "/Elevation/Terrain_30m"}) {
    const std::string file = path(reference.starts_with("http") ? "web.Tif" : "local.Tif");
    const Result exported = run("export ImageService://" + reference + options + file);
    ASSERT_EQ(exported.status, 0) << exported.output;
    const std::vector<std::int16_t> pixels = pixelsOf(file);
    EXPECT_EQ(pixels.size(), 60000U);
    if (reference.starts_with("http")) std::filesystem::rename(file, path("last.Tif"));
  }
  EXPECT_TRUE(pixelsOf(path("last.Tif")) == pixelsOf(path("local.Tif")));
}

TEST_F(WebFiles, ThatAreNotThereAreToldWithTheReason) {
  const Result listed = run("services " + server_ + "/none.tif");
  EXPECT_NE(listed.status, 0);
  EXPECT_NE(listed.output.find("does not answer: "), std::string::npos) << listed.output;
  EXPECT_NE(run("export ImageService://" + server_ + "/none -o " + path("a.tif")).status, 0);
  EXPECT_TRUE(names().empty());
}

}  // namespace
}  // namespace vlclientui::vlhost
