#include "client/raster/GiveUp.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/raster/ExportProgress.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

bool goesOn() { return untilGivenUp(0.5, "reading", nullptr) != 0; }

TEST(ReadingOfRasters, GoesOnWhereNobodyCanGiveItUp) { EXPECT_TRUE(goesOn()); }

TEST(ReadingOfRasters, GoesOnUntilTheWorkIsGivenUp) {
  CancelToken token;
  const WaitScope scope(nullptr, token);
  EXPECT_TRUE(goesOn());
  token.cancel();
  EXPECT_FALSE(goesOn());
}

TEST(ReadingOfRasters, EndsWithTheWorkAroundItToo) {
  CancelToken token;
  const WaitScope outer(nullptr, token);
  const WaitScope inner(nullptr);
  token.cancel();
  EXPECT_FALSE(goesOn());
}

TEST(ReadingOfRasters, GoesOnBehindTheWorkThatWasGivenUp) {
  {
    CancelToken token;
    const WaitScope scope(nullptr, token);
    token.cancel();
    EXPECT_FALSE(goesOn());
  }
  EXPECT_TRUE(goesOn());
}

TEST(ProgressOfExports, IsToldAsItIs) {
  std::vector<double> told;
  const ExportProgress progress = [&](double share) {
    told.push_back(share);
    return true;
  };
  for (const double share : {0.0, 0.25, 1.0}) report(progress, share);
  EXPECT_EQ(told, (std::vector<double>{0, 0.25, 1}));
}

TEST(ProgressOfExports, NeedsNobodyToListen) { EXPECT_NO_THROW(report({}, 0.5)); }

TEST(ProgressOfExports, EndsTheExportThatIsNotWantedAnyMore) {
  std::string text;
  try {
    report([](double share) { return share < 0.5; }, 0.25);
    report([](double share) { return share < 0.5; }, 0.5);
  } catch (const RuntimeFailure& failure) {
    text = failure.what();
  }
  EXPECT_EQ(text, "The export was cancelled.");
}

}  // namespace
}  // namespace vlclientui::client
