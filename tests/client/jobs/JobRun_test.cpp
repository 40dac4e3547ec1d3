#include "client/facade/JobRun.h"

#include <atomic>
#include <filesystem>
#include <latch>
#include <string>
#include <thread>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "client/ExportFixture.h"
#include "client/facade/MadeFolders.h"
#include "client/jobs/ExportJob.h"
#include "client/jobs/JobDocument.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {
namespace {

using client::ExportJob;

class JobRun : public ExportFixture {
 protected:
  /// What a host has in its hands once a person pressed OK.
  ExportJob exportedBy(client::CatalogueImageService& service, const GetImage& request) const {
    service.ExportProperties(request.document());
    EXPECT_TRUE(service.ExportImage()) << service.status();
    return service.job();
  }
  void run(const ExportJob& job) const { client::runJob(job, server_, xml()); }
  ExportJob jobOfSlope(const std::string& file) const {
    makeSlope();
    ExportJob job = exportedBy(*service("ImageService://localhost/slope"), wholeSlope("Tiff", "a.tif"));
    job.file = out(file);
    return job;
  }
  std::string refusal(const ExportJob& job, const client::ExportProgress& progress = {}) const {
    try {
      client::runJob(job, server_, xml(), {{{}, progress}});
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
    return "done";
  }
};

TEST_F(JobRun, GivesTheSameFileAsTheExportThatItTells) {
  makeMosaic();
  const std::pair<const char*, const char*> formats[] = {
      {"Tiff", "JPEG"}, {"Tiff", "LZ77"}, {"JPEG2000", ""}, {"PNG", ""}};
  for (const auto& [format, compression] : formats) {
    GetImage wanted = request(format, "first");
    wanted.compression = compression;
    wanted.worldFile = true;
    const auto mosaic = service("ImageService://localhost/m");
    ExportJob job = exportedBy(*mosaic, wanted);
    job = client::readJob(client::jobDocument(job, xml()), "/", xml());
    job.file = out("second");
    run(job);
    EXPECT_FALSE(contentOf(out("first")).empty());
    EXPECT_TRUE(contentOf(out("first")) == contentOf(out("second"))) << format;
  }
}

TEST_F(JobRun, DrawsByThePropertiesOfTheJob) {
  makeMosaic();
  const auto mosaic = service("ImageService://localhost/m");
  mosaic->setServiceProperties(
      "<Vorlane><ImageServiceProperties><MosaicMethod>Lock Raster</MosaicMethod><LockImageID>2</LockImageID>"
      "</ImageServiceProperties></Vorlane>");
  GetImage wanted = request("Tiff", "locked.tif");
  wanted.extent = {500000, 5149400, 501800, 5150000};
  ExportJob job = exportedBy(*mosaic, wanted);
  job.file = out("again.tif");
  run(job);
  EXPECT_TRUE(contentOf(out("locked.tif")) == contentOf(out("again.tif")));
  job.properties.clear();
  run(job);
  EXPECT_FALSE(contentOf(out("locked.tif")) == contentOf(out("again.tif")));
}

TEST_F(JobRun, StandsInTheMetadataBesideTheImage) {
  makeSlope();
  GetImage wanted = wholeSlope("PNG", "a.png");
  wanted.metadata = true;
  const auto slope = service("ImageService://localhost/slope");
  const ExportJob job = exportedBy(*slope, wanted);
  const ExportJob told = client::readJob(client::jobDocument(job, xml()), "/", xml());
  EXPECT_EQ(client::openJob(out("a.png.xml"), xml()), told);
}

TEST_F(JobRun, MakesTheFoldersOfItsFile) {
  makeSlope();
  const auto slope = service("ImageService://localhost/slope");
  ExportJob job = exportedBy(*slope, wholeSlope("Tiff", "a.tif"));
  job.file = out("new/deep/a.tif");
  EXPECT_EQ(refusal(job), "done");
  EXPECT_TRUE(contentOf(out("a.tif")) == contentOf(out("new/deep/a.tif")));
  job.file = out("a.tif") + "/b/c.tif";
  EXPECT_THAT(refusal(job), testing::StartsWith("The folder " + out("a.tif") + "/b cannot be made: "));
}

TEST_F(JobRun, LeavesTheFolderToAnotherJobThatWritesThereWhenItFails) {
  const ExportJob failing = jobOfSlope("new/failing.tif");
  ExportJob other = failing;
  other.file = out("new/other.tif");
  std::latch hasFolder(1);
  std::latch otherWrites(1);
  std::latch hasFailed(1);
  std::thread giver([&] {
    refusal(failing, [&](double /*share*/) {
      hasFolder.count_down();
      otherWrites.wait();
      return false;
    });
    hasFailed.count_down();
  });
  hasFolder.wait();
  bool isFirst = true;
  const std::string told = refusal(other, [&](double /*share*/) {
    if (std::exchange(isFirst, false)) otherWrites.count_down();
    hasFailed.wait();
    return true;
  });
  giver.join();
  EXPECT_EQ(told, "done");
  EXPECT_TRUE(contentOf(out("a.tif")) == contentOf(out("new/other.tif")));
}

TEST_F(JobRun, MakesAFolderAnewThatAnotherJobTakesAway) {
  const std::filesystem::path folder = std::filesystem::path(out("")) / "many" / "deep";
  std::atomic<bool> isOver = false;
  std::thread other([&] {
    while (!isOver) client::MadeFolders{folder};
  });
  for (int i = 0; i < 2000; ++i) {
    const client::MadeFolders folders(folder);
    ASSERT_TRUE(std::filesystem::is_directory(folder)) << i;
  }
  isOver = true;
  other.join();
}

TEST_F(JobRun, RefusesAnExtentOfAnotherSystem) {
  makeSlope();
  const auto slope = service("ImageService://localhost/slope");
  ExportJob job = exportedBy(*slope, wholeSlope("Tiff", "a.tif"));
  ASSERT_EQ(job.system, slope->facts().srsId);
  job.file = out("b.tif");
  job.system = "EPSG:2056";
  EXPECT_EQ(refusal(job),
            "The extent of the job is in EPSG:2056, but the service is drawn in " + slope->facts().srsId);
  EXPECT_EQ(outputs(), std::vector<std::string>{"a.tif"});
  job.system.clear();
  EXPECT_EQ(refusal(job), "done");
}

TEST_F(JobRun, ComparesSystemsByTheirMeaning) {
  makeSlope();
  const auto slope = service("ImageService://localhost/slope");
  ExportJob job = exportedBy(*slope, wholeSlope("Tiff", "a.tif"));
  const std::string id = slope->facts().srsId;
  ASSERT_EQ(id.substr(0, 5), "EPSG:");
  std::string spaced = slope->facts().srsWkt;
  for (std::size_t at = spaced.find(','); at != std::string::npos; at = spaced.find(',', at + 2))
    spaced.insert(at + 1, " ");
  for (const std::string& written : {"epsg:" + id.substr(5), spaced}) {
    job.system = written;
    EXPECT_EQ(refusal(job), "done") << written;
  }
  for (const char* const other : {"EPSG:2056", "no system", "/etc/passwd"}) {
    job.system = other;
    EXPECT_THAT(refusal(job), testing::StartsWith("The extent of the job is in ")) << other;
  }
}

TEST_F(JobRun, NamesAFileWhateverItsPathHolds) {
  makeSlope();
  const std::filesystem::path folder = std::filesystem::path(out("")) / "flight #3?a";
  std::filesystem::create_directories(folder);
  const std::string raster = (folder / "a#b?token=c.tif").string();
  const auto slope = service("ImageService://localhost/slope");
  exportedBy(*slope, wholeSlope("Tiff", "a.tif"));
  std::filesystem::copy_file(out("a.tif"), raster);
  const auto named = service(raster);
  GetImage wanted = wholeSlope("Tiff", "first.tif");
  wanted.metadata = true;
  ExportJob job = exportedBy(*named, wanted);
  EXPECT_EQ(job.reference, raster);
  EXPECT_EQ(client::openJob(out("first.tif.xml"), xml()).reference, raster);
  job.file = out("second.tif");
  EXPECT_EQ(refusal(job), "done");
  EXPECT_TRUE(contentOf(out("first.tif")) == contentOf(out("second.tif")));
}

TEST_F(JobRun, TellsWhatTheExportWouldTell) {
  makeSlope();
  const auto slope = service("ImageService://localhost/slope");
  ExportJob job = exportedBy(*slope, wholeSlope("Tiff", "a.tif"));
  job.file = "/dev/null/a.tif";
  EXPECT_THAT(refusal(job), testing::HasSubstr("/dev/null"));
  job.reference = "ImageService://localhost/gone";
  EXPECT_THAT(refusal(job), testing::HasSubstr("gone"));
}

}  // namespace
}  // namespace vlclientui::test
