// Edits that wait in the docks, and docks that change faster than they load.

#include <QAbstractButton>
#include <QLineEdit>
#include <QListView>
#include <QMouseEvent>
#include <QPushButton>
#include <QThread>
#include <QTreeWidget>

#include "apps/viewer/ViewerDocksFixture.h"
#include "widgets/Mnemonics.h"

namespace vlclientui::test {
namespace {

using viewer::person::choose;
using viewer::person::find;

class ViewerDocks : public ViewerDocksFixture {
 protected:
  void clickSources() {
    window_->activateWindow();
    auto& tree = find<QTreeWidget>(dock("MetadataDock"), "uiTreeView");
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree.visualItemRect(tree.topLevelItem(3)).center());
  }
  void lock() { viewer::person::click(find<QAbstractButton>(dock("MetadataDock"), "Command7")); }
  /// @returns the text of the viewpoint's box afterwards.
  QString stepLeft() {
    clickMove(dock("ViewPointDock"), "MoveLeft");
    return stepShown();
  }
  [[nodiscard]] QString stepShown() const {
    return find<QLineEdit>(dock("ViewPointDock"), "uiTxtBoxX").text();
  }
  /// Queues a click, as the window system does while the program is busy.
  static void postClick(QWidget& widget, const QPoint& at) {
    const auto post = [&](QEvent::Type type, Qt::MouseButtons buttons) {
      QCoreApplication::postEvent(
          &widget, new QMouseEvent(type, at, widget.mapToGlobal(at), Qt::LeftButton, buttons, {}));
    };
    post(QEvent::MouseButtonPress, Qt::LeftButton);
    post(QEvent::MouseButtonRelease, Qt::NoButton);
  }
  void postPick(int row) {
    auto& list = find<QListView>(*window_, "ServiceList");
    postClick(*list.viewport(), list.visualRect(list.model()->index(row, 0)).center());
  }
  void closeViewPointWindow() {
    act([this] { window_->showViewPointDialog(); });
    see("the window", [] { return window("ViewPoint").isVisible(); });
    act([] { QApplication::activeModalWidget()->close(); });
    seeNoWindow();
    run();
    seeDrawn();
  }
};

TEST_F(ViewerDocks, TheFirstApplyAfterALockUnlocks) {
  pickOverlaps();
  open("PropertiesDock");
  open("MetadataDock");
  seeDrawn();
  clickSources();
  lock();
  seeDrawn();
  ASSERT_EQ(servicePropertiesAt("MosaicMethod"), "LockRaster");
  dock("PropertiesDock").raise();
  chooseMethod("None");
  apply("PropertiesDock");
  EXPECT_EQ(servicePropertiesAt("MosaicMethod"), "None");
}

TEST_F(ViewerDocks, AStepOfTheViewpointOutlastsALock) {
  pickOverlaps();
  open("ViewPointDock");
  open("MetadataDock");
  seeDrawn();
  const QString chosen = stepLeft();
  clickSources();
  lock();
  seeDrawn();
  apply("ViewPointDock");
  EXPECT_EQ(servicePropertiesAt("ViewPointX"), chosen.toStdString());
}

TEST_F(ViewerDocks, TheViewpointWindowClosedWithoutAChoiceKeepsTheirEdits) {
  pickOverlaps();
  open("PropertiesDock");
  open("ViewPointDock");
  chooseMethod("By Attribute");
  const QString chosen = stepLeft();
  closeViewPointWindow();
  EXPECT_EQ(find<QComboBox>(dock("PropertiesDock"), "MosaicMethod").currentText(), "By Attribute");
  EXPECT_EQ(stepShown(), chosen);
  apply("ViewPointDock");
  EXPECT_EQ(servicePropertiesAt("ViewPointX"), chosen.toStdString());
}

TEST_F(ViewerDocks, ACanceledOneWindowDialogLeavesThemNoViewpoint) {
  pickOverlaps();
  open("PropertiesDock");
  const std::string before = servicePropertiesAt("ViewPointX");
  openPropertiesWindow();
  act([] { choose(find<QComboBox>(modalWindow(), "MosaicMethod"), "Closest to Viewpoint"); });
  seePropertiesWindowInFront();
  act([] { viewer::person::click(find<QPushButton>(modalWindow(), "ViewPointControl")); });
  see("the viewpoint", [] { return window("ViewPoint").isVisible(); });
  act([] { viewer::person::click(find<QAbstractButton>(window("ViewPoint"), "MoveLeft")); });
  act([] { click(window("ViewPoint"), "uibtnok"); });
  see("the window again", [] { return modalWindow().findChild<QPushButton*>("uibtncancel") != nullptr; });
  act([] { click(modalWindow(), "uibtncancel"); });
  seeNoWindow();
  run();
  apply("PropertiesDock");
  EXPECT_EQ(servicePropertiesAt("ViewPointX"), before);
}

TEST_F(ViewerDocks, PicksThatWaitWhileAPageIsShownAreFollowed) {
  pickSample("World/EGM96_Geoid");
  pickOverlaps();
  open("ViewPointDock");
  seeDrawn();
  for (int time = 0; time < 4; ++time) {
    postPick((time + 1) % 2);
    QCoreApplication::processEvents();
    QThread::msleep(60);
    postPick(time % 2);
    postPick((time + 1) % 2);
    QCoreApplication::processEvents();
    seeDrawn();
  }
  EXPECT_TRUE(find<QWidget>(dock("ViewPointDock"), "uiTxtBoxX").isVisible());
  EXPECT_EQ(map().image().reference, window_->services().rows()[0].reference);
}

TEST_F(ViewerDocks, ALockWithAPickRightBehindReachesNoOtherService) {
  pickSample("Imagery/Valley/Ortho_Mosaic");
  seeDrawn();
  pickOverlaps();
  open("PropertiesDock");
  open("MetadataDock");
  seeDrawn();
  clickSources();
  auto& button = find<QAbstractButton>(dock("MetadataDock"), "Command7");
  postClick(button, button.rect().center());
  postPick(1);
  QCoreApplication::processEvents();
  seeDrawn();
  EXPECT_EQ(map().image().reference, window_->services().rows()[1].reference);
  EXPECT_EQ(servicePropertiesAt("MosaicMethod"), "None");
}

TEST_F(ViewerDocks, TheButtonsOfEachPaneHaveLettersOfTheirOwn) {
  pickOverlaps();
  open("PropertiesDock");
  open("ViewPointDock");
  std::vector<QPushButton*> buttons;
  for (const char* const pane : {"PropertiesDock", "ViewPointDock"}) {
    for (const char* const name : {"ApplyProperties", "RevertProperties"})
      buttons.push_back(&find<QPushButton>(dock(pane), name));
  }
  for (QPushButton* const button : buttons) {
    const QChar letter = widgets::letterOf(button->text());
    ASSERT_FALSE(letter.isNull()) << button->text().toStdString();
    bool wasClicked = false;
    const auto listening =
        QObject::connect(button, &QPushButton::clicked, button, [&wasClicked] { wasClicked = true; });
    window_->activateWindow();
    QTest::keyClick(window_.get(), static_cast<char>(letter.toLower().toLatin1()), Qt::AltModifier);
    // A button shows for a moment that it is pressed.
    EXPECT_TRUE(QTest::qWaitFor([&wasClicked] { return wasClicked; })) << button->text().toStdString();
    QObject::disconnect(listening);
    seeDrawn();
  }
}

TEST_F(ViewerDocks, APageTakesNoLetterThatTheButtonsOfAClosedPaneHave) {
  pickOverlaps();
  open("PropertiesDock");
  for (const auto& caption : widgets::captionsIn(*window_)) {
    const QChar letter = widgets::letterOf(caption.text);
    const bool isTheirs = letter == 'L' || letter == 'T';
    EXPECT_FALSE(isTheirs && caption.widget->isVisible()) << caption.text.toStdString();
  }
}

TEST_F(ViewerDocks, AFloatingOneMayBeClosedAfterItHadTheFocusInTheWindow) {
  pickOverlaps();
  for (const char* name : {"MetadataDock", "PropertiesDock"}) {
    open(name);
    if (auto* const tree = dock(name).findChild<QTreeWidget*>("uiTreeView")) tree->setFocus();
    if (auto* const method = dock(name).findChild<QComboBox*>("MosaicMethod")) method->setFocus();
    QCoreApplication::processEvents();
    dock(name).setFloating(true);
    QTest::qWait(50);
    dock(name).close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    window_->activateWindow();
    QTest::qWait(50);
    EXPECT_TRUE(dock(name).isHidden());
  }
}

}  // namespace
}  // namespace vlclientui::test
