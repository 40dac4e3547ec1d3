#include "runs/RunFile.h"

#include <utility>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {
namespace {

using runs::readRun;
using runs::RunStatement;

std::string refusalOfRun(const std::string& text) {
  try {
    static_cast<void>(readRun(text));
  } catch (const RuntimeFailure& failure) {
    return failure.description();
  }
  return "taken";
}

TEST(RunFile, HasAStatementInEachLineOfWordsWithBlanksBetween) {
  const auto statements =
      readRun("# first\nvlrun 1\n\n  set  uiTxtCols\t360 # a remark\r\nchoose list a \"b c\" \"\"\nleave\n");
  const std::vector<RunStatement> expected{
      {4, "set", {"uiTxtCols", "360"}}, {5, "choose", {"list", "a", "b c", ""}}, {6, "leave", {}}};
  EXPECT_EQ(statements, expected);
}

TEST(RunFile, ReadsBackWhatWasWritten) {
  for (const char* const word :
       {"plain", "", "two words", "a \"quote\"", "C:\\out\\b.tif", "#", "line\nend", "a#b", "\\n", "Ærø"}) {
    const RunStatement statement{2, "set", {"box", word}};
    EXPECT_EQ(readRun(runs::runHeader() + runs::runLine(statement)), std::vector{statement}) << word;
  }
}

TEST(RunFile, IsRefusedWithTheLine) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "line 1: the file does not begin with 'vlrun 1'"},
      {"set a b\n", "line 1: the file does not begin with 'vlrun 1'"},
      {"vlrun 2\n", "line 1: it was written by a newer program, as version 2"},
      {"vlrun 1\n\nclick a\n", "line 3: 'click' is unknown"},
      {"vlrun 1\nset a\n", "line 2: a word is missing behind 'set'"},
      {"vlrun 1\nset a b c\n", "line 2: too many words behind 'set'; one with blanks needs quotes"},
      {"vlrun 1\nset a \"b\n", "line 2: a quote is not closed"},
      {"vlrun 1\nset a \"b\"c\n", "line 2: a blank is missing behind a quote"},
      {"vlrun 1\nset a \"\\t\"\n", R"(line 2: behind a \ in quotes stands n, " or \)"},
  };
  for (const auto& [text, reason] : cases) EXPECT_EQ(refusalOfRun(text), reason) << text;
}

TEST(RunFile, MayBeginWithTheMarkOfEditors) {
  EXPECT_EQ(runs::readRun("\xEF\xBB\xBFvlrun 1\nleave\n").size(), 1U);
}

}  // namespace
}  // namespace vlclientui::test
