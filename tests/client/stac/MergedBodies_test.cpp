// Bodies of requests for further pages that only tell what changes.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "client/stac/StacJson.h"

namespace vlclientui::client::stac {
namespace {

struct Bodies {
  std::string before;
  std::string changes;
  std::string merged;
};

TEST(MergedBodies, HoldTheOldMembersAndTheChangedOnes) {
  const std::vector<Bodies> cases = {{R"({"a":1})", R"({"b":2})", R"({"a":1,"b":2})"},
                                     {R"({"a":1,"b":2})", R"({"a":3})", R"({"b":2,"a":3})"},
                                     {R"({ "a" : [1, 2] })", "", R"({"a":[1,2]})"},
                                     {"", R"({"token":"x"})", R"({"token":"x"})"},
                                     {"", "", "{}"},
                                     {R"({"a":{"x":1}})", R"({"a":{"y":2}})", R"({"a":{"y":2}})"},
                                     {R"({"a":1})", R"({"a":null})", R"({"a":null})"},
                                     {R"({"a":"\"\\é"})", "{}", R"({"a":"\"\\é"})"}};
  for (const auto& [before, changes, merged] : cases) EXPECT_EQ(stac_json::merged(before, changes), merged);
}

TEST(MergedBodies, AreNoneWhereOneIsNoObject) {
  for (const std::string text : {"[1]", "7", "\"a\"", "{", "nothing", "{\"a\":}"}) {
    EXPECT_EQ(stac_json::merged(text, "{}"), "") << text;
    EXPECT_EQ(stac_json::merged("{}", text), "") << text;
  }
}

TEST(MergedBodies, KeepNamesThatNeedToBeWrittenWithCare) {
  const std::string first = stac_json::merged(R"({"a\"b":1,"c\\d":2,"e\nf":3,"g\u0001h":4})", R"({"é":5})");
  EXPECT_EQ(stac_json::merged(first, R"({"a\"b":6,"c\\d":7,"e\nf":8,"g\u0001h":9})"),
            stac_json::merged(R"({"é":5})", R"({"a\"b":6,"c\\d":7,"e\nf":8,"g\u0001h":9})"))
      << first;
  EXPECT_NE(first, "");
  EXPECT_NE(stac_json::merged(first, "{}"), "") << first;
}

}  // namespace
}  // namespace vlclientui::client::stac
