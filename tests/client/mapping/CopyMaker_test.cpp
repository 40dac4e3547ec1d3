#include "client/mapping/CopyMaker.h"

#include <chrono>

#include <gtest/gtest.h>

#include "client/mapping/CopiesFixture.h"

namespace vlclientui::client {
namespace {

class CopyMakers : public test::CopiesFixture {
 protected:
  void waitUntilIdle(const CopyMaker& maker) {
    bell_.waitUntil([&] { return maker.wanted() == 0; });
  }

  std::shared_ptr<SmallCopies> copies_ = std::make_shared<SmallCopies>(copiesFolder(), roomy);
};

TEST_F(CopyMakers, MakeNothingBeforeTheyMay) {
  const auto raster = makeLarge("a.tif");
  CopyMaker maker(copies_, [this] { bell_.ring(); });
  maker.want(raster);
  maker.want(raster);
  EXPECT_EQ(maker.wanted(), 1U);
  EXPECT_TRUE(kept().empty());
  maker.allow(true);
  waitUntilIdle(maker);
  EXPECT_EQ(maker.problem(), "");
  EXPECT_TRUE(copies_->find(raster));
}

TEST_F(CopyMakers, TellWhatTheyAreAt) {
  const auto raster = makeLarge("a.tif");
  std::atomic<int> told = 0;
  const CopyMaker* asked = nullptr;
  std::mutex mutex;
  CopyMaker maker(copies_, [&] {
    const std::lock_guard lock(mutex);
    if (asked == nullptr) return;
    const auto now = asked->progress();
    if (now && now->raster == raster && now->share > 0 && now->share < 1) ++told;
    bell_.ring();
  });
  {
    const std::lock_guard lock(mutex);
    asked = &maker;
  }
  maker.want(raster);
  maker.allow(true);
  waitUntilIdle(maker);
  EXPECT_GT(told, 3);
}

TEST_F(CopyMakers, GoOnLaterWithWhatTheyMayNoMore) {
  const auto raster = makeLarge("a.tif");
  CopyMaker maker(copies_, [this] { bell_.ring(); });
  maker.want(raster);
  maker.allow(true);
  bell_.waitUntil([&] { return maker.progress() && maker.progress()->share > 0; });
  maker.allow(false);
  bell_.waitUntil([&] { return !maker.progress(); });
  EXPECT_TRUE(kept().empty());
  EXPECT_EQ(maker.wanted(), 1U);
  maker.allow(true);
  waitUntilIdle(maker);
  EXPECT_TRUE(copies_->find(raster));
}

TEST_F(CopyMakers, ForgetWhatIsGivenUpUntilItIsWantedAgain) {
  const auto raster = makeLarge("a.tif");
  CopyMaker maker(copies_, [this] { bell_.ring(); });
  maker.want(raster);
  maker.allow(true);
  bell_.waitUntil([&] { return maker.progress() && maker.progress()->share > 0; });
  maker.giveUp();
  waitUntilIdle(maker);
  EXPECT_TRUE(kept().empty());
  maker.want(raster);
  waitUntilIdle(maker);
  EXPECT_TRUE(copies_->find(raster));
}

TEST_F(CopyMakers, MakeACopyAnewForAFileThatHasChanged) {
  const auto raster = makeLarge("a.tif");
  CopyMaker maker(copies_, [this] { bell_.ring(); });
  maker.allow(true);
  maker.want(raster);
  waitUntilIdle(maker);
  EXPECT_EQ(copies_->version(), 1U);
  maker.want(raster);
  waitUntilIdle(maker);
  EXPECT_EQ(copies_->version(), 1U);
  std::filesystem::last_write_time(raster,
                                   std::filesystem::last_write_time(raster) + std::chrono::seconds(2));
  maker.want(raster);
  waitUntilIdle(maker);
  EXPECT_EQ(copies_->version(), 2U);
  EXPECT_TRUE(copies_->find(raster));
}

TEST_F(CopyMakers, EndInTheMiddleOfWorkAndLeaveNothing) {
  const auto raster = makeLarge("a.tif");
  {
    CopyMaker maker(copies_, [this] { bell_.ring(); });
    maker.want(raster);
    maker.allow(true);
    bell_.waitUntil([&] { return maker.progress() && maker.progress()->share > 0; });
  }
  EXPECT_TRUE(kept().empty());
}

TEST_F(CopyMakers, TellWhyACopyCannotBeMadeAndGoOn) {
  const auto raster = makeLarge("a.tif");
  CopyMaker maker(copies_, [this] { bell_.ring(); });
  maker.want(makeRaster("small.tif"));
  maker.allow(true);
  waitUntilIdle(maker);
  EXPECT_TRUE(maker.problem().ends_with("small.tif needs no small copy")) << maker.problem();
  maker.want(raster);
  waitUntilIdle(maker);
  EXPECT_EQ(maker.problem(), "");
  EXPECT_TRUE(copies_->find(raster));
}

}  // namespace
}  // namespace vlclientui::client
