#include "widgets/TreeView.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>

#include <gmock/gmock.h>

#include "engine/EngineFixture.h"
#include "widgets/QtSurface.h"
#include "widgets/SampleForm.h"
#include "widgets/TreeItemModel.h"

namespace vlclientui::test {
namespace {

constexpr const char* document =
    "<Process><Step id=\"1\"><Name>Stretch</Name><Band>1</Band><Band>2</Band></Step>"
    "<Note>before <b>bold</b> after</Note><Step id=\"2\"><Name>Mosaic</Name></Step></Process>";

/// The tree of a small document in a window of the host.
class TreeViewWidgets : public WidgetTest {
 protected:
  void SetUp() override {
    window.resize(500, 400);
    engine = engines.createPlexa();
    engine->Visible(false);
    engine->Width(480);
    engine->Height(350);
    engine->SetOption("treeviewdisplay", "True");
    engine->ParentWindow(toolkit->windows().handleOf(&window));
    engine->Left(7);
    engine->Top(5);
    engine->SetOption("ShowVScrollBar", "False");
    engine->DataXml(document);
    engine->Visible(true);
    ASSERT_TRUE(engine->Show());
    window.show();
    window.activateWindow();
    tree().setFocus();
    QCoreApplication::processEvents();
    QApplication::clipboard()->clear();
  }

  void TearDown() override {
    engine->ParentWindow(0);
    engine.reset();
  }

  [[nodiscard]] widgets::TreeView& view() {
    return dynamic_cast<widgets::TreeView&>(*window.findChild<QTreeView*>("tree")->parentWidget());
  }
  [[nodiscard]] QTreeView& tree() { return view().tree(); }
  [[nodiscard]] QLineEdit& search() { return view().searchLine(); }
  [[nodiscard]] std::string current(int column = 0) {
    return tree().currentIndex().siblingAtColumn(column).data().toString().toStdString();
  }
  void press(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&tree(), Qt::Key(key), modifiers);
  }
  [[nodiscard]] static std::string copied() { return QApplication::clipboard()->text().toStdString(); }

  engine::EngineFactory engines{engine::testXml(), std::make_shared<widgets::QtSurfaceFactory>(toolkit)};
  QWidget window;
  std::shared_ptr<Plexa> engine;
};

TEST_F(TreeViewWidgets, StandAtTheirPlaceWithTheirFirstNodeOpen) {
  EXPECT_EQ(view().parentWidget()->geometry(), QRect(7, 5, 480, 350));
  EXPECT_EQ(current(), "Process");
  EXPECT_TRUE(tree().isExpanded(tree().currentIndex()));
}

TEST_F(TreeViewWidgets, AreWalkedByKeys) {
  press(Qt::Key_Down);
  EXPECT_EQ(current(), "Step");
  press(Qt::Key_Right);
  press(Qt::Key_Down);
  EXPECT_EQ(current(), "@id");
  EXPECT_EQ(current(1), "1");
  press(Qt::Key_Down);
  EXPECT_EQ(current(), "Name");
  EXPECT_EQ(current(1), "Stretch");
}

TEST_F(TreeViewWidgets, AValueIsCopiedByItsKeyAndAPathByItsOwn) {
  for (const int key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down})
    press(key);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(copied(), "2");
  press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(copied(), "/Process/Step[1]/Band[2]");
}

TEST_F(TreeViewWidgets, TheContextMenuCopiesToo) {
  EXPECT_EQ(tree().contextMenuPolicy(), Qt::ActionsContextMenu);
  press(Qt::Key_Down);
  for (QAction* action : tree().actions()) {
    if (action->objectName() == "copyPath") action->trigger();
  }
  EXPECT_EQ(copied(), "/Process/Step[1]");
}

TEST_F(TreeViewWidgets, TypingSearchesNamesAndValuesAtEachKey) {
  QTest::keyClick(&tree(), Qt::Key_M);
  EXPECT_EQ(window.focusWidget(), &search());
  EXPECT_EQ(current(), "Name");
  EXPECT_EQ(current(1), "Stretch");
  QTest::keyClicks(&search(), "o");
  EXPECT_EQ(current(1), "Mosaic");
  EXPECT_TRUE(tree().isExpanded(tree().currentIndex().parent()));
}

TEST_F(TreeViewWidgets, EnterGoesOnAndShiftEnterBack) {
  QTest::keyClick(&tree(), Qt::Key_B);
  const auto first = tree().currentIndex();
  QTest::keyClick(&search(), Qt::Key_Return);
  EXPECT_NE(tree().currentIndex(), first);
  QTest::keyClick(&search(), Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(tree().currentIndex(), first);
  QTest::keyClick(&search(), Qt::Key_F3);
  QTest::keyClick(&search(), Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(tree().currentIndex(), first);
}

TEST_F(TreeViewWidgets, WhatIsNotThereIsToldAndMovesNothing) {
  search().setFocus();
  QTest::keyClicks(&search(), "zz");
  EXPECT_EQ(current(), "Process");
  EXPECT_TRUE(window.findChild<QLabel*>("nothing")->isVisible());
  QTest::keyClick(&search(), Qt::Key_Escape);
  EXPECT_FALSE(window.findChild<QLabel*>("nothing")->isVisible());
  EXPECT_EQ(window.focusWidget(), &tree());
}

TEST_F(TreeViewWidgets, ControlFGoesToTheSearch) {
  press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(window.focusWidget(), &search());
}

TEST_F(TreeViewWidgets, NewDataReplaceTheTree) {
  engine->DataXml("<Other/>");
  EXPECT_TRUE(engine->Commit());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(current(), "Other");
  EXPECT_EQ(engine->GetResultXml(), "<Other/>");
}

TEST_F(TreeViewWidgets, TextsThatStandAmongElementsAreChildren) {
  widgets::TreeItemModel model(engine::TreeModel::parse(*engine::testXml(), document), nullptr);
  const auto note = model.index(1, 0, model.index(0, 0));
  EXPECT_EQ(model.rowCount(note), 3);
  EXPECT_EQ(model.index(0, 0, note).data(), "(text)");
  EXPECT_EQ(model.index(0, 1, note).data(), "before");
  EXPECT_EQ(model.parent(model.index(1, 1, note)), note);
}

TEST_F(TreeViewWidgets, AHundredThousandNodesAreShownWithoutMakingThem) {
  std::string text = "<All>";
  for (int index = 0; index < 1000; ++index) {
    text += "<Group n=\"" + std::to_string(index) + "\">";
    for (int leaf = 0; leaf < 99; ++leaf) text += "<Leaf>" + std::to_string(index * 100 + leaf) + "</Leaf>";
    text += "</Group>";
  }
  text += "</All>";
  engine->DataXml(text);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();
  search().setFocus();
  QTest::keyClicks(&search(), "99998");
  EXPECT_EQ(current(1), "99998");
  tree().setFocus();
  press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(copied(), "/All/Group[1000]/Leaf[99]");
}

}  // namespace
}  // namespace vlclientui::test
