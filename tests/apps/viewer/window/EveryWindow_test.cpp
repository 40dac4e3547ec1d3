// What holds of every window that a person of the viewer meets.

#include <QAccessible>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTabBar>
#include <QThread>
#include <map>

#include <gmock/gmock.h>

#include "apps/viewer/EveryWindowFixture.h"
#include "viewer/window/Appearance.h"
#include "widgets/Mnemonics.h"
#include "widgets/ReadableColors.h"

namespace vlclientui::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

std::string describe(const QWidget& widget) {
  return std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString();
}

class EveryWindow : public EveryWindowFixture {};

TEST_F(EveryWindow, GivesALetterToOneWidgetOnly) {
  visitEveryWindow([](QWidget& window, const QString& name) {
    std::map<QChar, std::vector<std::string>> letters;
    for (const auto& caption : widgets::captionsIn(window)) {
      const QChar letter = widgets::letterOf(caption.text);
      if (caption.widget->isVisible() && !letter.isNull())
        letters[letter].push_back(caption.text.toStdString());
    }
    for (const auto& [letter, captions] : letters) {
      EXPECT_THAT(captions, SizeIs(1)) << name.toStdString() << ", " << QString(letter).toStdString();
    }
  });
}

/// In place of a browser: leaves the name of the page that it is to show.
class Browser {
 public:
  explicit Browser(const std::filesystem::path& folder)
      : opened_(folder / "opened"), program_(folder / "browser") {
    std::ofstream(program_) << "#!/bin/sh\nprintf %s \"$1\" > " << opened_ << ".new\nmv " << opened_
                            << ".new " << opened_ << "\n";
    std::filesystem::permissions(program_, std::filesystem::perms::owner_all);
    variable_.emplace("BROWSER", program_.string());
  }

  /// Waits for a page; empty when none is opened.
  [[nodiscard]] std::string takePage() const {
    for (int look = 0; look < 500 && !std::filesystem::exists(opened_); ++look) QThread::msleep(10);
    std::ifstream stream(opened_);
    std::string page{std::istreambuf_iterator<char>(stream), {}};
    std::filesystem::remove(opened_);
    return page;
  }

 private:
  std::filesystem::path opened_;
  std::filesystem::path program_;
  std::optional<EnvironmentKeeper> variable_;
};

TEST_F(EveryWindow, OpensAPageOfTheHelpOnCtrlF1) {
  const Browser browser(home_.path());
  visitEveryWindow([&browser](QWidget& window, const QString& name) {
    QWidget* const focused = window.focusWidget();
    QTest::keyClick(focused != nullptr ? focused : &window, Qt::Key_F1, Qt::ControlModifier);
    const std::string page = browser.takePage();
    EXPECT_TRUE(QFile::exists(QString::fromStdString(page))) << name.toStdString() << ": " << page;
  });
}

TEST_F(EveryWindow, OpensOnePageOnCtrlF1WhereItsOwnFieldsDo) {
  pickOverlaps();
  const Browser browser(home_.path());
  openExport();
  act([&browser] {
    for (const char* const name : {"uiTxtCols", "Command1"}) {
      QWidget& widget = viewer::person::find<QWidget>(exportWindow(), name);
      widget.setFocus(Qt::TabFocusReason);
      QTest::keyClick(&widget, Qt::Key_F1, Qt::ControlModifier);
      EXPECT_THAT(browser.takePage(), testing::HasSubstr("Exporting_Image_Services.htm")) << name;
    }
    viewer::person::press(exportWindow(), Qt::Key_Escape);
  });
  seeNoWindow();
  run();
}

TEST_F(EveryWindow, NamesItsComboBoxesByTheirLabels) {
  int boxes = 0;
  visitEveryWindow([&boxes](QWidget& window, const QString& name) {
    for (QComboBox* const box : window.findChildren<QComboBox*>()) {
      if (!box->isVisible() || box->window() != &window) continue;
      ++boxes;
      auto* const accessible = QAccessible::queryAccessibleInterface(box);
      const QString called = accessible->text(QAccessible::Name);
      const auto labels = window.findChildren<QLabel*>();
      const bool hasLabel = std::ranges::any_of(labels, [&](const QLabel* label) {
        return label->buddy() == box && QString(label->text()).remove('&').startsWith(called);
      });
      EXPECT_TRUE(hasLabel && !called.isEmpty())
          << name.toStdString() << ": " << describe(*box) << " is called " << called.toStdString();
      EXPECT_EQ(accessible->text(QAccessible::Value), box->currentText());
    }
  });
  EXPECT_GE(boxes, 8);
}

QString textOf(const QWidget& widget) {
  if (const auto* const label = qobject_cast<const QLabel*>(&widget)) return label->text();
  if (const auto* const box = qobject_cast<const QLineEdit*>(&widget)) return box->text();
  if (const auto* const text = qobject_cast<const QPlainTextEdit*>(&widget)) return text->toPlainText();
  if (const auto* const button = qobject_cast<const QAbstractButton*>(&widget)) return button->text();
  if (const auto* const group = qobject_cast<const QGroupBox*>(&widget)) return group->title();
  if (const auto* const box = qobject_cast<const QComboBox*>(&widget)) return box->currentText();
  return {};
}

TEST_F(EveryWindow, TellsNoDrives) {
  static const QRegularExpression drive(R"((^|[^A-Za-z])[A-Za-z]:\\)");
  visitEveryWindow([](QWidget& window, const QString& name) {
    EXPECT_FALSE(window.windowTitle().contains(drive)) << name.toStdString();
    for (const QWidget* const widget : shownIn(window)) {
      const QString text = textOf(*widget) + "\n" + widget->toolTip();
      EXPECT_FALSE(text.contains(drive)) << name.toStdString() << ": " << text.toStdString();
    }
  });
}

double contrastIn(const QWidget& widget) {
  const QPalette& palette = widget.palette();
  return widgets::contrastOf(palette.color(widget.foregroundRole()), palette.color(widget.backgroundRole()));
}

class InEachAppearance : public EveryWindow, public testing::WithParamInterface<viewer::Appearance> {
 protected:
  InEachAppearance() { viewer::useAppearance(GetParam()); }
  ~InEachAppearance() override { viewer::useAppearance(viewer::Appearance::Desktop); }
};

TEST_P(InEachAppearance, EveryTextCanBeRead) {
  visitEveryWindow([](QWidget& window, const QString& name) {
    for (const QWidget* const widget : shownIn(window)) {
      if (!widget->isEnabled() || textOf(*widget).isEmpty()) continue;
      EXPECT_GE(contrastIn(*widget), widgets::leastContrast)
          << name.toStdString() << ": " << describe(*widget);
    }
    keepPicture(window, "appearance" + QString::number(static_cast<int>(GetParam())) + "-" + name);
  });
}

INSTANTIATE_TEST_SUITE_P(Colors, InEachAppearance,
                         testing::Values(viewer::Appearance::Light, viewer::Appearance::Dark,
                                         viewer::Appearance::HighContrast));

}  // namespace
}  // namespace vlclientui::test
