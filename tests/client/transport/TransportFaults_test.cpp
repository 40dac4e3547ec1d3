#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "client/transport/TransportFixture.h"

// What a server does wrong, and what comes of it: another try, or a failure with a sentence for a person.
namespace vlclientui::client {
namespace {

using std::chrono::milliseconds;
using test::requestFor;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class TransportFaults : public test::TransportFixture {
 protected:
  TransportFaults() {
    settings.tries = 3;
    settings.firstPause = milliseconds(400);
  }

  // The fault meets one request; the next one is answered.
  void passes(const std::string& fault) {
    writeFile("a.txt", "hello, this is a file");
    server().arm(1, fault);
    EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello, this is a file") << fault;
    EXPECT_THAT(pauses(), ElementsAre(400)) << fault;
    EXPECT_EQ(server().counts().requests, 2U) << fault;
  }

  // The fault meets every request, until the tries are used up.
  HttpFailure stays(const std::string& fault) {
    writeFile("a.txt", "hello, this is a file");
    HttpFailure failure = failureOf(server().address("/fault/" + fault + "/a.txt"));
    EXPECT_EQ(server().counts().requests, 3U) << fault;
    EXPECT_THAT(failure.text, HasSubstr(server().place())) << fault;
    return failure;
  }

  // There is no use in another try.
  HttpFailure endsAtOnce(const std::string& fault) {
    writeFile("a.txt", "hello, this is a file");
    HttpFailure failure = failureOf(server().address("/fault/" + fault + "/a.txt"));
    EXPECT_EQ(server().counts().requests, 1U) << fault;
    EXPECT_THAT(pauses(), IsEmpty()) << fault;
    return failure;
  }
};

TEST_F(TransportFaults, AResetConnectionIsTriedAgain) { passes("reset"); }
TEST_F(TransportFaults, AResetInTheMiddleIsTriedAgain) { passes("resetmid"); }
TEST_F(TransportFaults, AConnectionClosedWithoutAnAnswerIsTriedAgain) { passes("close"); }
TEST_F(TransportFaults, ABodyShorterThanItsLengthIsTriedAgain) { passes("truncate"); }
TEST_F(TransportFaults, ABodyWithoutItsLastChunkIsTriedAgain) { passes("truncatechunks"); }
TEST_F(TransportFaults, ABodyThatCannotBeUnpackedIsTriedAgain) { passes("notgzip"); }

TEST_F(TransportFaults, PassingStatusesAreTriedAgain) {
  writeFile("a.txt", "hello");
  for (const char* const status : {"429", "502", "503", "504"}) {
    server().arm(1, std::string("status=") + status);
    EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello") << status;
  }
  EXPECT_THAT(pauses(), ElementsAre(400, 400, 400, 400));
}

TEST_F(TransportFaults, OtherStatusesAreAnswersAtOnce) {
  for (const int status : {400, 401, 403, 404, 500, 501}) {
    server().clear();
    EXPECT_EQ(answerOf(server().address("/fault/status=" + std::to_string(status) + "/a.txt")).status,
              status);
    EXPECT_EQ(server().counts().requests, 1U) << status;
  }
}

TEST_F(TransportFaults, AStatusThatStaysIsHandedOutAfterTheTries) {
  EXPECT_EQ(answerOf(server().address("/fault/status=503/a.txt")).status, 503);
  EXPECT_EQ(server().counts().requests, 3U);
  EXPECT_THAT(pauses(), ElementsAre(400, 800));
}

TEST_F(TransportFaults, AServerIsLeftAloneForTheSecondsThatItAsksFor) {
  writeFile("a.txt", "hello");
  server().arm(1, "status=429;after=7");
  EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello");
  EXPECT_THAT(pauses(), ElementsAre(7000));
}

TEST_F(TransportFaults, AServerIsLeftAloneUntilTheDateThatItTells) {
  writeFile("a.txt", "hello");
  server().arm(1, "status=503;after=date+20");
  EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello");
  ASSERT_EQ(pauses().size(), 1U);
  EXPECT_LE(pauses().front(), 20000);
  EXPECT_GT(pauses().front(), 400);
}

TEST_F(TransportFaults, AServerThatHasTooMuchToDoIsLeftAloneByAllRequests) {
  writeFile("a.txt", "hello");
  settings.perServer = 1;
  settings.sources.pause = [](milliseconds) { return milliseconds(50); };
  server().arm(1, "status=429;after=1");
  const auto results = transport().fetchAll(
      {requestFor(server().address("/a.txt?1")), requestFor(server().address("/a.txt?2"))}, 2);
  for (const HttpResult& result : results) EXPECT_EQ(std::get<HttpAnswer>(result).status, 200);
  EXPECT_THAT(server().requests(), ElementsAre("GET /a.txt?1", "GET /a.txt?1", "GET /a.txt?2"));
}

TEST_F(TransportFaults, AServerThatWantsALongRestIsNotAskedAgain) {
  EXPECT_EQ(answerOf(server().address("/fault/status=503;after=3600/a.txt")).status, 503);
  EXPECT_EQ(server().counts().requests, 1U);
}

TEST_F(TransportFaults, AProbeIsMadeOnce) {
  HttpRequest request = requestFor(server().address("/fault/reset/a.txt"));
  request.retrying = Retrying::Never;
  EXPECT_EQ(failureOf(request).fault, HttpFault::BrokenOff);
  EXPECT_EQ(server().counts().requests, 1U);
}

TEST_F(TransportFaults, WhatWasPostedIsNotPostedTwice) {
  HttpRequest request = requestFor(server().address("/fault/reset/echo"));
  request.body = "text";
  request.bodyType = "text/plain";
  EXPECT_EQ(failureOf(request).fault, HttpFault::BrokenOff);
  EXPECT_EQ(server().counts().requests, 1U);
}

TEST_F(TransportFaults, AnswersThatBreakOffEachTimeAreAFailure) {
  for (const char* const fault : {"reset", "resetmid", "close", "truncate", "truncatechunks", "notgzip"}) {
    server().clear();
    EXPECT_EQ(stays(fault).fault, HttpFault::BrokenOff) << fault;
  }
}

TEST_F(TransportFaults, APartOfAnotherLengthOrPlaceIsNone) {
  writeFile("a.bin", std::string(1000, 'x'));
  for (const char* const fault : {"shortpart", "otherpart"}) {
    HttpRequest request = requestFor(server().address("/fault/" + std::string(fault) + "/a.bin"));
    request.range = {100, 199};
    EXPECT_EQ(failureOf(request).fault, HttpFault::BrokenOff) << fault;
  }
}

TEST_F(TransportFaults, AServerWithoutRangesAnswersWithTheWholeFile) {
  writeFile("a.bin", "0123456789");
  HttpRequest request = requestFor(server().address("/fault/norange/a.bin"));
  request.range = {2, 5};
  EXPECT_EQ(answerOf(request).status, 200);
  EXPECT_EQ(answerOf(request).body, "0123456789");
}

TEST_F(TransportFaults, ALargeFileOfAServerWithoutRangesIsNotFetchedToItsEnd) {
  writeFile("a.bin", std::string(100000, 'x'));
  HttpRequest request = requestFor(server().address("/fault/norange/a.bin"));
  request.range = {2, 5};
  EXPECT_EQ(failureOf(request).fault, HttpFault::TooLarge);
}

TEST_F(TransportFaults, ABodyThatOnlyTheClosingEndsIsTakenAsItCame) {
  // Nothing tells how long it should be: whoever reads it has to see that it is not whole.
  writeFile("a.bin", "0123456789");
  EXPECT_EQ(answerOf(server().address("/fault/truncateclose/a.bin")).body, "01234");
  HttpRequest request = requestFor(server().address("/fault/truncateclose/a.bin"));
  request.range = {0, 7};
  EXPECT_EQ(failureOf(request).fault, HttpFault::BrokenOff);
}

TEST_F(TransportFaults, AnotherProtocolIsNoAnswer) {
  EXPECT_EQ(endsAtOnce("garbage").fault, HttpFault::Other);
}

TEST_F(TransportFaults, ABodyPackedUnaskedIsUnpacked) {
  writeFile("a.bin", "0123456789");
  EXPECT_EQ(answerOf(server().address("/fault/pack/a.bin")).body, "0123456789");
}

TEST_F(TransportFaults, BytesBehindTheToldLengthAreLeftOut) {
  writeFile("a.bin", "0123456789");
  EXPECT_EQ(answerOf(server().address("/fault/length=-4/a.bin")).body, "012345");
  EXPECT_EQ(answerOf(server().address("/a.bin")).body, "0123456789");
}

TEST_F(TransportFaults, NobodyAtThePortIsAFailureThatNamesIt) {
  std::string address;
  {
    const test::FaultProxy gone(std::filesystem::temp_directory_path());
    address = gone.address("/a.txt?token=abc");
  }
  const HttpFailure failure = failureOf(address);
  EXPECT_EQ(failure.fault, HttpFault::NoConnection);
  EXPECT_THAT(failure.text, HasSubstr("127.0.0.1:"));
  EXPECT_THAT(pauses(), ElementsAre(400, 800));
}

TEST_F(TransportFaults, AnUnknownNameIsAFailureAtOnce) {
  const HttpFailure failure = failureOf("http://no-such-host.invalid/a.txt");
  EXPECT_EQ(failure.fault, HttpFault::NoSuchHost);
  EXPECT_EQ(failure.text, "There is no server named no-such-host.invalid.");
  EXPECT_THAT(pauses(), IsEmpty());
}

TEST_F(TransportFaults, WhatIsNoAddressIsAFailureWithoutARequest) {
  EXPECT_EQ(failureOf("example.org").fault, HttpFault::BadAddress);
  EXPECT_EQ(failureOf("ftp://example.org/a").fault, HttpFault::BadAddress);
  const std::string address = server().address("/a.txt");
  EXPECT_EQ(failureOf("http://ann:pass@" + address.substr(7)).fault, HttpFault::BadAddress);
  EXPECT_EQ(server().counts().requests, 0U);
}

TEST_F(TransportFaults, AfterEachFaultTheSameTransportWorksAgain) {
  settings.tries = 1;
  settings.mostBytes = 100000;
  writeFile("a.txt", "hello");
  for (const char* const fault : {"reset", "resetmid", "close", "garbage", "truncate", "truncatechunks",
                                  "notgzip", "bomb", "endless", "manyheaders", "loop", "status=500"}) {
    static_cast<void>(get(server().address("/fault/" + std::string(fault) + "/a.txt")));
    EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello") << fault;
  }
}

}  // namespace
}  // namespace vlclientui::client
