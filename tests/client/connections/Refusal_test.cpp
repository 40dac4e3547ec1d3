#include "client/connections/Refusal.h"

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

HttpAnswer answerWith(int status) {
  HttpAnswer answer;
  answer.status = status;
  return answer;
}

TEST(Refusal, TellsOfAConnectionWhereTheServerAsksWhoIsThere) {
  for (const int status : {401, 403}) {
    EXPECT_TRUE(asksWhoIsThere(answerWith(status)));
    const std::string told = refusalText(answerWith(status));
    EXPECT_NE(told.find("status " + std::to_string(status)), std::string::npos) << told;
    EXPECT_TRUE(tellsOfConnection(told)) << told;
  }
}

TEST(Refusal, TellsTheStatusAloneElsewhere) {
  for (const int status : {404, 407, 500}) {
    EXPECT_FALSE(asksWhoIsThere(answerWith(status)));
    EXPECT_EQ(refusalText(answerWith(status)), "the server answers with status " + std::to_string(status));
    EXPECT_FALSE(tellsOfConnection(refusalText(answerWith(status))));
  }
}

}  // namespace
}  // namespace vlclientui::client
