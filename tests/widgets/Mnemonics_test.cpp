#include "widgets/Mnemonics.h"

#include <QLabel>

#include <gtest/gtest.h>

namespace vlclientui::test {
namespace {

using widgets::withMnemonic;

TEST(Mnemonics, MarkTheFirstSuchLetterOfACaption) {
  QLabel label;
  label.setProperty(widgets::mnemonicProperty, "r");
  EXPECT_EQ(withMnemonic(label, "Rows or:"), "&Rows or:");
  EXPECT_EQ(withMnemonic(label, "For:"), "Fo&r:");
}

TEST(Mnemonics, LeaveACaptionThatMarksOneItself) {
  QLabel label;
  label.setProperty(widgets::mnemonicProperty, "m");
  EXPECT_EQ(withMnemonic(label, "&Export Metadata XML:"), "&Export Metadata XML:");
}

TEST(Mnemonics, LeaveACaptionWithoutTheLetterOrWhereNoneIsNamed) {
  QLabel label;
  EXPECT_EQ(withMnemonic(label, "Rows:"), "Rows:");
  label.setProperty(widgets::mnemonicProperty, "x");
  EXPECT_EQ(withMnemonic(label, "Rows:"), "Rows:");
}

}  // namespace
}  // namespace vlclientui::test
