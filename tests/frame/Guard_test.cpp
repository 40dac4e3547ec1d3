#include "frame/Guard.h"

#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui {
namespace {

TEST(Guard, TellsThatARoutineRanToItsEnd) {
  bool ran = false;
  EXPECT_TRUE(endsQuietly([&] { ran = true; }));
  EXPECT_TRUE(ran);
}

TEST(Guard, StopsSilentlyAtWhateverIsThrown) {
  int reached = 0;
  EXPECT_FALSE(endsQuietly([&] {
    ++reached;
    throw RuntimeFailure("x");
  }));
  EXPECT_FALSE(endsQuietly([] { throw std::logic_error("x"); }));
  EXPECT_FALSE(endsQuietly([] { throw 17; }));
  EXPECT_EQ(reached, 1);
}

struct Page {
  static void refresh() {
    endsQuietly([] { throw RuntimeFailure("no answer"); });
  }
};

TEST(Guard, LeavesATraceOfWhatItStopped) {
  std::vector<SilentEnd> heard;
  const SilenceListener listener([&](const SilentEnd& end) { heard.push_back(end); });
  Page::refresh();
  endsQuietly([] { throw 17; }, "Click of the button");
  endsQuietly([] {});
  EXPECT_EQ(heard, (std::vector<SilentEnd>{{"Page::refresh", "no answer"},
                                           {"Click of the button", "Unknown failure"}}));
}

TEST(Guard, TellsAFailureOnceWhereItStopped) {
  int heard = 0;
  const SilenceListener listener([&](const SilentEnd&) { ++heard; });
  EXPECT_TRUE(endsQuietly([] { endsQuietly([] { throw RuntimeFailure("x"); }); }));
  EXPECT_EQ(heard, 1);
}

}  // namespace
}  // namespace vlclientui
