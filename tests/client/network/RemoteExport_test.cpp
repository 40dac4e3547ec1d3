// Exports from a server: split, broken off, gone on with, planned, and told of.
#include <atomic>

#include "client/network/RemoteExportFixture.h"

namespace vlclientui::client::network {
namespace {

using test::RemoteRequest;
using Names = std::vector<std::string>;

// Of requests for pixels: a sample in each format before all others.
constexpr std::size_t samples = 2;
// Windows for the fingerprint.
constexpr std::size_t asksForItsIdentity = 3;

class RemoteExport : public test::RemoteExportFixture {};

TEST_F(RemoteExport, IsThePictureOfTheFilePixelForPixel) {
  ASSERT_EQ(exportTo("whole", whole()), "");
  EXPECT_EQ(valuesOf(out("whole"), {0, 0, side_, side_}), valuesOf(source().string(), {0, 0, side_, side_}));
  ASSERT_EQ(exportTo("part", {{500, 700, 900, 777}, 900, 777}), "");
  EXPECT_EQ(valuesOf(out("part"), {0, 0, 900, 777}), valuesOf(source().string(), {500, 700, 900, 777}));
}

TEST_F(RemoteExport, AsksAsOftenAsItsPlanTellsAndForNothingBesides) {
  const auto planned = service();
  const RemoteRequest request = {{300, 200, 900, 700}, 900, 700};
  planned->ExportProperties(document(request, "image"));
  const ExportForecast plan = planned->forecastExport();
  proxy_->clear();
  ASSERT_EQ(exportTo("image", request), "");
  EXPECT_EQ(plan.requests, asked().requests);
  EXPECT_EQ(plan.requests, 2U);
  EXPECT_TRUE(plan.isRemote);
  EXPECT_NEAR(static_cast<double>(plan.bytesToFetch), static_cast<double>(asked().pixels) * 3,
              static_cast<double>(asked().pixels) / 3);
  const auto size = static_cast<double>(std::filesystem::file_size(out("image")));
  EXPECT_NEAR(static_cast<double>(plan.bytesToWrite), size, size / 10);
  EXPECT_GT(plan.seconds, 0);
  EXPECT_TRUE(plan.room);
  EXPECT_EQ(plan.folder, folder_ / "out");
  EXPECT_EQ(plan.limits, Names());
  EXPECT_FALSE(plan.kept);
}

TEST_F(RemoteExport, IsPlannedLessWhatIsKept) {
  proxy_->alwaysAfter(samples + asksForItsIdentity + 2, "only=GetCoverage;delay=800;reset");
  EXPECT_NE(exportTo("image", whole(), Keeping::Begin), "");
  proxy_->clear();
  const auto planned = service();
  planned->ExportProperties(document(whole(), "image"));
  const ExportForecast plan = planned->forecastExport();
  ASSERT_TRUE(plan.kept);
  EXPECT_GT(plan.kept->bytes, 0U);
  EXPECT_LT(plan.requests, 4U);
  EXPECT_TRUE(planned->discardKept());
  EXPECT_EQ(planned->forecastExport().requests, 4U);
}

TEST_F(RemoteExport, TellsItsPlanWhyItWouldBeRefused) {
  const auto planned = service();
  RemoteRequest request = whole();
  request.format = "Nothing";
  planned->ExportProperties(document(request, "image"));
  EXPECT_THROW(static_cast<void>(planned->forecastExport()), std::exception);
}

TEST_F(RemoteExport, TellsWhereItsPixelsComeFromWithoutSecrets) {
  RemoteRequest request = {{0, 0, 400, 300}, 400, 300};
  request.metadata = true;
  ASSERT_EQ(exportTo("image", request, Keeping::Nothing, {}, "?token=geheim"), "");
  const std::string told = contentOf(out("image.xml"));
  EXPECT_NE(told.find("<Origin>"), std::string::npos) << told;
  EXPECT_NE(told.find("/wcs Photograph</Place>"), std::string::npos) << told;
  EXPECT_NE(told.find("<Requests>1</Requests>"), std::string::npos) << told;
  EXPECT_NE(told.find("<Resampling>"), std::string::npos);
  EXPECT_NE(told.find("<Written>20"), std::string::npos);
  EXPECT_EQ(told.find("geheim"), std::string::npos);
}

TEST_F(RemoteExport, IsCanceledWhileItWaitsForTheServer) {
  proxy_->alwaysAfter(samples + 1, "only=GetCoverage;hang");
  std::atomic<int> asked = 0;
  EXPECT_NE(exportTo("image", whole(), Keeping::Nothing, [&](double) { return ++asked < 20; }), "");
  EXPECT_EQ(outputs(), Names());
}

TEST_F(RemoteExport, GoesOnAfterACancel) {
  EXPECT_NE(exportTo("image", whole(), Keeping::Begin, [](double share) { return share < 0.6; }), "");
  EXPECT_EQ(outputs(), Names{"image.unfinished"});
  proxy_->clear();
  ASSERT_EQ(exportTo("image", whole(), Keeping::GoOn), "");
  EXPECT_LT(asked().pixels, wholePixels());
  EXPECT_EQ(valuesOf(out("image"), {0, 0, side_, side_}), valuesOf(source().string(), {0, 0, side_, side_}));
}

TEST_F(RemoteExport, DoesNotGoOnWithACoverageThatHasChanged) {
  proxy_->alwaysAfter(samples + asksForItsIdentity + 2, "only=GetCoverage;delay=800;reset");
  EXPECT_NE(exportTo("image", whole(), Keeping::Begin), "");
  proxy_->clear();
  makeSource(2);
  EXPECT_NE(exportTo("image", whole(), Keeping::GoOn).find("source has changed"), std::string::npos);
  EXPECT_EQ(outputs(), Names{"image.unfinished"});
  ASSERT_EQ(exportTo("image", whole(), Keeping::Anew), "");
  EXPECT_EQ(valuesOf(out("image"), {0, 0, side_, side_}), valuesOf(source().string(), {0, 0, side_, side_}));
  EXPECT_EQ(outputs(), Names{"image"});
}

TEST_F(RemoteExport, DoesNotGoOnWithAnotherRequest) {
  proxy_->alwaysAfter(samples + asksForItsIdentity + 2, "only=GetCoverage;delay=800;reset");
  EXPECT_NE(exportTo("image", whole(), Keeping::Begin), "");
  proxy_->clear();
  RemoteRequest other = whole();
  other.columns = 100;
  EXPECT_NE(exportTo("image", other, Keeping::GoOn).find("belongs to another request"), std::string::npos);
}

class BrokenExport : public RemoteExport, public testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(By, BrokenExport,
                         testing::Values("reset", "status=500", "truncatechunks", "exception"));

// The answers that are underway come before the fault does.
TEST_P(BrokenExport, FetchesOnlyWhatIsMissingAndGivesTheFileOfAnUnbrokenOne) {
  ASSERT_EQ(exportTo("unbroken", whole()), "");
  ASSERT_EQ(asked().requests, 4U);
  ASSERT_EQ(asked().pixels, wholePixels());
  proxy_->clear();
  proxy_->alwaysAfter(samples + asksForItsIdentity + 2,
                      std::string("only=GetCoverage;delay=800;") + GetParam());
  EXPECT_NE(exportTo("image", whole(), Keeping::Begin), "");
  EXPECT_EQ(outputs(), (Names{"image.unfinished", "unbroken"}));
  proxy_->clear();
  ASSERT_EQ(exportTo("image", whole(), Keeping::GoOn), "");
  constexpr std::int64_t rowsThatAreKept = 3 * 256;
  EXPECT_LE(asked().pixels, wholePixels() - rowsThatAreKept * side_);
  EXPECT_EQ(contentOf(out("image")), contentOf(out("unbroken")));
  EXPECT_EQ(outputs(), (Names{"image", "unbroken"}));
}

TEST_P(BrokenExport, LeavesNothingWhereNothingIsToBeKept) {
  proxy_->alwaysAfter(samples + 2, std::string("only=GetCoverage;") + GetParam());
  EXPECT_NE(exportTo("image", whole()), "");
  EXPECT_EQ(outputs(), Names());
}

/// The same raster by a server that gives little at once.
class LimitedExport : public test::RemoteExportFixture {
 protected:
  LimitedExport() : RemoteExportFixture(1100, 300) {}
};

TEST_F(LimitedExport, IsSplitWithoutASeam) {
  ASSERT_EQ(exportTo("whole", whole()), "");
  EXPECT_EQ(valuesOf(out("whole"), {0, 0, side_, side_}), valuesOf(source().string(), {0, 0, side_, side_}));
  const std::filesystem::path generous = folder_ / "generous";
  std::filesystem::create_directories(generous);
  test::offerRasters(
      generous,
      {{"Photograph", source(), 32632, {west, north - side_, west + side_, north}, side_, side_, 3, "RGB"}});
  const std::vector<RemoteRequest> reduced = {
      {{0, 0, 1100, 1100}, 550, 550}, {{0, 0, 1100, 1100}, 275, 275}, {{37, 51, 901, 777}, 333, 301}};
  for (std::size_t i = 0; i < reduced.size(); ++i)
    ASSERT_EQ(exportTo("split" + std::to_string(i), reduced[i]), "");
  server_ = std::make_unique<test::MapServer>(generous);
  proxy_ = std::make_unique<test::FaultProxy>(server_->address().substr(7));
  for (std::size_t i = 0; i < reduced.size(); ++i) {
    const std::string number = std::to_string(i);
    ASSERT_EQ(exportTo("once" + number, reduced[i]), "");
    const std::array<int, 4> all = {0, 0, reduced[i].columns, reduced[i].rows};
    EXPECT_EQ(valuesOf(out("split" + number), all), valuesOf(out("once" + number), all)) << number;
    EXPECT_FALSE(valuesOf(out("once" + number), all).empty());
  }
}

TEST_F(LimitedExport, TellsTheLimitInItsPlan) {
  const auto planned = service();
  planned->ExportProperties(document(whole(), "image"));
  const ExportForecast plan = planned->forecastExport();
  ASSERT_EQ(plan.limits.size(), 1U);
  EXPECT_NE(plan.limits.front().find("256 by 256 pixels at once"), std::string::npos) << plan.limits.front();
  EXPECT_EQ(plan.requests, 25U);
}

}  // namespace
}  // namespace vlclientui::client::network
