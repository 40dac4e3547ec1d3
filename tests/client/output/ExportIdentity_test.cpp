// What makes an export another one than that of which pixels are kept.
#include "client/output/ExportIdentity.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;
using Order = std::vector<std::size_t>;

class ExportIdentities : public test::RasterFixture {
 protected:
  ExportIdentities() {
    for (const char* const name : {"left.tif", "right.tif", "far.tif"}) {
      ImageSource source;
      source.file = writeText(name, name);
      source.place = {0, 0, 10, 10};
      service.sources.push_back(source);
    }
    service.sources[1].place = {5, 0, 15, 10};
    service.sources[2].place = {100, 100, 110, 110};
    service.facts.srsWkt = "a system";
    request.grid = {{0, 0, 20, 10}, 40, 20};
    request.format = "Tiff";
    request.compression = "LZ77";
    request.tileSize = 256;
    request.quality = 75;
    request.file = folder() / "out.Tif";
  }

  [[nodiscard]] ExportIdentity identity() const { return exportIdentity(service, order, request); }

  ImageServiceRecord service;
  GetImageRequest request;
  Order order = {0, 1, 2};
};

TEST_F(ExportIdentities, DoNotDependOnKeysThatAddressesGetAnewEachDay) {
  service.sources[0].file = writeText("a.tif%3Fdate=1&sig=***", "a");
  const std::string before = identity().request;
  service.sources[0].file = writeText("a.tif%3Fdate=2&sig=***2", "a");
  EXPECT_EQ(identity().request, before);
  service.sources[0].file = writeText("b.tif%3Fdate=1&sig=***", "a");
  EXPECT_NE(identity().request, before);
  service.sources[0].file = writeText("a.tif%3Fdate=1", "a");
  EXPECT_NE(identity().request, before) << "no key";
}

TEST_F(ExportIdentities, AreTheSameInEveryRun) {
  const ExportIdentity one = identity();
  EXPECT_EQ(one, identity());
  EXPECT_EQ(one.request.size(), 16U);
  EXPECT_EQ(one.source.size(), 16U);
  EXPECT_EQ((one.request + one.source).find_first_not_of("0123456789abcdef"), std::string::npos);
}

TEST_F(ExportIdentities, FailWithTheFirstSourceThatCannotBeHad) {
  int asked = 0;
  const ExportIdentity told = exportIdentity(service, order, request, [&](double share) {
    EXPECT_EQ(share, 0);
    return ++asked > 0;
  });
  EXPECT_EQ(told, identity());
  service.sources[0].file = folder() / "gone.tif";
  EXPECT_THROW(static_cast<void>(identity()), RuntimeFailure);
}

struct Change {
  const char* what;
  std::function<void(ImageServiceRecord&, GetImageRequest&)> make;
};

TEST_F(ExportIdentities, ChangeWithAllThatThePixelsDependOn) {
  const std::vector<Change> changes = {
      {"left", [](auto& /*service*/, auto& asked) { asked.grid.extent.xMin = 1e-9; }},
      {"bottom", [](auto& /*service*/, auto& asked) { asked.grid.extent.yMin = -1; }},
      {"right", [](auto& /*service*/, auto& asked) { asked.grid.extent.xMax = 20.5; }},
      {"top", [](auto& /*service*/, auto& asked) { asked.grid.extent.yMax = 11; }},
      {"columns", [](auto& /*service*/, auto& asked) { asked.grid.columns = 41; }},
      {"columns for rows",
       [](auto& /*service*/, auto& asked) { std::swap(asked.grid.columns, asked.grid.rows); }},
      {"format", [](auto& /*service*/, auto& asked) { asked.format = "PNG"; }},
      {"compression", [](auto& /*service*/, auto& asked) { asked.compression = ""; }},
      {"tile size", [](auto& /*service*/, auto& asked) { asked.tileSize = 0; }},
      {"quality", [](auto& /*service*/, auto& asked) { asked.quality = 76; }},
      {"resampling", [](auto& made, auto& /*asked*/) { made.pixels.resampling = Resampling::Nearest; }},
      {"no data of 0", [](auto& made, auto& /*asked*/) { made.pixels.noData = 0; }},
      {"system", [](auto& made, auto& /*asked*/) { made.facts.srsWkt = "another system"; }},
      {"place", [](auto& made, auto& /*asked*/) { made.sources[1].place.xMin = 5.5; }}};
  const ExportIdentity before = identity();
  std::vector<std::string> marks = {before.request};
  for (const Change& change : changes) {
    ImageServiceRecord made = service;
    GetImageRequest asked = request;
    change.make(made, asked);
    const ExportIdentity after = exportIdentity(made, order, asked);
    EXPECT_EQ(std::ranges::count(marks, after.request), 0) << change.what;
    EXPECT_EQ(after.source, before.source) << change.what;
    marks.push_back(after.request);
  }
}

TEST_F(ExportIdentities, StayWhereThePixelsDo) {
  const std::vector<Change> changes = {
      {"capitals of the format", [](auto& /*service*/, auto& asked) { asked.format = "tIFF"; }},
      {"capitals of the compression", [](auto& /*service*/, auto& asked) { asked.compression = "lz77"; }},
      {"world file", [](auto& /*service*/, auto& asked) { asked.createsWorldFile = true; }},
      {"metadata", [](auto& /*service*/, auto& asked) { asked.exportsMetadata = true; }},
      {"name of the file", [](auto& /*service*/, auto& asked) { asked.fileName = "other"; }},
      {"zero with a sign", [](auto& /*service*/, auto& asked) { asked.grid.extent.xMin = -0.0; }},
      {"title", [](auto& made, auto& /*asked*/) { made.sources[0].facts.title = "other"; }},
      {"attributes",
       [](auto& made, auto& /*asked*/) {
         made.sources[0].attributes = {{"Year", "2021"}};
       }},
      {"a source far away", [](auto& made, auto& /*asked*/) { made.sources[2].file = "/missing.tif"; }}};
  const ExportIdentity before = identity();
  for (const Change& change : changes) {
    ImageServiceRecord made = service;
    GetImageRequest asked = request;
    change.make(made, asked);
    EXPECT_EQ(exportIdentity(made, order, asked), before) << change.what;
  }
}

TEST_F(ExportIdentities, ChangeWithTheSourcesThatTakePartAndTheirOrder) {
  const ExportIdentity before = identity();
  for (const Order& other : {Order{1, 0, 2}, Order{0}, Order{1}, Order{}}) {
    order = other;
    EXPECT_NE(identity().request, before.request);
    EXPECT_NE(identity().source, before.source);
  }
  order = {2, 0, 1};
  EXPECT_EQ(identity(), before) << "a source that the request does not meet has no place in the order";
}

TEST_F(ExportIdentities, TellASourceThatBecameLongerOrNewer) {
  const ExportIdentity before = identity();
  const fs::path source = folder() / "right.tif";
  const auto time = fs::last_write_time(source);
  std::ofstream(source, std::ios::app) << "more";
  fs::last_write_time(source, time);
  const ExportIdentity longer = identity();
  EXPECT_EQ(longer.request, before.request);
  EXPECT_NE(longer.source, before.source);
  fs::last_write_time(source, time - std::chrono::hours(1));
  EXPECT_NE(identity().source, longer.source) << "an older copy was put back";
  fs::last_write_time(folder() / "far.tif", time - std::chrono::hours(1));
  fs::last_write_time(source, time);
  EXPECT_EQ(identity(), longer);
}

TEST_F(ExportIdentities, TellTheSameContentAtAnotherPlaceAsAnotherRequest) {
  const ExportIdentity before = identity();
  const fs::path copy = folder() / "copy.tif";
  fs::copy_file(service.sources[0].file, copy);
  fs::last_write_time(copy, fs::last_write_time(service.sources[0].file));
  service.sources[0].file = copy;
  EXPECT_NE(identity().request, before.request);
  EXPECT_EQ(identity().source, before.source);
}

TEST_F(ExportIdentities, AreRefusedWhereASourceIsGone) {
  fs::remove(folder() / "left.tif");
  try {
    (void)identity();
    FAIL() << "a source is gone";
  } catch (const RuntimeFailure& failure) {
    EXPECT_NE(failure.description().find("whether a source has changed"), std::string::npos)
        << failure.description();
  }
}

struct Place {
  Bounds bounds;
  bool isWithin;
};

TEST(SourcesWithin, MeetTheGridWithMoreThanAnEdge) {
  const OutputGrid grid = {{0, 0, 10, 10}, 5, 5};
  for (const auto& [bounds, isWithin] : std::initializer_list<Place>{{{0, 0, 10, 10}, true},
                                                                     {{4, 4, 5, 5}, true},
                                                                     {{-50, -50, 50, 50}, true},
                                                                     {{9.999, 9.999, 20, 20}, true},
                                                                     {{-5, 3, 0.001, 4}, true},
                                                                     {{10, 0, 20, 10}, false},
                                                                     {{-10, 0, 0, 10}, false},
                                                                     {{0, 10, 10, 20}, false},
                                                                     {{0, -10, 10, 0}, false},
                                                                     {{10, 10, 20, 20}, false},
                                                                     {{2, 50, 4, 60}, false},
                                                                     {{50, 2, 60, 4}, false}}) {
    ImageServiceRecord service;
    service.sources.resize(1);
    service.sources[0].place = bounds;
    EXPECT_EQ(sourcesWithin(service, {0}, grid).size(), isWithin ? 1U : 0U)
        << bounds.xMin << " " << bounds.yMin << " " << bounds.xMax << " " << bounds.yMax;
    EXPECT_TRUE(sourcesWithin(service, {}, grid).empty()) << "it takes no part";
  }
}

TEST(SourcesWithin, KeepTheOrderThatTheyAreDrawnIn) {
  ImageServiceRecord service;
  service.sources.resize(4);
  for (ImageSource& source : service.sources) source.place = {0, 0, 10, 10};
  service.sources[2].place = {20, 0, 30, 10};
  const OutputGrid grid = {{0, 0, 10, 10}, 5, 5};
  EXPECT_EQ(sourcesWithin(service, {3, 2, 0, 1}, grid), (Order{3, 0, 1}));
}

}  // namespace
}  // namespace vlclientui::client
