#include "client/network/FetchAhead.h"

#include <algorithm>
#include <atomic>
#include <future>

#include <gtest/gtest.h>

#include "client/network/CoveragePassage.h"

namespace vlclientui::client::network {
namespace {

/// Ten rows of one tile each.
std::vector<TileRange> tenRows() {
  std::vector<TileRange> rows;
  for (int row = 0; row < 10; ++row) rows.push_back({0, 0, row, 0, row});
  return rows;
}

class FetchAheadTest : public testing::Test {
 protected:
  /// Fetches at once, and counts.
  FetchAhead::Fetch counting() {
    return [this](const std::vector<TileRange>& groups, const FetchAhead::Told& told) {
      for (const TileRange& group : groups) {
        ++fetched_;
        if (!told(group)) break;
      }
      return std::string();
    };
  }
  void waitUntilFetched(int count) const {
    while (fetched_ < count) std::this_thread::yield();
  }

  std::atomic<int> fetched_ = 0;
  CancelToken readers_;
};

TEST_F(FetchAheadTest, LeavesAPassageToItsOwnReaders) {
  CoveragePassages passages;
  const CancelToken others;
  const auto one = passages.begin("A", {0, 0, 10, 10}, CoveragePassage::Kind::Through, readers_);
  auto other = passages.begin("A", {0, 0, 20, 20}, CoveragePassage::Kind::Through, others);
  EXPECT_EQ(passages.find("A"), nullptr);
  const WaitScope reading(nullptr, readers_);
  EXPECT_EQ(passages.find("A"), one);
  std::thread([&, link = WaitScope::link()] {
    const WaitScope helping(link);
    EXPECT_EQ(passages.find("A"), one);
    const WaitScope within(nullptr, others);
    EXPECT_EQ(passages.find("A"), other);
  }).join();
  other.reset();
  EXPECT_FALSE(one->token().isCanceled()) << "the end of one export is none of another";
}

TEST_F(FetchAheadTest, StaysWithinItsRoomUntilSomebodyReads) {
  FetchAhead ahead(tenRows(), 3, counting(), {});
  waitUntilFetched(4);
  EXPECT_EQ(ahead.await({0, 0, 0, 0, 0}), "");
  EXPECT_LE(fetched_, 5) << "one more than there is room for waits to be handed on";
  EXPECT_EQ(ahead.await({0, 0, 9, 0, 9}), "");
  EXPECT_EQ(fetched_, 10);
}

TEST_F(FetchAheadTest, HoldsNothingUpWhileAReaderWaits) {
  std::vector<TileRange> upsideDown = tenRows();
  std::ranges::reverse(upsideDown);
  FetchAhead ahead(upsideDown, 1, counting(), {});
  EXPECT_EQ(ahead.await({0, 0, 0, 0, 0}), "");
}

TEST_F(FetchAheadTest, TellsReadersWhyItBrokeOff) {
  FetchAhead ahead(tenRows(), 3, [](const auto&, const auto&) { return std::string("the server is gone"); },
                   {});
  EXPECT_EQ(ahead.await({0, 0, 0, 0, 0}), "the server is gone");
  EXPECT_EQ(ahead.await({0, 0, 40, 0, 40}), "") << "nobody was to fetch that";
}

TEST_F(FetchAheadTest, TakesPartsOfAGroupTogether) {
  const TileRange whole{0, 0, 0, 1, 0};
  std::promise<void> goOn;
  FetchAhead ahead({whole}, 9,
                   [&](const auto&, const FetchAhead::Told& told) {
                     told({0, 0, 0, 0, 0});
                     goOn.get_future().wait();
                     told({0, 1, 0, 1, 0});
                     return std::string();
                   },
                   {});
  auto reader = std::async(std::launch::async, [&] { return ahead.await({0, 0, 0, 0, 0}); });
  EXPECT_EQ(reader.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  goOn.set_value();
  EXPECT_EQ(reader.get(), "");
}

TEST_F(FetchAheadTest, EndsWithItsPassageWhileSomebodyElseHoldsThat) {
  CoveragePassages passages;
  auto passage = passages.begin("A", {0, 0, 10, 10}, CoveragePassage::Kind::Through, readers_);
  const WaitScope reading(nullptr, readers_);
  const auto held = passages.find("A");
  const auto ahead =
      held->ahead(0, [&] { return std::make_unique<FetchAhead>(tenRows(), 1, counting(), held->token()); });
  waitUntilFetched(2);
  passage.reset();
  EXPECT_TRUE(held->token().isCanceled());
  EXPECT_EQ(held->ahead(0, [] { return nullptr; }), nullptr);
  EXPECT_NE(ahead->await({0, 0, 9, 0, 9}), "");
}

}  // namespace
}  // namespace vlclientui::client::network
