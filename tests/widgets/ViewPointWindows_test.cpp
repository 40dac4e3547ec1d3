// The layouts of the viewpoint page and dialog.

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/ViewPointFixture.h"
#include "viewpoint/ViewPoint.h"
#include "viewpoint/ViewPointDialogForm.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ViewPointWindows : public ViewPointFixture {
 protected:
  /// Shows a window for itself; `toolkit` of the base stands for nothing here.
  void show(ViewPointSteering& window) {
    window.myImageServiceObject = service;
    window.load();
    qt->showWindow(qt->windowOf(window), showModeShow);
    view = qt->viewOf(window);
    view->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(view));
  }
  [[nodiscard]] QAbstractButton& button(const char* name) const {
    auto* const found = view->findChild<QAbstractButton*>(QLatin1String(name));
    if (!found) throw std::runtime_error(name);
    return *found;
  }
  [[nodiscard]] QString text(const char* name) const {
    return view->findChild<QLineEdit*>(QLatin1String(name))->text();
  }

  std::shared_ptr<widgets::QtToolkit> qt = std::make_shared<widgets::QtToolkit>(system);
  ViewPoint page{*qt};
  ViewPointDialogForm dialog{*qt};
  QWidget* view = nullptr;
};

const std::vector<const char*> allMoves = {"MoveNW",    "MoveUp", "MoveNE",   "MoveLeft", "Center",
                                           "MoveRight", "MoveSW", "MoveDown", "MoveSE"};

TEST_F(ViewPointWindows, EachControlHasItsWidget) {
  for (ViewPointSteering* const window :
       {static_cast<ViewPointSteering*>(&page), static_cast<ViewPointSteering*>(&dialog)}) {
    window->load();
    EXPECT_THAT(qt->missingWidgets(*window), IsEmpty());
  }
}

TEST_F(ViewPointWindows, EachMoveHasAPictureOfItsOwnANameAndAToolTip) {
  show(dialog);
  std::vector<QImage> pictures;
  for (const char* const name : allMoves) {
    const QAbstractButton& move = button(name);
    EXPECT_FALSE(move.toolTip().isEmpty()) << name;
    EXPECT_FALSE(move.accessibleName().isEmpty()) << name;
    EXPECT_TRUE(move.text().isEmpty()) << name;
    const QImage picture = move.icon().pixmap(24, 24).toImage();
    EXPECT_THAT(pictures, testing::Not(testing::Contains(picture))) << name;
    pictures.push_back(picture);
  }
}

TEST_F(ViewPointWindows, TheMovesStandWhereTheyLead) {
  show(page);
  const QPoint center = button("Center").mapTo(view, button("Center").rect().center());
  const auto sign = [](int number) { return (number > 0) - (number < 0); };
  const auto way = [&](const char* name) {
    const QPoint place = button(name).mapTo(view, button(name).rect().center()) - center;
    return QPoint(sign(place.x()), sign(place.y()));
  };
  EXPECT_EQ(way("MoveNW"), QPoint(-1, -1));
  EXPECT_EQ(way("MoveUp"), QPoint(0, -1));
  EXPECT_EQ(way("MoveNE"), QPoint(1, -1));
  EXPECT_EQ(way("MoveLeft"), QPoint(-1, 0));
  EXPECT_EQ(way("MoveRight"), QPoint(1, 0));
  EXPECT_EQ(way("MoveSW"), QPoint(-1, 1));
  EXPECT_EQ(way("MoveDown"), QPoint(0, 1));
  EXPECT_EQ(way("MoveSE"), QPoint(1, 1));
}

TEST_F(ViewPointWindows, OnlyTheMoveUsedLastLooksPressed) {
  show(page);
  const auto pressed = [this] {
    std::vector<std::string> names;
    for (const char* const name : allMoves) {
      if (button(name).isChecked()) names.emplace_back(name);
    }
    return names;
  };
  QTest::mouseClick(&button("MoveUp"), Qt::LeftButton);
  EXPECT_THAT(pressed(), ElementsAre("MoveUp"));
  QTest::mouseClick(&button("MoveUp"), Qt::LeftButton);
  EXPECT_THAT(pressed(), ElementsAre("MoveUp"));
  QTest::mouseClick(&button("Center"), Qt::LeftButton);
  EXPECT_THAT(pressed(), ElementsAre("Center"));
  service->metadata = basicMetadata({"-1", "-1", "1", "1"});
  QTest::mouseClick(&button("Center"), Qt::LeftButton);
  EXPECT_THAT(pressed(), IsEmpty());
}

TEST_F(ViewPointWindows, TabGoesAsAPersonReads) {
  show(dialog);
  button("MoveNW").setFocus();
  std::vector<std::string> visited;
  for (int i = 0; i < 12; ++i) {
    visited.push_back(QApplication::focusWidget()->objectName().toStdString());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_THAT(visited, ElementsAre("MoveNW", "MoveUp", "MoveNE", "MoveLeft", "Center", "MoveRight", "MoveSW",
                                   "MoveDown", "MoveSE", "uiTxtBoxX", "uiTxtBoxY", "uibtnok"));
  EXPECT_EQ(QApplication::focusWidget(), &button("MoveNW"));
}

TEST_F(ViewPointWindows, ArrowKeysGoAmongTheMoves) {
  show(page);
  button("Center").setFocus();
  QTest::keyClick(&button("Center"), Qt::Key_Up);
  EXPECT_TRUE(button("MoveLeft").hasFocus());
  QTest::keyClick(&button("MoveLeft"), Qt::Key_Right);
  EXPECT_TRUE(button("Center").hasFocus());
  EXPECT_EQ(text("uiTxtBoxX"), "") << "no arrow key moves the viewpoint";
}

TEST_F(ViewPointWindows, TheSpaceBarMovesTheViewpoint) {
  show(page);
  button("MoveRight").setFocus();
  QTest::keyClick(&button("MoveRight"), Qt::Key_Space);
  EXPECT_EQ(text("uiTxtBoxX"), "155");
  EXPECT_TRUE(button("MoveRight").isChecked());
}

TEST_F(ViewPointWindows, NothingIsCutOffAtTheSizeOfTheLayout) {
  for (ViewPointSteering* const window :
       {static_cast<ViewPointSteering*>(&page), static_cast<ViewPointSteering*>(&dialog)}) {
    show(*window);
    const QSize needed = view->minimumSizeHint();
    EXPECT_GE(view->width(), needed.width());
    EXPECT_GE(view->height(), needed.height());
  }
}

}  // namespace
}  // namespace vlclientui::test
