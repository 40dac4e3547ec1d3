#include "contracts/ServerSilence.h"

#include <gtest/gtest.h>

namespace vlclientui {
namespace {

TEST(ServerSilence, NamesTheServerAndWhyItDoesNotAnswer) {
  EXPECT_EQ(serverSilence("server", "maps.example", "timed out"),
            "the server 'maps.example' does not answer: timed out");
}

TEST(ServerSilence, GivesItsReasonBack) {
  const std::string told = serverSilence("catalogue", "https://maps.example/stac", "no route: 5");
  EXPECT_EQ(reasonOfServerSilence(told), "no route: 5");
  EXPECT_EQ(reasonOfServerSilence(serverSilence("server", "", "")), "");
}

TEST(ServerSilence, IsNotFoundInOtherReasons) {
  EXPECT_FALSE(reasonOfServerSilence(""));
  EXPECT_FALSE(reasonOfServerSilence("the answer is no XML document"));
}

}  // namespace
}  // namespace vlclientui
