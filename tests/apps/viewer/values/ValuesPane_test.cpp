// A person who asks the map for values.

#include "viewer/values/ValuesPane.h"

#include <QClipboard>
#include <QLabel>
#include <QTreeWidget>

#include "apps/viewer/ViewerDocksFixture.h"

namespace vlclientui::test {
namespace {

class ValuesPane : public ViewerDocksFixture {
 protected:
  [[nodiscard]] QTreeWidget& tree() const { return *window_->findChild<QTreeWidget*>("Values"); }
  [[nodiscard]] bool isReading() const { return window_->findChild<viewer::ValuesPane*>()->isReading(); }
  void seeValues() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return tree().topLevelItemCount() > 0 && !isReading(); }, 30'000));
  }
  void clickMiddle() {
    QTest::mouseClick(&map(), Qt::LeftButton, Qt::NoModifier, map().rect().center());
    seeValues();
  }
  [[nodiscard]] static QStringList below(const QTreeWidgetItem& item) {
    QStringList names;
    for (int i = 0; i < item.childCount(); ++i) names << item.child(i)->text(0);
    return names;
  }
};

TEST_F(ValuesPane, ShowsTheBandsAndEverySourceUnderAClick) {
  pickOverlaps();
  action("ShowValues").trigger();
  seeDrawn();
  clickMiddle();
  ASSERT_EQ(tree().topLevelItemCount(), 1);
  const auto& service = *tree().topLevelItem(0);
  EXPECT_EQ(service.childCount(), 3 + 3) << below(service).join(" ").toStdString();
  EXPECT_EQ(service.child(0)->text(1).split(' ').first(), QString::number(blue.red()));
  EXPECT_EQ(service.child(2)->text(1).split(' ').first(), QString::number(blue.blue()));
  EXPECT_EQ(service.child(3)->text(1), "on top");
  EXPECT_EQ(service.child(5)->text(1), "below");
  EXPECT_FALSE(window_->findChild<QLabel*>("ValuesPlace")->text().isEmpty());
  service.child(3);
  tree().topLevelItem(0)->child(3)->setExpanded(true);
  keepPicture(*window_, "values");
}

TEST_F(ValuesPane, AClickReadsNothingWhileItIsClosed) {
  pickOverlaps();
  QTest::mouseClick(&map(), Qt::LeftButton, Qt::NoModifier, map().rect().center());
  EXPECT_EQ(tree().topLevelItemCount(), 0);
}

TEST_F(ValuesPane, EnterAsksForTheMiddleAndDraggingForNothing) {
  pickOverlaps();
  action("ShowValues").trigger();
  viewer::person::drag(map(), {0.5, 0.5}, {0.52, 0.5});
  EXPECT_EQ(tree().topLevelItemCount(), 0);
  QTest::keyClick(&map(), Qt::Key_Return);
  seeValues();
  EXPECT_GT(tree().topLevelItem(0)->childCount(), 0);
}

TEST_F(ValuesPane, AsksAllVisibleServicesTheTopOneFirst) {
  pickSample("World/EGM96_Geoid");
  pickOverlaps();
  action("ShowValues").trigger();
  clickMiddle();
  ASSERT_EQ(tree().topLevelItemCount(), 2);
  EXPECT_EQ(tree().topLevelItem(0)->text(0), window_->services().rows()[0].name());
  EXPECT_EQ(tree().topLevelItem(1)->text(0), window_->services().rows()[1].name());
  auto& list = *window_->findChild<QListView*>();
  list.model()->setData(list.model()->index(1, 0), Qt::Unchecked, Qt::CheckStateRole);
  clickMiddle();
  EXPECT_EQ(tree().topLevelItemCount(), 1);
}

TEST_F(ValuesPane, CopiesAllOrWhatIsSelected) {
  pickOverlaps();
  action("ShowValues").trigger();
  clickMiddle();
  auto& button = *window_->findChild<QPushButton*>("CopyValues");
  button.click();
  const QString all = QGuiApplication::clipboard()->text();
  EXPECT_TRUE(all.startsWith(window_->findChild<QLabel*>("ValuesPlace")->text())) << all.toStdString();
  EXPECT_TRUE(all.contains("on top"));
  QTreeWidgetItem& first = *tree().topLevelItem(0)->child(0);
  tree().clearSelection();
  first.setSelected(true);
  tree().setFocus();
  viewer::person::press(tree(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), first.text(0) + "\t" + first.text(1) + "\n");
}

TEST_F(ValuesPane, KeepsOpenWhatAPersonHasOpened) {
  pickOverlaps();
  action("ShowValues").trigger();
  seeDrawn();
  clickMiddle();
  const QString opened = tree().topLevelItem(0)->child(4)->text(0);
  tree().topLevelItem(0)->child(4)->setExpanded(true);
  clickMiddle();
  EXPECT_EQ(tree().topLevelItem(0)->child(4)->text(0), opened);
  EXPECT_TRUE(tree().topLevelItem(0)->child(4)->isExpanded());
  EXPECT_FALSE(tree().topLevelItem(0)->child(3)->isExpanded());
}

TEST_F(ValuesPane, TellsThatItReadsAndThatItWasCanceled) {
  pickOverlaps();
  action("ShowValues").trigger();
  seeDrawn();
  auto& pane = *window_->findChild<viewer::ValuesPane*>();
  auto& cancel = *window_->findChild<QPushButton*>("CancelValues");
  EXPECT_FALSE(cancel.isEnabled());
  pane.ask(map().frame().middle());
  EXPECT_TRUE(cancel.isEnabled());
  EXPECT_EQ(tree().topLevelItem(0)->text(1), "reading\u2026");
  cancel.click();
  EXPECT_EQ(tree().topLevelItem(0)->text(1), "canceled");
  EXPECT_FALSE(cancel.isEnabled());
  QTest::qWait(50);
  EXPECT_EQ(tree().topLevelItem(0)->text(1), "canceled");
}

TEST_F(ValuesPane, ComesFromTheMenuOfTheMapAsWell) {
  pickOverlaps();
  QContextMenuEvent event(QContextMenuEvent::Mouse, map().rect().center(),
                          map().mapToGlobal(map().rect().center()));
  QApplication::sendEvent(&map(), &event);
  action("ValuesHere").trigger();
  seeValues();
  EXPECT_TRUE(dock("ValuesDock").isVisible());
  EXPECT_TRUE(action("ShowValues").isChecked());
}

TEST_F(ValuesPane, ClosesWithWhatItMarked) {
  pickOverlaps();
  const QPoint middle = map().rect().center();
  const QImage before = map().grab().toImage();
  map().markPlace(map().frame().toMap(QPointF(middle) + QPointF(40, 40)));
  EXPECT_NE(map().grab().toImage(), before);
  action("ShowValues").trigger();
  action("ShowValues").trigger();
  seeDrawn();
  EXPECT_EQ(map().grab().toImage(), before);
}

}  // namespace
}  // namespace vlclientui::test
