#include <gtest/gtest.h>

#include "client/connections/SecretStore.h"
#include "support/TemporaryDataHome.h"

namespace vlclientui::client {
namespace {

using test::EnvironmentKeeper;

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

TEST(DesktopSecrets, FailCleanlyWithoutASession) {
  const EnvironmentKeeper bus("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all");
  const auto store = desktopSecretStore(desktopSecretLibrary);
  EXPECT_NE(store->keep("VLClientUI-test", "VLClientUI: test", "hemlig"), "");
  EXPECT_FALSE(store->find("VLClientUI-test").secret);
  EXPECT_NE(store->find("VLClientUI-test").problem, "");
}

}  // namespace
}  // namespace vlclientui::client
