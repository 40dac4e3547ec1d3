#include <condition_variable>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netdb.h>

#include "client/transport/TransportFixture.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

constexpr const char* slowName = "slow-name.invalid";

/// A name whose search takes as long as a test wants.
struct SlowName {
  std::mutex mutex;
  std::condition_variable changed;
  bool isAsked = false;
  bool isAnswered = false;

  static SlowName& instance() {
    static SlowName name;
    return name;
  }

  void answer() {
    const std::lock_guard lock(mutex);
    isAnswered = true;
    changed.notify_all();
  }

  void waitUntilAsked() {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return isAsked; });
  }

  void hold() {
    std::unique_lock lock(mutex);
    isAsked = true;
    changed.notify_all();
    changed.wait(lock, [this] { return isAnswered; });
  }
};

}  // namespace
}  // namespace vlclientui::client

// Stands before that of the C library, for this program and the libraries that it loads.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints, addrinfo** found) {
  using Original = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
  static const auto original = reinterpret_cast<Original>(dlsym(RTLD_NEXT, "getaddrinfo"));
  if (name != nullptr && std::strcmp(name, vlclientui::client::slowName) == 0) {
    vlclientui::client::SlowName::instance().hold();
    return EAI_NONAME;
  }
  return original(name, service, hints, found);
}

namespace vlclientui::client {
namespace {

using std::chrono::milliseconds;
using test::requestFor;
using testing::HasSubstr;

constexpr WaitPace always{milliseconds(0), milliseconds(0)};

class TransportWaiting : public test::TransportFixture {
 protected:
  TransportWaiting() { writeFile("a.txt", "hello"); }

  [[nodiscard]] std::string hanging() { return server().address("/fault/hang/a.txt"); }
};

/// Does what a test says when it is asked.
class Listener : public WaitListener {
 public:
  explicit Listener(std::function<WaitAnswer(const WaitedFor&)> answer) : answer_(std::move(answer)) {}

  WaitAnswer stillWaiting(const WaitedFor& what) override { return answer_(what); }

 private:
  std::function<WaitAnswer(const WaitedFor&)> answer_;
};

TEST_F(TransportWaiting, AListenerHearsWhomIsWaitedForAndMayGoOn) {
  Listener listener([&](const WaitedFor& what) {
    EXPECT_EQ(what.host, server().place());
    EXPECT_EQ(what.openRequests, 1U);
    server().release();
    return WaitAnswer::GoOn;
  });
  const WaitScope scope(&listener, {}, always);
  EXPECT_EQ(answerOf(server().address("/fault/hold/a.txt")).body, "hello");
}

TEST_F(TransportWaiting, AListenerHearsHowManyBytesHaveCome) {
  writeFile("b.bin", std::string(2000, 'x'));
  Listener listener(
      [](const WaitedFor& what) { return what.bytes == 1000 ? WaitAnswer::GiveUp : WaitAnswer::GoOn; });
  const WaitScope scope(&listener, {}, {milliseconds(0), milliseconds(1)});
  EXPECT_EQ(failureOf(server().address("/fault/stall/b.bin")).fault, HttpFault::Canceled);
}

TEST_F(TransportWaiting, WhatAListenerGivesUpIsCanceled) {
  Listener listener([](const WaitedFor&) { return WaitAnswer::GiveUp; });
  const WaitScope scope(&listener, {}, always);
  const HttpFailure failure = failureOf(hanging());
  EXPECT_EQ(failure.fault, HttpFault::Canceled);
  EXPECT_EQ(failure.text, "The request to " + server().place() + " was canceled.");
}

TEST_F(TransportWaiting, AfterAGiveUpNothingIsAskedUnderTheScope) {
  Listener listener([](const WaitedFor&) { return WaitAnswer::GiveUp; });
  {
    const WaitScope scope(&listener, {}, always);
    EXPECT_EQ(failureOf(hanging()).fault, HttpFault::Canceled);
    server().clear();
    EXPECT_EQ(failureOf(server().address("/a.txt")).fault, HttpFault::Canceled);
    EXPECT_EQ(server().counts().requests, 0U);
  }
  EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello");
}

TEST_F(TransportWaiting, EachOpenRequestOfACallIsToldAsCanceled) {
  Listener listener([](const WaitedFor&) { return WaitAnswer::GiveUp; });
  const WaitScope scope(&listener, {}, always);
  const std::vector<HttpResult> results = transport().fetchAll(std::vector(9, requestFor(hanging())), 2);
  ASSERT_EQ(results.size(), 9U);
  for (const HttpResult& result : results)
    EXPECT_EQ(std::get<HttpFailure>(result).fault, HttpFault::Canceled);
}

TEST_F(TransportWaiting, ATokenEndsTheFetchOfAnotherThread) {
  CancelToken token;
  transport();
  const std::string address = hanging();
  HttpResult result;
  std::thread fetching([&] {
    const WaitScope scope(nullptr, token);
    result = get(address);
  });
  while (server().counts().open == 0) std::this_thread::yield();
  token.cancel();
  fetching.join();
  EXPECT_EQ(std::get<HttpFailure>(result).fault, HttpFault::Canceled);
}

TEST_F(TransportWaiting, ATokenEndsAPauseBeforeAnotherTry) {
  CancelToken token;
  settings.sources.pause = [&token](milliseconds) {
    token.cancel();
    return milliseconds(std::chrono::hours(1));
  };
  const WaitScope scope(nullptr, token);
  EXPECT_EQ(failureOf(server().address("/fault/status=503/a.txt")).fault, HttpFault::Canceled);
}

TEST_F(TransportWaiting, ACanceledRequestLeavesItsServer) {
  CancelToken token;
  settings.perServer = 1;
  transport();
  const std::string address = hanging();
  std::thread fetching([&] {
    const WaitScope scope(nullptr, token);
    static_cast<void>(get(address));
  });
  while (server().counts().open == 0) std::this_thread::yield();
  token.cancel();
  fetching.join();
  // Its place is free again.
  EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello");
}

TEST_F(TransportWaiting, ASearchForANameIsGivenUpAtOnceAndHoldsUpNobody) {
  CancelToken token;
  transport();
  HttpResult result;
  std::thread fetching([&] {
    const WaitScope scope(nullptr, token);
    result = get("http://" + std::string(slowName) + "/a.txt");
  });
  SlowName::instance().waitUntilAsked();
  EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello");
  token.cancel();
  fetching.join();
  EXPECT_EQ(std::get<HttpFailure>(result).fault, HttpFault::Canceled);
  EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello");
  dropTransport();
  // All of this was done while nobody knew the name.
  SlowName::instance().answer();
}

TEST_F(TransportWaiting, AnswersAndCancelsMayMeetInAnyOrder) {
  const std::string address = server().address("/a.txt");
  transport();
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([this, address] {
      for (int turn = 0; turn < 30; ++turn) {
        CancelToken token;
        const WaitScope scope(nullptr, token);
        std::thread canceling([&token] { token.cancel(); });
        const HttpResult result = get(address);
        canceling.join();
        const auto* const failure = std::get_if<HttpFailure>(&result);
        EXPECT_TRUE(failure == nullptr || failure->fault == HttpFault::Canceled);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(answerOf(address).body, "hello");
}

TEST_F(TransportWaiting, AnOtherwiseIdleScopeChangesNothing) {
  const WaitScope scope(nullptr);
  EXPECT_EQ(answerOf(server().address("/a.txt")).body, "hello");
}

}  // namespace
}  // namespace vlclientui::client
