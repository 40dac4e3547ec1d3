#include "Telling.h"

#include <gtest/gtest.h>

namespace vlclientui::vlhost {
namespace {

TEST(TerminalText, IsTheTextItselfWhereThatIsOne) {
  for (const char* const text : {"", "a b.tif", "Gr\u00FC\u00DFe \u5730\u56FE.tif", "\u00A0"}) {
    EXPECT_EQ(terminalText(text), text);
  }
}

TEST(TerminalText, ShowsControlCharactersAsQuestionMarks) {
  EXPECT_EQ(terminalText("a\nb\x1B[2J\r\t\x7F.tif"), "a?b?[2J???.tif");
  EXPECT_EQ(terminalText(std::string_view("\0", 1)), "?");
  EXPECT_EQ(terminalText("\u0080\u009B1m\u009F"), "??1m?");
}

TEST(TerminalText, ShowsBytesThatAreNoTextAsQuestionMarks) {
  EXPECT_EQ(terminalText("a\xFF\x9B.tif\xC3"), "a??.tif?");
}

TEST(Tell, PutsOneLineOnStandardError) {
  testing::internal::CaptureStderr();
  tell("left out /a\nb.tif");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "vlhost: left out /a?b.tif\n");
}

}  // namespace
}  // namespace vlclientui::vlhost
