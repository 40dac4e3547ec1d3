#include <filesystem>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "client/transport/TransportFixture.h"

namespace vlclientui::client {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using test::requestFor;
using testing::HasSubstr;

class TransportLimits : public test::TransportFixture {
 protected:
  TransportLimits() { settings.tries = 1; }

  [[nodiscard]] std::vector<HttpRequest> manyRequests(int count, bool onBothServers = false) {
    std::vector<HttpRequest> requests;
    for (int i = 0; i < count; ++i) {
      const bool isOther = onBothServers && i % 2 == 1;
      requests.push_back(requestFor(isOther ? server().otherAddress("/fault/delay=20/a.txt")
                                            : server().address("/fault/delay=20/a.txt")));
    }
    return requests;
  }

  static std::size_t entries(const char* folder) {
    const std::filesystem::directory_iterator first(folder);
    return static_cast<std::size_t>(std::distance(first, std::filesystem::directory_iterator()));
  }
};

TEST_F(TransportLimits, AServerIsAskedByAsManyAtATimeAsAllowed) {
  writeFile("a.txt", "hello");
  settings.perServer = 3;
  for (const HttpResult& result : transport().fetchAll(manyRequests(20), 20)) {
    EXPECT_TRUE(std::holds_alternative<HttpAnswer>(result));
  }
  EXPECT_EQ(server().counts().together, 3U);
  EXPECT_LE(server().counts().connections, 3U);
}

TEST_F(TransportLimits, AllServersTogetherAreAskedByAsManyAsAllowed) {
  writeFile("a.txt", "hello");
  settings.perServer = 10;
  settings.inAll = 4;
  for (const HttpResult& result : transport().fetchAll(manyRequests(30, true), 30)) {
    EXPECT_TRUE(std::holds_alternative<HttpAnswer>(result));
  }
  EXPECT_EQ(server().counts().together, 4U);
}

TEST_F(TransportLimits, ACallerHasAsManyUnderwayAsItAskedFor) {
  writeFile("a.txt", "hello");
  static_cast<void>(transport().fetchAll(manyRequests(10), 2));
  EXPECT_EQ(server().counts().together, 2U);
}

TEST_F(TransportLimits, AServerThatHangsHoldsUpNoOtherOne) {
  writeFile("a.txt", "hello");
  settings.perServer = 1;
  std::vector<HttpRequest> requests{requestFor(server().address("/fault/hang/a.txt")),
                                    requestFor(server().address("/a.txt")),
                                    requestFor(server().otherAddress("/a.txt"))};
  transport().fetchEach(requests, 3, [](std::size_t index, HttpResult&& result) {
    EXPECT_EQ(index, 2U);
    EXPECT_TRUE(std::holds_alternative<HttpAnswer>(result));
    return false;
  });
}

TEST_F(TransportLimits, ASilentServerTimesOut) {
  settings.document.silence = milliseconds(100);
  const HttpFailure failure = failureOf(server().address("/fault/hang/a.txt"));
  EXPECT_EQ(failure.fault, HttpFault::TimedOut);
  EXPECT_EQ(failure.text, server().place() + " did not answer in time.");
}

TEST_F(TransportLimits, AServerThatFallsSilentInTheMiddleTimesOut) {
  writeFile("a.txt", "hello, this is a file");
  settings.document.silence = milliseconds(100);
  EXPECT_EQ(failureOf(server().address("/fault/stall/a.txt")).fault, HttpFault::TimedOut);
}

TEST_F(TransportLimits, AServerThatIsSlowButNeverSilentReachesTheWholeLimit) {
  writeFile("a.txt", std::string(100000, 'x'));
  settings.document.silence = hours(1);
  settings.document.whole = milliseconds(200);
  EXPECT_EQ(failureOf(server().address("/fault/drip=5/a.txt")).fault, HttpFault::TimedOut);
}

TEST_F(TransportLimits, PixelsMayTakeLongerThanDocuments) {
  writeFile("a.txt", "hello");
  settings.document.silence = milliseconds(1);
  settings.pixels.silence = hours(1);
  HttpRequest request = requestFor(server().address("/fault/delay=100/a.txt"));
  EXPECT_EQ(failureOf(request).fault, HttpFault::TimedOut);
  request.patience = Patience::Pixels;
  EXPECT_EQ(answerOf(request).body, "hello");
}

TEST_F(TransportLimits, NoPauseIsBegunThatReachesBeyondTheWholeLimit) {
  settings.tries = 3;
  settings.document.whole = milliseconds(5000);
  EXPECT_EQ(answerOf(server().address("/fault/status=503;after=20/a.txt")).status, 503);
  EXPECT_EQ(server().counts().requests, 1U);
}

TEST_F(TransportLimits, ABodyOfExactlyTheLimitIsTaken) {
  writeFile("a.bin", std::string(1000, 'x'));
  HttpRequest request = requestFor(server().address("/a.bin"));
  request.mostBytes = 1000;
  EXPECT_EQ(answerOf(request).body.size(), 1000U);
  request.mostBytes = 999;
  EXPECT_EQ(failureOf(request).fault, HttpFault::TooLarge);
}

TEST_F(TransportLimits, ABodyIsCountedAsItIsUnpacked) {
  writeFile("a.txt", std::string(100000, 'x'));
  HttpRequest request = requestFor(server().address("/a.txt"));
  request.mostBytes = 50000;
  const HttpFailure failure = failureOf(request);
  EXPECT_EQ(failure.fault, HttpFault::TooLarge);
  EXPECT_EQ(failure.text, "The answer of " + server().place() + " is too large.");
}

TEST_F(TransportLimits, BodiesWithoutAnEndAreEnded) {
  settings.mostBytes = 1000000;
  for (const char* const fault : {"bomb", "endless", "manyheaders"}) {
    EXPECT_EQ(failureOf(server().address("/fault/" + std::string(fault) + "/a.txt")).fault,
              HttpFault::TooLarge)
        << fault;
  }
}

TEST_F(TransportLimits, ATransportLeavesNoThreadAndNoSocketBehind) {
  writeFile("a.txt", "hello");
  server().clear();
  const std::size_t threads = entries("/proc/self/task");
  const std::size_t files = entries("/proc/self/fd");
  static_cast<void>(transport().fetchAll(manyRequests(10), 5));
  transport().fetchEach(
      {requestFor(server().address("/a.txt")), requestFor(server().address("/fault/hang/a.txt"))}, 2,
      [](std::size_t, HttpResult&&) { return false; });
  EXPECT_GT(entries("/proc/self/task"), threads);
  dropTransport();
  EXPECT_EQ(entries("/proc/self/task"), threads);
  EXPECT_EQ(entries("/proc/self/fd"), files);
}

}  // namespace
}  // namespace vlclientui::client
