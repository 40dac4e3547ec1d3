#include "client/transport/Transport.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <functional>
#include <numeric>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "client/transport/TransportFixture.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using test::requestFor;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Transports : public test::TransportFixture {};

std::string numbers(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += std::to_string(i) + "\n";
  return text;
}

TEST_F(Transports, FetchesAFileWholeWithItsHeaders) {
  writeFile("a.txt", "hello");
  const HttpAnswer answer = answerOf(server().address("/a.txt"));
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, "hello");
  EXPECT_EQ(answer.header("content-type"), "text/plain");
  EXPECT_EQ(answer.address, server().address("/a.txt"));
  EXPECT_GT(answer.seconds, 0);
}

/// Runs work in a fork of this process. @returns whether it gave true within 20 seconds.
bool doneInFork(const std::function<bool()>& work) {
  const pid_t child = fork();
  if (child == 0) _exit(work() ? 0 : 1);
  int status = 0;
  for (int i = 0; i < 2000; ++i) {
    if (waitpid(child, &status, WNOHANG) == child) return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return false;
}

TEST_F(Transports, WorksInAProcessForkedAfterItsFirstRequest) {
  writeFile("a.txt", "hello");
  const std::string address = server().address("/a.txt");
  ASSERT_EQ(answerOf(address).body, "hello");
  EXPECT_TRUE(doneInFork([&] {
    const HttpResult result = get(address);
    const auto* const answer = std::get_if<HttpAnswer>(&result);
    const bool isWhole = answer != nullptr && answer->body == "hello";
    dropTransport();
    return isWhole;
  }));
  EXPECT_TRUE(doneInFork([&] {
    dropTransport();
    return true;
  })) << "an unused one ends";
  EXPECT_EQ(answerOf(address).body, "hello");
}

TEST_F(Transports, HandsOutAnAnswerWhateverItsStatus) {
  const HttpAnswer answer = answerOf(server().address("/none.txt"));
  EXPECT_EQ(answer.status, 404);
  EXPECT_EQ(answer.body, "not there");
}

TEST_F(Transports, FetchesAPartOfAFile) {
  writeFile("a.bin", "0123456789");
  HttpRequest request = requestFor(server().address("/a.bin"));
  request.range = {2, 5};
  const HttpAnswer answer = answerOf(request);
  EXPECT_EQ(answer.status, 206);
  EXPECT_EQ(answer.body, "2345");
}

TEST_F(Transports, TakesAPartThatTheEndOfTheFileCutsShort) {
  writeFile("a.bin", "0123456789");
  HttpRequest request = requestFor(server().address("/a.bin"));
  request.range = {8, 500};
  EXPECT_EQ(answerOf(request).body, "89");
}

TEST_F(Transports, PostsABodyWithItsType) {
  HttpRequest request = requestFor(server().address("/echo"));
  request.body = "{\"limit\": 3}";
  request.bodyType = "application/json";
  const std::string echo = answerOf(request).body;
  EXPECT_THAT(echo, HasSubstr("POST /echo\n"));
  EXPECT_THAT(echo, HasSubstr("content-type: application/json\n"));
  EXPECT_THAT(echo, HasSubstr("\n\n{\"limit\": 3}"));
}

TEST_F(Transports, SendsTheHeadersOfARequestAndItsOwnName) {
  settings.agent = "Tester/1.0";
  HttpRequest request = requestFor(server().address("/echo"));
  request.headers = {{"Accept", "application/json"}, {"X-Own", "yes"}};
  const std::string echo = answerOf(request).body;
  EXPECT_THAT(echo, HasSubstr("accept: application/json\n"));
  EXPECT_THAT(echo, HasSubstr("x-own: yes\n"));
  EXPECT_THAT(echo, HasSubstr("user-agent: Tester/1.0\n"));
}

TEST_F(Transports, AsksForCompressionAndUnpacksIt) {
  writeFile("a.txt", numbers(5000));
  const HttpAnswer answer = answerOf(server().address("/a.txt"));
  EXPECT_EQ(answer.header("Content-Encoding"), "gzip");
  EXPECT_EQ(answer.body, numbers(5000));
}

TEST_F(Transports, AsksForNoCompressionOfParts) {
  HttpRequest request = requestFor(server().address("/echo"));
  request.range = {0, 500};
  EXPECT_THAT(answerOf(request).body, Not(HasSubstr("accept-encoding")));
}

TEST_F(Transports, KeepsAConnectionForTheNextRequests) {
  writeFile("a.txt", "hello");
  for (int i = 0; i < 5; ++i) EXPECT_EQ(answerOf(server().address("/a.txt")).status, 200);
  EXPECT_EQ(server().counts().requests, 5U);
  EXPECT_EQ(server().counts().connections, 1U);
}

TEST_F(Transports, TakesANewConnectionWhereTheServerClosedTheKeptOne) {
  writeFile("a.txt", "hello");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(answerOf(server().address("/fault/once/a.txt")).body, "hello");
  EXPECT_EQ(server().counts().connections, 3U);
}

TEST_F(Transports, AnswersManyRequestsInTheirOrder) {
  std::vector<HttpRequest> requests;
  for (int i = 0; i < 40; ++i) {
    writeFile(std::to_string(i) + ".txt", std::to_string(i));
    requests.push_back(requestFor(server().address("/" + std::to_string(i) + ".txt")));
  }
  const std::vector<HttpResult> results = transport().fetchAll(requests, 6);
  ASSERT_EQ(results.size(), 40U);
  for (std::size_t i = 0; i < results.size(); ++i) {
    EXPECT_EQ(std::get<HttpAnswer>(results[i]).body, std::to_string(i));
  }
}

TEST_F(Transports, HandsOutEachAnswerAsItComesOnTheThreadThatAsked) {
  writeFile("a.txt", "hello");
  const std::vector<HttpRequest> requests{requestFor(server().address("/fault/hold/a.txt")),
                                          requestFor(server().address("/a.txt"))};
  std::vector<std::size_t> order;
  transport().fetchEach(requests, 2, [&, here = std::this_thread::get_id()](std::size_t index, HttpResult&&) {
    EXPECT_TRUE(std::this_thread::get_id() == here);
    order.push_back(index);
    server().release();
    return true;
  });
  EXPECT_THAT(order, ElementsAre(1U, 0U));
}

TEST_F(Transports, GivesUpTheRestWhenEnoughHasCome) {
  writeFile("a.txt", "hello");
  std::vector<HttpRequest> requests{requestFor(server().address("/a.txt"))};
  requests.resize(50, requestFor(server().address("/fault/hang/a.txt")));
  int calls = 0;
  transport().fetchEach(requests, 3, [&](std::size_t, HttpResult&&) {
    ++calls;
    return false;
  });
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello");
}

TEST_F(Transports, GivesUpTheRestWhenTheReceiverRaises) {
  writeFile("a.txt", "hello");
  const std::vector<HttpRequest> requests{requestFor(server().address("/a.txt")),
                                          requestFor(server().address("/fault/hang/a.txt"))};
  EXPECT_THROW(
      transport().fetchEach(requests, 2,
                            [](std::size_t, HttpResult&&) -> bool { throw std::runtime_error("no room"); }),
      std::runtime_error);
  EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello");
}

TEST_F(Transports, FailsARequestWhoseSecretCannotBeHadAndSendsTheOthers) {
  writeFile("a.txt", "hello");
  writeFile("b.txt", "closed");
  settings.prepareCredentials = [](const client::Server&, const std::string& path) {
    if (path == "/b.txt") throw RuntimeFailure("no secret");
  };
  const HttpRequest open = requestFor(server().address("/a.txt"));
  const HttpRequest closed = requestFor(server().address("/b.txt"));
  const auto results = transport().fetchAll({closed, open, closed}, 1);
  EXPECT_THAT(std::get<client::HttpFailure>(results[0]).text, testing::EndsWith(": no secret"));
  EXPECT_EQ(std::get<HttpAnswer>(results[1]).body, "hello");
  EXPECT_TRUE(std::holds_alternative<client::HttpFailure>(results[2]));
  int calls = 0;
  transport().fetchEach({closed, open}, 2, [&](std::size_t, HttpResult&&) {
    ++calls;
    return false;
  });
  EXPECT_EQ(calls, 1);
}

TEST_F(Transports, AReceiverMayFetchItself) {
  settings.perServer = 1;
  writeFile("a.txt", "hello");
  const std::vector<HttpRequest> requests(5, requestFor(server().address("/a.txt")));
  int good = 0;
  transport().fetchEach(requests, 5, [&](std::size_t, HttpResult&&) {
    good += answerOf(requests.front()).body == "hello" ? 1 : 0;
    return true;
  });
  EXPECT_EQ(good, 5);
}

TEST_F(Transports, NoRequestsNeedNoServer) { EXPECT_TRUE(transport().fetchAll({}, 4).empty()); }

TEST_F(Transports, ServesSeveralThreadsAtATime) {
  writeFile("a.txt", "hello");
  const std::string address = server().address("/a.txt");
  transport();
  std::vector<int> good(4);
  std::vector<std::thread> threads;
  for (int& count : good) {
    threads.emplace_back([&count, this, address] {
      for (int i = 0; i < 25; ++i) count += std::get<HttpAnswer>(get(address)).body == "hello" ? 1 : 0;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::accumulate(good.begin(), good.end(), 0), 100);
}

TEST_F(Transports, AsksWhetherARememberedDocumentStillHolds) {
  std::vector<int> statuses;
  settings.observer = [&](const ExchangeReport& report) { statuses.push_back(report.status); };
  writeFile("a.txt", "hello");
  HttpRequest request = requestFor(server().address("/a.txt"));
  request.remember = true;
  EXPECT_EQ(answerOf(request).body, "hello");
  const HttpAnswer again = answerOf(request);
  EXPECT_EQ(again.status, 200);
  EXPECT_EQ(again.body, "hello");
  EXPECT_EQ(again.header("Content-Type"), "text/plain");
  writeFile("a.txt", "hello again");
  EXPECT_EQ(answerOf(request).body, "hello again");
  dropTransport();
  EXPECT_THAT(statuses, ElementsAre(200, 304, 200));
}

TEST_F(Transports, FetchesWhatNeedNotBeRememberedAnew) {
  std::vector<int> statuses;
  settings.observer = [&](const ExchangeReport& report) { statuses.push_back(report.status); };
  writeFile("a.txt", "hello");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello");
  dropTransport();
  EXPECT_THAT(statuses, ElementsAre(200, 200));
}

TEST_F(Transports, TellsWhoCountsOfEachExchangeWithoutSecrets) {
  std::vector<ExchangeReport> reports;
  settings.observer = [&](const ExchangeReport& report) { reports.push_back(report); };
  writeFile("a.txt", "hello");
  server().arm(1, "status=503");
  EXPECT_EQ(answerOf(server().address("/a.txt?token=abc")).body, "hello");
  dropTransport();
  ASSERT_EQ(reports.size(), 2U);
  EXPECT_EQ(reports[0].status, 503);
  EXPECT_EQ(reports[1].status, 200);
  EXPECT_EQ(reports[1].bytes, 5U);
  EXPECT_EQ(reports[1].address, server().address("/a.txt?token=***"));
}

}  // namespace
}  // namespace vlclientui::client
