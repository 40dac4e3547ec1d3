#include "widgets/Mnemonics.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

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

/// A page with a few captions in a window of a host.
class PageInAWindow : public testing::Test {
 protected:
  PageInAWindow() {
    auto* const layout = new QVBoxLayout(&window);
    layout->addWidget(&ofHost);
    layout->addWidget(&page);
    auto* const rows = new QVBoxLayout(&page);
    for (QWidget* const widget : {static_cast<QWidget*>(&save), static_cast<QWidget*>(&send),
                                  static_cast<QWidget*>(&label), static_cast<QWidget*>(&box)}) {
      rows->addWidget(widget);
    }
    label.setBuddy(&box);
    window.show();
  }

  QWidget window;
  QPushButton ofHost{"&Services"};
  QWidget page;
  QPushButton save{"&Save"};
  QPushButton send{"&Send && go"};
  QLabel label{"E&s:"};
  QLineEdit box;
};

TEST_F(PageInAWindow, LeavesTheLettersOfTheWindowToIt) {
  widgets::settleMnemonics(page);
  EXPECT_EQ(ofHost.text(), "&Services");
  EXPECT_EQ(save.text(), "S&ave");
}

TEST_F(PageInAWindow, GivesALetterToTheFirstThatMarksIt) {
  ofHost.setText("Services");
  widgets::settleMnemonics(page);
  EXPECT_EQ(save.text(), "&Save");
  EXPECT_EQ(send.text(), "S&end && go");
}

TEST_F(PageInAWindow, MarksNoLetterWhereAllAreTaken) {
  widgets::settleMnemonics(page);
  EXPECT_EQ(send.text(), "S&end && go");
  EXPECT_EQ(label.text(), "Es:");
}

TEST_F(PageInAWindow, CountsNoCaptionThatDoesNotShow) {
  ofHost.hide();
  widgets::settleMnemonics(page);
  EXPECT_EQ(save.text(), "&Save");
}

}  // namespace
}  // namespace vlclientui::test
