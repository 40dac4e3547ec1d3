#include "widgets/ReadableColors.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>

#include <gtest/gtest.h>

#include "widgets/ExportWindow.h"

namespace vlclientui::test {
namespace {

using widgets::contrastOf;
using widgets::leastContrast;

QPalette darkPalette() {
  QPalette dark(QColor(0x35, 0x35, 0x35), QColor(0x2a, 0x2a, 0x2a));
  dark.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
  dark.setColor(QPalette::AlternateBase, QColor(0x2d, 0x2d, 0x2d));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    dark.setColor(role, QColor(0xf0, 0xf0, 0xf0));
  }
  return dark;
}

/// The palette of the program, for the length of a scope.
class PaletteKeeper {
 public:
  PaletteKeeper() = default;
  PaletteKeeper(const PaletteKeeper&) = delete;
  PaletteKeeper& operator=(const PaletteKeeper&) = delete;
  ~PaletteKeeper() { QApplication::setPalette(before_); }

 private:
  QPalette before_ = QApplication::palette();
};

double contrastOfText(const QWidget& widget, QPalette::ColorRole text, QPalette::ColorRole background) {
  return contrastOf(widget.palette().color(text), widget.palette().color(background));
}

TEST(ReadableColors, ContrastGoesFromOneToTwentyOne) {
  EXPECT_DOUBLE_EQ(contrastOf(Qt::white, Qt::white), 1);
  EXPECT_NEAR(contrastOf(Qt::black, Qt::white), 21, 1e-6);
  EXPECT_NEAR(contrastOf(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

TEST(ReadableColors, ComplaintsCanBeReadOnEveryGray) {
  for (int gray = 0; gray < 256; ++gray) {
    const QColor background(gray, gray, gray);
    EXPECT_GE(contrastOf(widgets::complaintColor(background), background), leastContrast) << gray;
  }
}

TEST(ReadableColors, ComplaintsAreRedWhereThatCanBeRead) {
  for (const QColor& background : {QColor(Qt::white), QColor(Qt::black), QColor(0x35, 0x35, 0x35)}) {
    const QColor color = widgets::complaintColor(background);
    EXPECT_GT(color.red(), color.green() + 60);
    EXPECT_GT(color.red(), color.blue() + 60);
  }
}

TEST(ReadableColors, ATextThatStepsBackIsFainterAndCanBeRead) {
  for (const QPalette& palette : {QApplication::palette(), darkPalette()}) {
    const QColor faint = widgets::faintColor(palette, QPalette::Window);
    EXPECT_GE(contrastOf(faint, palette.color(QPalette::Window)), leastContrast);
    EXPECT_LT(contrastOf(faint, palette.color(QPalette::Window)),
              contrastOf(palette.color(QPalette::Text), palette.color(QPalette::Window)));
    for (const auto row : {QPalette::Base, QPalette::AlternateBase}) {
      EXPECT_GE(contrastOf(widgets::faintRowColor(palette), palette.color(row)), leastContrast);
    }
  }
}

TEST(ReadableColors, AWidgetFollowsAChangeOfThePalette) {
  const PaletteKeeper keeper;
  QLabel label("wrong");
  label.show();
  widgets::colorAsComplaint(label);
  const QColor before = label.palette().color(QPalette::WindowText);
  QApplication::setPalette(darkPalette());
  QApplication::processEvents();
  EXPECT_NE(label.palette().color(QPalette::WindowText), before);
  EXPECT_GE(contrastOfText(label, QPalette::WindowText, QPalette::Window), leastContrast);
}

class ComplaintsOnDark : public ExportWindow {};

TEST_F(ComplaintsOnDark, CanBeReadInTheBoxAndBesideIt) {
  const PaletteKeeper keeper;
  QApplication::setPalette(darkPalette());
  service->info = serviceInfo({.maxColumns = "100", .maxRows = "100"});
  show([this] {
    typeInto("uiTxtCols", "999999");
    QTest::keyClick(&box("uiTxtCols"), Qt::Key_Tab);
    EXPECT_GE(contrastOfText(box("uiTxtCols"), QPalette::Text, QPalette::Base), leastContrast);
    const auto& complaint = widget<QLabel>("uiTxtColsComplaint");
    EXPECT_FALSE(complaint.text().isEmpty());
    EXPECT_GE(contrastOfText(complaint, QPalette::WindowText, QPalette::Window), leastContrast);
  });
}

TEST_F(ComplaintsOnDark, StayReadableWhenThePaletteChangesUnderThem) {
  const PaletteKeeper keeper;
  service->info = serviceInfo({.maxColumns = "100", .maxRows = "100"});
  show([this] {
    typeInto("uiTxtCols", "999999");
    QTest::keyClick(&box("uiTxtCols"), Qt::Key_Tab);
    QApplication::setPalette(darkPalette());
    EXPECT_GE(contrastOfText(box("uiTxtCols"), QPalette::Text, QPalette::Base), leastContrast);
    EXPECT_GE(contrastOfText(widget<QLabel>("uiTxtColsComplaint"), QPalette::WindowText, QPalette::Window),
              leastContrast);
  });
}

}  // namespace
}  // namespace vlclientui::test
