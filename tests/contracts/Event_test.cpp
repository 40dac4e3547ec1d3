#include "contracts/Event.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vlclientui {
namespace {

using testing::ElementsAre;

TEST(Event, CallsItsHandlersInTheOrderOfTheirConnection) {
  Event<int> event;
  std::vector<std::string> calls;
  event.connect([&](int value) { calls.push_back("first " + std::to_string(value)); });
  event.connect([&](int value) { calls.push_back("second " + std::to_string(value)); });
  event.raise(7);
  EXPECT_THAT(calls, ElementsAre("first 7", "second 7"));
}

TEST(Event, DoesNotCallADisconnectedHandler) {
  Event<> event;
  int calls = 0;
  const auto connection = event.connect([&] { ++calls; });
  event.connect([&] { calls += 10; });
  event.disconnect(connection);
  event.raise();
  EXPECT_EQ(calls, 10);
  event.disconnectAll();
  event.raise();
  EXPECT_EQ(calls, 10);
}

TEST(Event, CountsAChangeOfItsHandlersFromTheNextRaiseOn) {
  Event<> event;
  int late = 0;
  bool connected = false;
  event.connect([&] {
    if (!std::exchange(connected, true)) event.connect([&] { ++late; });
  });
  event.raise();
  EXPECT_EQ(late, 0);
  event.raise();
  EXPECT_EQ(late, 1);
}

TEST(Event, EndsAtAHandlerThatFails) {
  Event<> event;
  int calls = 0;
  event.connect([] { throw std::runtime_error("fails"); });
  event.connect([&] { ++calls; });
  EXPECT_THROW(event.raise(), std::runtime_error);
  EXPECT_EQ(calls, 0);
}

TEST(Event, MayBeDestroyedByItsOwnHandler) {
  auto event = std::make_unique<Event<>>();
  int calls = 0;
  event->connect([&] { event.reset(); });
  event->connect([&] { ++calls; });
  event->raise();
  EXPECT_EQ(event, nullptr);
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace vlclientui
