#include <thread>

#include <gtest/gtest.h>

#include "client/connections/SecretStore.h"
#include "client/waiting/Wait.h"
#include "support/TemporaryDataHome.h"

namespace vlclientui::client {
namespace {

using test::EnvironmentKeeper;

class GivingUp final : public WaitListener {
 public:
  WaitAnswer stillWaiting(const WaitedFor& what) override {
    host = what.host;
    return WaitAnswer::GiveUp;
  }

  std::string host;
};

TEST(DesktopSecrets, AreKeptFoundAndForgottenByTheDesktopsLibrary) {
  const auto store = desktopSecretStore(VL_FAKE_SECRET_LIBRARY);
  EXPECT_EQ(store->keep("one", "VLClientUI: Home", "hemlig"), "");
  EXPECT_EQ(store->find("one").secret, "hemlig");
  EXPECT_FALSE(store->find("two").secret);
  EXPECT_EQ(store->find("two").problem, "");
  EXPECT_EQ(store->forget("one"), "");
  EXPECT_FALSE(store->find("one").secret);
  EXPECT_EQ(store->forget("one"), "");
}

TEST(DesktopSecrets, TellWhyTheServiceRefuses) {
  const auto store = desktopSecretStore(VL_FAKE_SECRET_LIBRARY);
  const EnvironmentKeeper broken("VL_SECRET_PROBLEM", "no such bus");
  const std::string told = "the secret store of the desktop does not answer: no such bus";
  EXPECT_EQ(store->keep("one", "VLClientUI: Home", "hemlig"), told);
  EXPECT_EQ(store->find("one").problem, told);
  EXPECT_EQ(store->forget("one"), told);
}

TEST(DesktopSecrets, AreToldToBeMissingWhereThereIsNoLibrary) {
  const auto store = desktopSecretStore("libnosuchstore.so.0");
  const std::string told = "this machine has no secret store (libnosuchstore.so.0)";
  EXPECT_EQ(store->keep("one", "VLClientUI: Home", "hemlig"), told);
  EXPECT_EQ(store->find("one").problem, told);
  EXPECT_FALSE(store->find("one").secret);
  EXPECT_EQ(store->forget("one"), told);
}

TEST(DesktopSecrets, AreGivenUpFromAnotherThreadAndByTheListenerOfTheWait) {
  const std::string told = "the wait for the secret store of the desktop was given up";
  for (const char* how : {"on", "deaf"}) {
    const auto store = desktopSecretStore(VL_FAKE_SECRET_LIBRARY);
    const EnvironmentKeeper hanging("VL_SECRET_HANG", how);
    CancelToken token;
    std::jthread other([token]() mutable { token.cancel(); });
    {
      const WaitScope scope(nullptr, token);
      EXPECT_EQ(store->keep("one", "VLClientUI: Home", "hemlig"), told);
    }
    GivingUp listener;
    const WaitScope scope(&listener, {}, {std::chrono::milliseconds(1), std::chrono::milliseconds(1)});
    EXPECT_EQ(store->find("one").problem, told);
    EXPECT_EQ(listener.host, "the secret store of the desktop");
    EXPECT_EQ(store->forget("one"), told) << "nothing is asked under what was given up";
  }
}

TEST(DesktopSecrets, FailCleanlyWithoutASession) {
  const EnvironmentKeeper bus("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all");
  const auto store = desktopSecretStore(desktopSecretLibrary);
  EXPECT_NE(store->keep("VLClientUI-test", "VLClientUI: test", "hemlig"), "");
  EXPECT_FALSE(store->find("VLClientUI-test").secret);
  EXPECT_NE(store->find("VLClientUI-test").problem, "");
}

}  // namespace
}  // namespace vlclientui::client
