// How the export window looks: what a person can read, where the letters and Tab lead. The pictures of the
// documentation are made here too.

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleOptionFrame>
#include <set>

#include <gmock/gmock.h>

#include "widgets/ExportWindow.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Set to a folder, it receives the pictures.
constexpr const char* pictureFolder = "VLCLIENTUI_PICTURES";

class ExportWindowLook : public ExportWindow {
 protected:
  ExportWindowLook() {
    service->metadata = imageMetadata({.xMin = "686500",
                                       .yMin = "5237250",
                                       .xMax = "689500",
                                       .yMax = "5239250",
                                       .rows = "2000",
                                       .columns = "3000"});
    service->info = serviceInfo({.xMin = "680000",
                                 .yMin = "5230000",
                                 .xMax = "700000",
                                 .yMax = "5250000",
                                 .maxColumns = "20000",
                                 .maxRows = "20000"});
  }

  /// Names and texts of what is cut off or hidden behind something else.
  [[nodiscard]] std::vector<std::string> unreadable() const {
    std::vector<std::string> names;
    for (const auto* const label : window->findChildren<QLabel*>()) {
      if (label->isVisible() && cutOff(*label)) names.push_back(nameOf(*label));
    }
    for (const auto* const edit : window->findChildren<QLineEdit*>()) {
      const bool path = edit->objectName() == QLatin1String("uiTxtFileName");
      if (edit->isVisible() && !path && cutOff(*edit)) names.push_back(nameOf(*edit));
    }
    for (const auto* const button : window->findChildren<QAbstractButton*>()) {
      if (button->isVisible() && cutOff(*button)) names.push_back(nameOf(*button));
    }
    for (const auto* const list : window->findChildren<QComboBox*>()) {
      if (list->width() < list->minimumSizeHint().width()) names.push_back(nameOf(*list));
    }
    return names;
  }
  static std::string nameOf(const QWidget& widget) { return widget.objectName().toStdString(); }
  static bool cutOff(const QLabel& label) {
    if (!label.wordWrap()) return label.width() < label.sizeHint().width() || tooLow(label);
    return label.height() < label.heightForWidth(label.width());
  }
  static bool cutOff(const QLineEdit& edit) {
    QStyleOptionFrame frame;
    frame.initFrom(&edit);
    const QRect room = edit.style()->subElementRect(QStyle::SE_LineEditContents, &frame, &edit);
    return room.width() < edit.fontMetrics().horizontalAdvance(edit.text()) + 4 || tooLow(edit);
  }
  static bool cutOff(const QAbstractButton& button) {
    const int text = button.fontMetrics().size(Qt::TextShowMnemonic, button.text()).width();
    return button.width() < text + 8 || tooLow(button);
  }
  static bool tooLow(const QWidget& widget) { return widget.height() < widget.minimumSizeHint().height(); }

  void settle() const { QTest::qWait(50); }
  void expectReadable() const {
    settle();
    EXPECT_THAT(unreadable(), IsEmpty());
  }
  /// @param file stands in place of the test's own path.
  void picture(const char* name, const char* file) {
    widget("MainCombo").setFocus(Qt::TabFocusReason);
    expectReadable();
    const QString folder = qEnvironmentVariable(pictureFolder);
    if (folder.isEmpty()) return;
    const QString picture = QDir(folder).filePath(QLatin1String(name) + QLatin1String(".png"));
    box("uiTxtFileName").setText(QLatin1String(file));
    EXPECT_TRUE(window->grab().save(picture)) << picture.toStdString();
  }
  void edit(const char* name, const QString& text) {
    typeInto(name, text);
    QTest::keyClick(&box(name), Qt::Key_Tab);
  }
  void pickFormat(const char* entry) {
    auto& formats = widget<QComboBox>("FormatCombo");
    formats.setCurrentText(QLatin1String(entry));
    emit formats.activated(formats.currentIndex());
  }
};

TEST_F(ExportWindowLook, AtFirstDisplayEverythingCanBeRead) {
  show([this] { picture("export-first-display", "/home/user/Exports/Valley.Tif"); });
}

TEST_F(ExportWindowLook, WithComplaintsEverythingCanBeRead) {
  show([this] {
    edit("uiTxtCols", "25000");
    edit("uiTxtBottom", "5239250");
    picture("export-complaints", "/home/user/Exports/Valley.Tif");
  });
}

TEST_F(ExportWindowLook, WithEveryComplaintEverythingCanBeRead) {
  show([this] {
    edit("uiTxtRows", "25000");
    edit("uiTxtBottom", "5239250");
    edit("uiTxtCols", "0");
    edit("uiTxtRight", "686500");
    edit("uiTxtCols", "-25000");
    pickFormat("JPEG");
    edit("uiTxtCompression", "101");
    expectReadable();
    EXPECT_EQ(window->findChildren<QLabel*>(QRegularExpression("Complaint$")).size(), 7);
    for (const auto* const label : window->findChildren<QLabel*>(QRegularExpression("Complaint$"))) {
      EXPECT_TRUE(label->isVisible() != label->text().isEmpty()) << nameOf(*label);
    }
  });
}

TEST_F(ExportWindowLook, InJpegEverythingCanBeRead) {
  show([this] {
    pickFormat("JPEG");
    edit("uiTxtCompression", "85");
    picture("export-jpeg", "/home/user/Exports/Valley.JPEG");
  });
}

TEST_F(ExportWindowLook, DegreesFitIntoTheirBoxes) {
  service->metadata = imageMetadata({.xMin = "-179.123456789",
                                     .yMin = "-89.123456789",
                                     .xMax = "179.123456789",
                                     .yMax = "89.123456789",
                                     .rows = "999999",
                                     .columns = "999999"});
  service->info = serviceInfo({.xMin = "-179", .yMin = "-89", .xMax = "179", .yMax = "89"});
  show([this] { expectReadable(); });
}

TEST_F(ExportWindowLook, AtItsSmallestEverythingCanBeRead) {
  show([this] {
    window->resize(window->minimumSize());
    expectReadable();
  });
}

TEST_F(ExportWindowLook, AWiderWindowGivesItsRoomToTheBoxes) {
  show([this] {
    const int width = box("uiTxtFileName").width();
    const int height = box("uiTxtFileName").height();
    window->resize(window->width() + 200, window->height() + 100);
    settle();
    // A few pixels may go to the captions, whose column was rounded down before.
    EXPECT_NEAR(box("uiTxtFileName").width(), width + 200, 4);
    EXPECT_EQ(box("uiTxtFileName").height(), height);
  });
}

TEST_F(ExportWindowLook, TheEdgesStandAsOnAMap) {
  show([this] {
    const auto at = [this](const char* name) { return box(name).mapTo(window, QPoint(0, 0)); };
    EXPECT_LT(at("uiTxtTop").y(), at("uiTxtLeft").y());
    EXPECT_EQ(at("uiTxtLeft").y(), at("uiTxtRight").y());
    EXPECT_LT(at("uiTxtLeft").y(), at("uiTxtBottom").y());
    EXPECT_EQ(at("uiTxtTop").x(), at("uiTxtBottom").x());
    EXPECT_LT(at("uiTxtLeft").x(), at("uiTxtTop").x());
    EXPECT_LT(at("uiTxtTop").x(), at("uiTxtRight").x());
  });
}

TEST_F(ExportWindowLook, TabVisitsWhatTakesInputAsAPersonReadsAndComesRound) {
  show([this] {
    pickFormat("TIFF-JPEG");
    std::vector<std::string> visited;
    widget("MainCombo").setFocus(Qt::TabFocusReason);
    do {
      visited.push_back(nameOf(*window->focusWidget()));
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    } while (visited.size() < 30 && window->focusWidget() != &widget("MainCombo"));
    EXPECT_THAT(visited, ElementsAre("MainCombo", "uiTxtTop", "uiTxtLeft", "uiTxtRight", "uiTxtBottom",
                                     "uiTxtWidth", "uiTxtHeight", "uiTxtCols", "uiTxtRows", "uiTxtGSDX",
                                     "uiTxtGSDY", "FormatCombo", "TileSizeCombo", "uiTxtCompression",
                                     "uiTxtFileName", "OpenFile", "ExportMD", "Command1", "Command2"));
  });
}

TEST_F(ExportWindowLook, EveryCaptionHasALetterOfItsOwn) {
  show([this] {
    std::multiset<QString> letters;
    const auto take = [&letters](const QString& caption) {
      const auto mark = caption.indexOf(QLatin1Char('&'));
      if (mark >= 0) letters.insert(caption.mid(mark + 1, 1).toUpper());
      return mark >= 0;
    };
    for (const auto* const label : window->findChildren<QLabel*>()) {
      const bool leadsSomewhere = label->buddy() && label->buddy()->objectName() != QLatin1String("uiTxtMB");
      if (!leadsSomewhere) continue;
      EXPECT_TRUE(take(label->text())) << nameOf(*label);
    }
    for (const auto* const group : window->findChildren<QGroupBox*>()) {
      EXPECT_TRUE(take(group->title())) << nameOf(*group);
    }
    for (const char* const name : {"Command1", "Command2"}) {
      EXPECT_TRUE(take(widget<QPushButton>(name).text())) << name;
    }
    for (const QString& letter : letters) EXPECT_EQ(letters.count(letter), 1U) << letter.toStdString();
    EXPECT_EQ(letters.size(), 22U);
  });
}

TEST_F(ExportWindowLook, ALetterLeadsToTheBoxOfItsCaption) {
  show([this] {
    QTest::keyClick(window, Qt::Key_Y, Qt::AltModifier);
    EXPECT_EQ(window->focusWidget(), &widget("uiTxtGSDY"));
    QTest::keyClick(window, Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(window->focusWidget(), &widget("uiTxtFileName"));
    QTest::keyClick(window, Qt::Key_N, Qt::AltModifier);
    EXPECT_EQ(window->focusWidget(), &widget("uiTxtTop"));
  });
}

TEST_F(ExportWindowLook, CaptionsReadAsTheyAreWritten) {
  show([this] {
    EXPECT_EQ(widget<QLabel>("uiLblGSDX").text().remove('&'), "Ground Pixel Size X:");
    EXPECT_EQ(widget<QLabel>("uiLblExportMD").text(), "&Export Metadata XML:");
    EXPECT_EQ(widget<QGroupBox>("Frame1").title().remove('&'), "Extents");
  });
}

}  // namespace
}  // namespace vlclientui::test
