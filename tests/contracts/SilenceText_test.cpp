#include "contracts/SilenceText.h"

#include <source_location>

#include <gtest/gtest.h>

#include "contracts/SecretNames.h"

namespace vlclientui {
namespace {

struct Sample {
  std::string namedHere() const { return std::source_location::current().function_name(); }
  static auto namedInALambda() {
    return [] { return std::string(std::source_location::current().function_name()); }();
  }
};

std::string namedInAFreeFunction() { return std::source_location::current().function_name(); }

TEST(SilenceText, NamesAFunctionAsAPersonWritesIt) {
  EXPECT_EQ(routineOfFunction("void vlclientui::Form::load()"), "Form::load");
  EXPECT_EQ(routineOfFunction("bool vlclientui::engine::Engine::Commit()"), "Engine::Commit");
  EXPECT_EQ(routineOfFunction("std::vector<std::function<void(int)> > vlclientui::X::all(int) const"),
            "X::all");
  EXPECT_EQ(routineOfFunction("void vlclientui::{anonymous}::moveFile(const std::string&)"), "moveFile");
  EXPECT_EQ(routineOfFunction("void vlclientui::(anonymous namespace)::moveFile(int)"), "moveFile");
  EXPECT_EQ(routineOfFunction("int main(int, char**)"), "main");
  EXPECT_EQ(routineOfFunction(""), "");
}

TEST(SilenceText, NamesWhatThisCompilerWrites) {
  EXPECT_EQ(routineOfFunction(Sample().namedHere()), "Sample::namedHere");
  EXPECT_EQ(routineOfFunction(Sample::namedInALambda()), "Sample::namedInALambda");
  EXPECT_EQ(routineOfFunction(namedInAFreeFunction()), "namedInAFreeFunction");
}

TEST(SilenceText, KeepsAReasonToOneLine) {
  EXPECT_EQ(silentReason("first\nsecond\r\tthird\x7F"), "first second  third ");
  EXPECT_EQ(silentReason("Stra\xC3\x9F"
                         "e \xE2\x82\xAC \xF0\x9F\x8C\x8D"),
            "Stra\xC3\x9F"
            "e \xE2\x82\xAC \xF0\x9F\x8C\x8D");
}

TEST(SilenceText, MarksBytesThatAreNoText) {
  EXPECT_EQ(silentReason("a\xFFz"), "a?z");
  EXPECT_EQ(silentReason("\xC3"), "?");
  EXPECT_EQ(silentReason("\xC0\xAF"), "??");
  EXPECT_EQ(silentReason("\xED\xA0\x80"), "???");
  EXPECT_EQ(silentReason("\xE0\x80\x80\xF0\x80\x80\x80"), "???????");
  EXPECT_EQ(silentReason("\xF4\x90\x80\x80\xF5"), "?????");
}

TEST(SilenceText, CutsALongReasonBetweenCharacters) {
  std::string reason;
  for (int i = 0; i < 200; ++i) reason += "\xC3\xA4";
  const std::string cut = silentReason(reason);
  EXPECT_LE(cut.size(), silentReasonLimit);
  EXPECT_NE(cut.find("\xC3\xA4...\xC3\xA4"), std::string::npos);
  EXPECT_TRUE(cut.ends_with("\xC3\xA4"));
  EXPECT_TRUE(silentReason("'" + std::string(500, 'n') + "' is no name").ends_with("' is no name"));
  EXPECT_EQ(silentReason(std::string(200, 'x')), std::string(200, 'x'));
  EXPECT_LE(silentReason(std::string(500, '\xFF')).size(), silentReasonLimit);
}

TEST(SilenceText, HidesNameAndPasswordOfAnAddress) {
  EXPECT_EQ(silentReason("no answer from https://ann:p@ss@host/a@b and http://x/ as ftp://bob@host"),
            "no answer from https://***@host/a@b and http://x/ as ftp://***@host");
  EXPECT_EQ(silentReason("http://ann:pa/ss@host is silent"), "http://***@host is silent");
  EXPECT_EQ(silentReason("mail a@b about C:\\a and http://host:80/x"),
            "mail a@b about C:\\a and http://host:80/x");
}

TEST(SilenceText, HidesTheValuesOfKeysInAddresses) {
  EXPECT_EQ(silentReason("'http://maps.example/a?map=x&api_key=abc;Token=def' is silent"),
            "'http://maps.example/a?map=x&api_key=***;Token=***' is silent");
  EXPECT_EQ(silentReason("http://maps.example/a?map=b&c=d no token=e"),
            "http://maps.example/a?map=b&c=d no token=e");
  EXPECT_EQ(silentReason("what is it? token=e"), "what is it? token=e");
}

TEST(SilenceText, HidesAllThatCountsAsAKeyElsewhere) {
  const auto isHidden = [](const std::string& name) {
    return silentReason("http://h/a?" + name + "=abc") == "http://h/a?" + name + "=***";
  };
  for (const std::string_view name : secretNames) EXPECT_TRUE(isHidden(std::string(name))) << name;
  for (const std::string_view word : secretWords) EXPECT_TRUE(isHidden("x_" + std::string(word))) << word;
  for (const char* const name : {"Pass-Word", "SESSION_ID", "x.to_ken"}) EXPECT_TRUE(isHidden(name)) << name;
  EXPECT_FALSE(isHidden("inside"));
}

}  // namespace
}  // namespace vlclientui
