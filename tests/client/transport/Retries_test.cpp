#include "client/transport/Retries.h"

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::system_clock;

// Tue, 01 Sep 2026 10:00:00 GMT
const system_clock::time_point tenOClock = system_clock::from_time_t(1788256800);

class Retries : public testing::Test {
 protected:
  Retries() {
    settings.sources.now = [] { return tenOClock; };
    settings.sources.chance = [this] { return chance; };
    settings.tries = 5;
    settings.firstPause = milliseconds(400);
    settings.longestPause = milliseconds(2000);
    settings.longestRetryAfter = seconds(30);
  }

  [[nodiscard]] std::optional<milliseconds> pause(const ExchangeOutcome& outcome, int tried = 1) const {
    return pauseBeforeRetry(outcome, request, tried, settings);
  }

  static ExchangeOutcome answered(int status, const std::string& retryAfter = "") {
    ExchangeOutcome outcome;
    outcome.answer.status = status;
    if (!retryAfter.empty()) outcome.answer.headers = {{"Retry-After", retryAfter}};
    return outcome;
  }

  static ExchangeOutcome failed(bool isPassing, bool isUnsent = false) {
    ExchangeOutcome outcome;
    outcome.failure = HttpFailure{HttpFault::BrokenOff, "it broke off"};
    outcome.isPassing = isPassing;
    outcome.isUnsent = isUnsent;
    return outcome;
  }

  TransportSettings settings;
  HttpRequest request;
  double chance = 0;
};

TEST_F(Retries, PausesDoubleUpToTheLongest) {
  for (const auto& [tried, expected] : {std::pair{1, 400}, {2, 800}, {3, 1600}, {4, 2000}}) {
    EXPECT_EQ(pause(failed(true), tried), milliseconds(expected)) << tried;
  }
}

TEST_F(Retries, ChanceShortensAPauseByUpToAHalf) {
  chance = 0.5;
  EXPECT_EQ(pause(failed(true)), milliseconds(300));
  chance = 1;
  EXPECT_EQ(pause(failed(true)), milliseconds(200));
}

TEST_F(Retries, EndWithTheTries) {
  EXPECT_TRUE(pause(failed(true), 4));
  EXPECT_FALSE(pause(failed(true), 5));
}

TEST_F(Retries, ArePassingStatusesAlone) {
  for (const int status : {429, 502, 503, 504}) EXPECT_TRUE(pause(answered(status))) << status;
  for (const int status : {200, 206, 304, 400, 401, 403, 404, 408, 500, 501}) {
    EXPECT_FALSE(pause(answered(status))) << status;
  }
}

TEST_F(Retries, ArePassingFailuresAlone) {
  EXPECT_TRUE(pause(failed(true)));
  EXPECT_FALSE(pause(failed(false)));
}

TEST_F(Retries, WhatIsPostedIsRepeatedOnlyIfItNeverLeft) {
  request.body = "text";
  EXPECT_FALSE(pause(answered(503)));
  EXPECT_FALSE(pause(failed(true)));
  EXPECT_TRUE(pause(failed(true, true)));
}

TEST_F(Retries, AProbeIsMadeOnce) {
  request.retrying = Retrying::Never;
  EXPECT_FALSE(pause(failed(true)));
  EXPECT_FALSE(pause(answered(503)));
}

TEST_F(Retries, AServerIsLeftAloneForAsLongAsItAsks) {
  EXPECT_EQ(pause(answered(503, "7")), seconds(7));
  EXPECT_EQ(pause(answered(429, "Tue, 01 Sep 2026 10:00:12 GMT")), seconds(12));
}

TEST_F(Retries, AShorterPauseThanOnesOwnIsNotTaken) {
  EXPECT_EQ(pause(answered(503, "0")), milliseconds(400));
  EXPECT_EQ(pause(answered(503, "Tue, 01 Sep 2026 09:00:00 GMT")), milliseconds(400));
}

TEST_F(Retries, AServerThatAsksForTooLongIsNotAskedAgain) {
  EXPECT_TRUE(pause(answered(503, "30")));
  for (const char* const told : {"31", "99999999999999999999999", "Fri, 01 Jan 2044 00:00:00 GMT"}) {
    EXPECT_FALSE(pause(answered(503, told))) << told;
  }
}

TEST_F(Retries, WhatIsNoPauseIsNone) {
  for (const char* const told : {"soon", "-5", "1.5e", ""}) {
    EXPECT_EQ(pause(answered(503, told)), milliseconds(400)) << told;
  }
}

TEST(ToldPauses, AreReadAsSecondsAndAsDates) {
  EXPECT_EQ(toldPause(" 90 ", tenOClock), seconds(90));
  EXPECT_EQ(toldPause("Tue, 01 Sep 2026 10:01:00 GMT", tenOClock), seconds(60));
  EXPECT_EQ(toldPause("Tuesday, 01-Sep-26 10:01:00 GMT", tenOClock), seconds(60));
  EXPECT_EQ(toldPause("Tue Sep  1 10:01:00 2026", tenOClock), seconds(60));
  EXPECT_EQ(toldPause("Mon, 31 Aug 2026 10:00:00 GMT", tenOClock), seconds(0));
  EXPECT_FALSE(toldPause("tomorrow", tenOClock));
}

}  // namespace
}  // namespace vlclientui::client
