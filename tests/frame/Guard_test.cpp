#include "frame/Guard.h"

#include <stdexcept>

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

}  // namespace
}  // namespace vlclientui
