#include "client/connections/LiveSecrets.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

using Origin = LiveSecrets::Origin;

SentSecret secretFor(const std::string& address, const std::string& user) {
  SentSecret secret;
  secret.scope = scopeOf(*parsedAddress(address));
  secret.credentials.user = user;
  return secret;
}

std::string userFor(const LiveSecrets& secrets, const std::string& address) {
  const auto parsed = parsedAddress(address);
  return secrets.find(parsed->server, parsed->path).user;
}

// For a part of a server, which counts before what is told of the whole.
void putPart(LiveSecrets& secrets) {
  secrets.put(Origin::Named, "part", secretFor("https://maps.example/a/b", "part"));
}

TEST(LiveSecrets, AreNoneAtFirst) { EXPECT_EQ(userFor(LiveSecrets(), "https://maps.example/"), ""); }

TEST(LiveSecrets, ThatSpeakForLessCountBeforeThoseThatSpeakForMore) {
  LiveSecrets secrets;
  putPart(secrets);
  secrets.put(Origin::Typed, "whole", secretFor("https://maps.example", "whole"));
  EXPECT_EQ(userFor(secrets, "https://maps.example/a/b/c"), "part");
  EXPECT_EQ(userFor(secrets, "https://maps.example/a"), "whole");
}

TEST(LiveSecrets, ThatWereTypedCountBeforeThoseOfTheSamePartThatHaveAName) {
  LiveSecrets secrets;
  secrets.put(Origin::Typed, "typed", secretFor("https://maps.example/a", "typed"));
  secrets.put(Origin::Named, "named", secretFor("https://maps.example/a", "named"));
  EXPECT_EQ(userFor(secrets, "https://maps.example/a"), "typed");
  secrets.drop(Origin::Typed, "typed");
  EXPECT_EQ(userFor(secrets, "https://maps.example/a"), "named");
}

TEST(LiveSecrets, ThatAreTriedCountBeforeAllOthersAlsoWhereTheyAreNone) {
  LiveSecrets secrets;
  putPart(secrets);
  secrets.put(Origin::Trial, "1", secretFor("https://maps.example", ""));
  EXPECT_EQ(userFor(secrets, "https://maps.example/a/b"), "");
  secrets.drop(Origin::Trial, "1");
  EXPECT_EQ(userFor(secrets, "https://maps.example/a/b"), "part");
}

TEST(LiveSecrets, AreReplacedByTheirKeysAndOfOneOriginAlone) {
  LiveSecrets secrets;
  secrets.put(Origin::Named, "one", secretFor("https://one.example", "ann"));
  secrets.put(Origin::Named, "one", secretFor("https://other.example", "eva"));
  EXPECT_EQ(userFor(secrets, "https://one.example/"), "");
  EXPECT_EQ(userFor(secrets, "https://other.example/"), "eva");
  secrets.put(Origin::Typed, "one", secretFor("https://typed.example", "ida"));
  secrets.replaceAll(Origin::Named, {{"two", secretFor("https://two.example", "bea")}});
  EXPECT_EQ(userFor(secrets, "https://other.example/"), "");
  EXPECT_EQ(userFor(secrets, "https://two.example/"), "bea");
  EXPECT_EQ(userFor(secrets, "https://typed.example/"), "ida");
}

TEST(LiveSecrets, AreNeverMissingWhileTheyAreReplaced) {
  LiveSecrets secrets;
  const auto replace = [&] {
    secrets.replaceAll(Origin::Named, {{"one", secretFor("https://maps.example", "ann")}});
  };
  replace();
  std::atomic<bool> isOver{false};
  std::thread replacing([&] {
    while (!isOver) replace();
  });
  int missing = 0;
  for (int i = 0; i < 2000; ++i) missing += userFor(secrets, "https://maps.example/a") == "ann" ? 0 : 1;
  isOver = true;
  replacing.join();
  EXPECT_EQ(missing, 0);
}

}  // namespace
}  // namespace vlclientui::client
