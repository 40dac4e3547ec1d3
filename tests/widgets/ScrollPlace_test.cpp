#include "widgets/ScrollPlace.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>

#include <gtest/gtest.h>

#include "widgets/PageView.h"
#include "widgets/SampleForm.h"

namespace vlclientui::test {
namespace {

using widgets::ScrollPlace;

/// A place of twenty boxes with a combo box in their midst, in a window.
class ScrolledPlace : public testing::Test {
 protected:
  ScrolledPlace() {
    auto* const content = new QWidget;
    auto* const rows = new QVBoxLayout(content);
    for (int row = 0; row < 20; ++row) {
      boxes_ += new QLineEdit;
      rows->addWidget(boxes_.last());
    }
    combo_ = new QComboBox;
    combo_->addItems({"one", "two", "three"});
    combo_->setCurrentIndex(1);
    rows->insertWidget(2, combo_);
    place_ = new ScrollPlace;
    place_->setWidget(content);
    (new QVBoxLayout(&window_))->addWidget(place_);
    window_.resize(300, 300);
    window_.show();
    window_.activateWindow();
    // A test before may have closed a window under a pressed button.
    QTest::mouseRelease(&window_, Qt::LeftButton);
    static_cast<void>(QTest::qWaitForWindowActive(&window_));
  }

  [[nodiscard]] bool isSeen(const QWidget& widget) const {
    const QRect seen(widget.mapTo(place_->viewport(), QPoint()), widget.size());
    return place_->viewport()->rect().contains(seen);
  }
  [[nodiscard]] int scrolled() const { return place_->verticalScrollBar()->value(); }
  static void turnWheelOver(QWidget& widget) {
    const QPoint middle = widget.rect().center();
    QWheelEvent turn(middle, widget.mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    // Only what comes from the window system goes on to the widgets around.
    QSpontaneKeyEvent::setSpontaneous(&turn);
    qApp->notify(&widget, &turn);
  }

  QWidget window_;
  ScrollPlace* place_ = nullptr;
  QList<QLineEdit*> boxes_;
  QComboBox* combo_ = nullptr;
};

TEST_F(ScrolledPlace, AsksForTheWholeHeightAndIsContentWithAPart) {
  const int whole = place_->widget()->minimumSizeHint().height();
  EXPECT_GE(place_->sizeHint().height(), whole);
  EXPECT_LT(place_->minimumSizeHint().height(), 200);
  EXPECT_EQ(place_->minimumSizeHint().height() + place_->missingHeight(), whole);
}

TEST_F(ScrolledPlace, MissesNoHeightWhenItsContentIsLow) {
  for (QLineEdit* const box : boxes_) box->hide();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  EXPECT_EQ(place_->missingHeight(), 0);
  EXPECT_EQ(place_->verticalScrollBar()->maximum(), 0);
}

TEST_F(ScrolledPlace, HasRoomForItsBarBesideTheContent) {
  place_->setMinimumWidth(0);
  window_.resize(window_.minimumSizeHint());
  EXPECT_EQ(place_->horizontalScrollBar()->maximum(), 0);
}

TEST_F(ScrolledPlace, TellsTheWindowThatItsContentHasGrown) {
  for (QLineEdit* const box : boxes_) box->hide();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  const int before = window_.sizeHint().height();
  for (QLineEdit* const box : boxes_) box->show();
  for (int level = 0; level < 3; ++level) QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  EXPECT_GT(window_.sizeHint().height(), before + 100);
}

TEST_F(ScrolledPlace, ScrollsToWhatTabLeadsTo) {
  boxes_.first()->setFocus();
  for (int row = 1; row < boxes_.size(); ++row) {
    QTest::keyClick(window_.focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(isSeen(*window_.focusWidget())) << row;
  }
  EXPECT_GT(scrolled(), 0);
}

TEST_F(ScrolledPlace, ScrollsToWhatCodeOrALetterGivesTheFocus) {
  boxes_.last()->setFocus(Qt::ShortcutFocusReason);
  EXPECT_TRUE(isSeen(*boxes_.last()));
  boxes_.first()->setFocus(Qt::OtherFocusReason);
  EXPECT_TRUE(isSeen(*boxes_.first()));
}

TEST_F(ScrolledPlace, StaysWhileItsWidgetAsAWholeHoldsTheFocus) {
  boxes_.last()->setFocus();
  const int before = scrolled();
  place_->widget()->setFocus();
  EXPECT_EQ(scrolled(), before);
}

TEST_F(ScrolledPlace, DoesNotMoveUnderAPressedMouse) {
  place_->verticalScrollBar()->setValue(0);
  decltype(boxes_.size()) seen = 0;
  while (seen < boxes_.size() && isSeen(*boxes_[seen])) ++seen;
  QLineEdit& cut = *boxes_[std::min(seen, boxes_.size() - 1)];
  QTest::mousePress(&cut, Qt::LeftButton, {}, {4, 1});
  EXPECT_TRUE(cut.hasFocus());
  EXPECT_EQ(scrolled(), 0);
  QTest::mouseRelease(&cut, Qt::LeftButton, {}, {4, 1});
}

TEST_F(ScrolledPlace, TheWheelLeavesAComboBoxAsItIs) {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  boxes_.first()->setFocus();
  turnWheelOver(*combo_);
  EXPECT_EQ(combo_->currentText(), "two");
  EXPECT_FALSE(combo_->hasFocus());
  EXPECT_GT(scrolled(), 0);
}

TEST_F(ScrolledPlace, TheWheelTurnsAComboBoxThatHasTheFocus) {
  combo_->setFocus();
  turnWheelOver(*combo_);
  EXPECT_EQ(combo_->currentText(), "three");
}

using WindowWithAPage = WidgetTest;

// Qt knows pages and places that scroll by the same type.
TEST_F(WindowWithAPage, IsNoHigherForWhatThePageScrolls) {
  engine::FormModel page;
  page.groups.push_back({"General", std::vector<engine::FormField>(60)});
  show([&] {
    QWidget& window = *toolkit->viewOf(form)->window();
    const int before = window.minimumHeight();
    new widgets::PageView(page, {}, &window);
    QEvent layoutIsDue(QEvent::LayoutRequest);
    QApplication::sendEvent(&window, &layoutIsDue);
    EXPECT_EQ(window.minimumHeight(), before);
  });
}

}  // namespace
}  // namespace vlclientui::test
