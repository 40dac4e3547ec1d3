#include "widgets/PageView.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <algorithm>

#include <gtest/gtest.h>

#include "widgets/PageWindow.h"

namespace vlclientui::widgets {
namespace {

engine::FormField field(const std::string& name, const std::string& value) {
  engine::FormField made;
  made.name = name;
  made.label = "The " + name;
  made.path = "page/" + name;
  made.value = value;
  made.readOnly = true;
  return made;
}

engine::FormModel samplePage() {
  engine::FormModel page;
  page.groups.push_back({"General", {field("title", "Europe"), field("size", "100")}});
  page.groups.push_back({"Raster", {field("bands", "")}});
  page.groups[0].fields[1].unit = "m";
  return page;
}

const QLabel& value(const PageView& view, const char* name) {
  return *view.findChild<QLabel*>(QLatin1String(name));
}

TEST(PageView, GroupsHoldLabelsAndValues) {
  const PageView view(samplePage());
  const auto groups = view.findChildren<QGroupBox*>();
  ASSERT_EQ(groups.size(), 2);
  EXPECT_EQ(groups[0]->title(), "General");
  EXPECT_EQ(value(view, "title").text(), "Europe");
  EXPECT_EQ(value(view, "size").text(), "100 m");
  const auto labels = groups[0]->findChildren<QLabel*>();
  EXPECT_TRUE(std::ranges::any_of(labels, [](const QLabel* label) { return label->text() == "The title:"; }));
}

TEST(PageView, EmptyValueIsADash) {
  const PageView view(samplePage());
  EXPECT_EQ(value(view, "bands").text(), QString::fromUtf8("\xe2\x80\x93"));
}

TEST(PageView, ValuesCanBeMarkedAndHoldNoMarkup) {
  engine::FormModel page = samplePage();
  page.groups[0].fields[0].value = "<b>x</b>";
  const PageView view(page);
  EXPECT_TRUE(value(view, "title").textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
  EXPECT_EQ(value(view, "title").textFormat(), Qt::PlainText);
}

TEST(PageView, LongValueTakesTheLinesThatItNeedsAndNoMore) {
  engine::FormModel page = samplePage();
  page.groups[0].fields[0].value =
      "a title that is so long that it cannot stand in one line of a narrow page";
  PageView view(page);
  view.resize(400, 600);
  view.show();
  QCoreApplication::processEvents();
  const QLabel& title = value(view, "title");
  EXPECT_GT(title.height(), value(view, "size").height());
  EXPECT_EQ(title.height(), title.heightForWidth(title.width()));
}

TEST(PageView, AValueWithoutBlanksAsksForNoWiderPage) {
  engine::FormModel page = samplePage();
  page.groups[0].fields[0].value = "PROJCS[" + std::string(400, 'x') + "]";
  PageView view(page);
  view.resize(400, 600);
  view.show();
  QCoreApplication::processEvents();
  EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);
}

TEST(PageView, HiddenFieldsAreLeftOutAndDisabledOnesAreGray) {
  engine::FormModel page = samplePage();
  page.groups[0].fields[0].enabled = false;
  page.groups[0].fields[1].visible = false;
  page.groups[1].fields[0].visible = false;
  const PageView view(page);
  EXPECT_FALSE(value(view, "title").isEnabled());
  EXPECT_TRUE(value(view, "size").isHidden());
  EXPECT_TRUE(view.findChildren<QGroupBox*>()[1]->isHidden());
}

TEST(PageView, AnAmpersandOfALabelIsShownWhetherTheFieldIsReadOrEdited) {
  engine::FormModel page = samplePage();
  for (const bool readOnly : {true, false}) {
    page.groups[0].fields[0].label = "R & D";
    page.groups[0].fields[0].readOnly = readOnly;
    const PageView view(page);
    const auto labels = view.findChildren<QLabel*>();
    const auto* wanted = readOnly ? "R & D:" : "R && D:";
    EXPECT_TRUE(std::ranges::any_of(labels, [&](const QLabel* label) { return label->text() == wanted; }));
  }
}

TEST(PageView, NewValuesKeepTheScrolledPlace) {
  engine::FormModel page = samplePage();
  for (int number = 0; number < 60; ++number)
    page.groups[0].fields.push_back(field("f" + std::to_string(number), "v"));
  PageView view(page);
  view.resize(300, 200);
  view.show();
  QCoreApplication::processEvents();
  view.verticalScrollBar()->setValue(100);
  page.groups[0].fields[0].value = "Asia";
  view.setPage(page);
  QCoreApplication::processEvents();
  EXPECT_EQ(value(view, "title").text(), "Asia");
  EXPECT_EQ(view.verticalScrollBar()->value(), 100);
}

TEST(PageWindow, ClosesByButtonAndByEscape) {
  for (const bool byButton : {true, false}) {
    PageWindow window("Service Properties", engine::WindowFrame::Resizable, samplePage(), {}, nullptr);
    EXPECT_EQ(window.windowTitle(), "Service Properties");
    QTimer::singleShot(0, [&] {
      if (byButton) {
        QTest::mouseClick(window.findChild<QPushButton*>(), Qt::LeftButton);
      } else {
        QTest::keyClick(&window, Qt::Key_Escape);
      }
    });
    window.exec();
    EXPECT_FALSE(window.isVisible());
  }
}

TEST(PageWindow, FocusBeginsInTheFirstEditorOrOnTheButton) {
  engine::FormModel page = samplePage();
  PageWindow toRead("", engine::WindowFrame::Resizable, page, {}, nullptr);
  EXPECT_EQ(toRead.focusWidget(), toRead.findChild<QPushButton*>());
  page.groups[0].fields[1].readOnly = false;
  PageWindow toEdit("", engine::WindowFrame::Resizable, page, {}, nullptr);
  EXPECT_EQ(toEdit.focusWidget()->objectName(), "size");
}

TEST(PageWindow, ModalFrameKeepsItsSize) {
  const PageWindow fixed("", engine::WindowFrame::Modal, samplePage(), {}, nullptr);
  EXPECT_EQ(fixed.minimumSize(), fixed.maximumSize());
  const PageWindow free("", engine::WindowFrame::Resizable, samplePage(), {}, nullptr);
  EXPECT_NE(free.minimumSize(), free.maximumSize());
}

}  // namespace
}  // namespace vlclientui::widgets
