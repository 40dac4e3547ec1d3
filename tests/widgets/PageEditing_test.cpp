#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>

#include <gmock/gmock.h>

#include "contracts/RuntimeFailure.h"
#include "engine/EngineFixture.h"
#include "widgets/PageView.h"
#include "widgets/QtSurface.h"
#include "widgets/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The sample page, which has a field of every kind, in a window of the host, edited by keys and clicks.
class PageEditing : public WidgetTest {
 protected:
  void SetUp() override {
    window = std::make_unique<QWidget>();
    window->resize(620, 900);
    engine = engines.createPlexa();
    engine->EmbeddedMode(true);
    engine->AttributeDefinition(engine::sampleDocument("Sample.XADef"));
    engine->FormDefinition(engine::sampleDocument("Sample.Xfdef"));
    engine->DataXml(data);
    engine->DataRootPath("//");
    engine->ParentWindow(toolkit->windows().handleOf(window.get()));
    engine->Top(0);
    engine->Left(0);
    engine->Width(620);
    engine->Height(900);
    ASSERT_TRUE(engine->Show());
    engine->Notify.connect([this](Plexa&, const PlexaEvent& event) {
      told.push_back(event.EventName + " " + event.ControlName + "=" + event.Value);
      if (onNotify) onNotify();
    });
    window->show();
    window->activateWindow();
    QCoreApplication::processEvents();
  }

  void TearDown() override {
    if (engine) engine->ParentWindow(0);
    engine.reset();
  }

  template <class Widget>
  [[nodiscard]] Widget& control(const char* name) const {
    auto* found = window->findChild<Widget*>(QLatin1String(name));
    if (!found) throw std::runtime_error(std::string("no control ") + name);
    return *found;
  }
  /// Puts other text in the place of a line's, key by key.
  void retype(const char* name, const char* text) const {
    auto& line = control<QLineEdit>(name);
    line.setFocus();
    QTest::keyClick(&line, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&line, Qt::Key_Delete);
    QTest::keyClicks(&line, QLatin1String(text));
  }
  void leave() const { QTest::keyClick(window->focusWidget(), Qt::Key_Tab); }
  [[nodiscard]] std::string complaint(const char* name) const {
    const auto& label = control<QLabel>((std::string(name) + "_complaint").c_str());
    return label.isHidden() ? std::string() : label.text().toStdString();
  }
  [[nodiscard]] std::string dataWith(const std::string& from, const std::string& to) const {
    return engine::replaced(data, from, to);
  }

  const std::string data = engine::sampleDocument("Sample.xml");
  std::vector<std::string> help;
  engine::EngineFactory engines{
      engine::testXml(), std::make_shared<widgets::QtSurfaceFactory>(toolkit),
      [this](const std::string& file, const std::string& page) { help.push_back(file + " " + page); }};
  std::unique_ptr<QWidget> window;
  std::shared_ptr<Plexa> engine;
  std::vector<std::string> told;
  std::function<void()> onNotify;
};

TEST_F(PageEditing, ShowsEveryKindInAControlOfItsOwn) {
  EXPECT_EQ(control<QLineEdit>("Name").text(), "Davos");
  EXPECT_EQ(control<QLineEdit>("Height").text(), "1594.50");
  EXPECT_EQ(control<QLineEdit>("Floors").text(), "2");
  EXPECT_EQ(control<QCheckBox>("Open").checkState(), Qt::Checked);
  EXPECT_EQ(control<QComboBox>("Ground").currentText(), "Meadow");
  EXPECT_EQ(control<QComboBox>("Method").currentText(), "LockRaster");
  EXPECT_EQ(control<QPlainTextEdit>("Notes").toPlainText(), "first & last\nsecond line");
  EXPECT_EQ(control<QPushButton>("ViewPointControl").text(), "&Viewpoint...");
  EXPECT_EQ(control<QLabel>("Frame").text(), "WGS 84");
  EXPECT_EQ(control<QTabWidget>("").count(), 2);
  EXPECT_EQ(engine->GetResultXml(), data);
}

TEST_F(PageEditing, AKeyInALineIsInTheResultAtOnce) {
  retype("Name", "Arosa");
  EXPECT_EQ(engine->GetResultXml(), dataWith("Davos", "Arosa"));
  EXPECT_THAT(told, IsEmpty());
  leave();
  EXPECT_THAT(told, ElementsAre("Change Name=Arosa"));
}

TEST_F(PageEditing, BlanksBetweenWordsCanBeTyped) {
  retype("Name", "Bad Ragaz ");
  EXPECT_EQ(control<QLineEdit>("Name").text(), "Bad Ragaz ");
  EXPECT_EQ(engine->GetResultXml(), dataWith("Davos", "Bad Ragaz"));
}

TEST_F(PageEditing, EnterInALineIsToldToo) {
  retype("Name", "Arosa");
  QTest::keyClick(&control<QLineEdit>("Name"), Qt::Key_Return);
  leave();
  EXPECT_THAT(told, ElementsAre("Change Name=Arosa"));
}

TEST_F(PageEditing, WhatWasTypedCanBeUndone) {
  auto& line = control<QLineEdit>("Name");
  line.setFocus();
  line.end(false);
  QTest::keyClicks(&line, "x");
  EXPECT_EQ(engine->GetResultXml(), dataWith("Davos", "Davosx"));
  QTest::keyClick(&line, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(line.text(), "Davos");
  EXPECT_EQ(engine->GetResultXml(), data);
  auto& text = control<QPlainTextEdit>("Notes");
  text.setFocus();
  QTest::keyClicks(&text, "x");
  EXPECT_NE(engine->GetResultXml(), data);
  QTest::keyClick(&text, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(engine->GetResultXml(), data);
}

TEST_F(PageEditing, SeveralLinesAreTypedWithEnterAndLeftWithTab) {
  auto& text = control<QPlainTextEdit>("Notes");
  text.setFocus();
  QTest::keyClick(&text, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&text, "one");
  QTest::keyClick(&text, Qt::Key_Return);
  QTest::keyClicks(&text, "two");
  EXPECT_EQ(engine->GetResultXml(), dataWith("first &amp; last\r\nsecond line", "one\ntwo"));
  EXPECT_THAT(told, IsEmpty());
  leave();
  EXPECT_THAT(told, ElementsAre("Change Notes=one\ntwo"));
}

TEST_F(PageEditing, AChoiceIsPickedByKeysAndToldAtOnce) {
  auto& box = control<QComboBox>("Ground");
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_Down);
  EXPECT_THAT(told, ElementsAre("Change Ground=Ice"));
  EXPECT_EQ(engine->GetResultXml(), dataWith("<Ground>2", "<Ground>3"));
  QTest::keyClick(&box, Qt::Key_R);
  EXPECT_THAT(told.back(), "Change Ground=Rock");
}

TEST_F(PageEditing, AValueThatIsNotListedCanBePickedAgain) {
  auto& box = control<QComboBox>("Method");
  EXPECT_EQ(box.count(), 4);
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_Home);
  EXPECT_THAT(told, ElementsAre("Change Method=By Attribute"));
  QTest::keyClick(&box, Qt::Key_End);
  EXPECT_EQ(box.currentText(), "LockRaster");
  EXPECT_EQ(engine->GetResultXml(), data);
}

TEST_F(PageEditing, AWheelOverAChoiceWithoutTheFocusChangesNothing) {
  auto& box = control<QComboBox>("Ground");
  control<QLineEdit>("Name").setFocus();
  QWheelEvent wheel(QPointF(5, 5), box.mapToGlobal(QPoint(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&box, &wheel);
  EXPECT_EQ(box.currentText(), "Meadow");
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(PageEditing, ACheckBoxIsSwitchedBySpaceAndByItsKey) {
  auto& box = control<QCheckBox>("Open");
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_Space);
  EXPECT_EQ(engine->GetResultXml(), dataWith("<Open>true", "<Open>False"));
  QTest::keyClick(window.get(), Qt::Key_P, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([this] { return told.size() == 2; }));
  EXPECT_EQ(engine->GetResultXml(), data);
  EXPECT_THAT(told, ElementsAre("Change Open=No", "Change Open=Yes"));
}

TEST_F(PageEditing, ACheckBoxWithNeitherYesNorNoBecomesYes) {
  engine->DataXml(dataWith("<Open>true", "<Open>perhaps"));
  auto& box = control<QCheckBox>("Open");
  EXPECT_EQ(box.checkState(), Qt::PartiallyChecked);
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_Space);
  EXPECT_EQ(box.checkState(), Qt::Checked);
  EXPECT_EQ(engine->GetResultXml(), dataWith("<Open>true", "<Open>True"));
}

TEST_F(PageEditing, AButtonIsToldBehindTheTextThatWasTyped) {
  retype("Name", "Arosa");
  QTest::mouseClick(&control<QPushButton>("ViewPointControl"), Qt::LeftButton);
  EXPECT_THAT(told, ElementsAre("Change Name=Arosa", "Click ViewPointControl="));
}

TEST_F(PageEditing, AButtonIsPressedBySpaceAndByItsKey) {
  auto& button = control<QPushButton>("ViewPointControl");
  button.setFocus();
  QTest::keyClick(&button, Qt::Key_Space);
  QTest::keyClick(window.get(), Qt::Key_V, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([this] { return told.size() == 2; }));
  EXPECT_THAT(told, ElementsAre("Click ViewPointControl=", "Click ViewPointControl="));
}

TEST_F(PageEditing, KeysOfLabelsLeadToTheirFields) {
  QTest::keyClick(window.get(), Qt::Key_H, Qt::AltModifier);
  EXPECT_EQ(window->focusWidget(), &control<QLineEdit>("Height"));
  QTest::keyClick(window.get(), Qt::Key_M, Qt::AltModifier);
  EXPECT_EQ(window->focusWidget(), &control<QComboBox>("Method"));
  QTest::keyClick(window.get(), Qt::Key_Y, Qt::AltModifier);
  EXPECT_EQ(control<QTabWidget>("").currentIndex(), 1);
}

TEST_F(PageEditing, TabGoesThroughTheFieldsInTheirOrder) {
  control<QLineEdit>("Name").setFocus();
  std::vector<std::string> order;
  for (int step = 0; step < 14; ++step) {
    order.push_back(window->focusWidget()->objectName().toStdString());
    leave();
  }
  EXPECT_THAT(order,
              ElementsAre("Name", "Operator", "Height", "Floors", "Open", "Ground", "Notes", "Method",
                          "ViewPointControl", "qt_tabwidget_tabbar", "Interval", "Model", "Offset", "Name"));
}

TEST_F(PageEditing, AComplaintStandsBesideTheFieldUntilTheTextIsRight) {
  retype("Height", "high");
  EXPECT_EQ(complaint("Height"), "");
  leave();
  EXPECT_EQ(complaint("Height"), "Not a number, such as 12.5");
  EXPECT_EQ(control<QLineEdit>("Height").accessibleDescription(), "Not a number, such as 12.5");
  EXPECT_FALSE(engine->Commit());
  EXPECT_EQ(engine->GetResultXml(), data);
  retype("Height", "12");
  EXPECT_EQ(complaint("Height"), "");
  EXPECT_TRUE(engine->Commit());
  EXPECT_EQ(engine->GetResultXml(), dataWith(" 1594.50 ", "12"));
}

TEST_F(PageEditing, ATabTellsOfAComplaintOnIt) {
  auto& tabs = control<QTabWidget>("");
  tabs.setCurrentIndex(0);
  retype("Interval", "often");
  tabs.setCurrentIndex(1);
  EXPECT_FALSE(engine->Commit());
  EXPECT_FALSE(tabs.tabIcon(0).isNull());
  EXPECT_TRUE(tabs.tabIcon(1).isNull());
}

TEST_F(PageEditing, HelpIsAskedByF1InTheField) {
  control<QLineEdit>("Name").setFocus();
  QTest::keyClick(&control<QLineEdit>("Name"), Qt::Key_F1);
  control<QTabWidget>("").setCurrentIndex(0);
  control<QLineEdit>("Offset").setFocus();
  QTest::keyClick(&control<QLineEdit>("Offset"), Qt::Key_F1);
  EXPECT_THAT(help, ElementsAre("Stations.chm Weather_stations", "Stations.chm Calibration"));
}

TEST_F(PageEditing, NewDataReplaceWhatIsTypedAndTellNothing) {
  retype("Name", "Arosa");
  engine->DataXml(dataWith("Davos", "Chur"));
  EXPECT_TRUE(engine->Commit());
  EXPECT_EQ(control<QLineEdit>("Name").text(), "Chur");
  leave();
  EXPECT_THAT(told, IsEmpty());
  EXPECT_EQ(engine->GetResultXml(), dataWith("Davos", "Chur"));
}

TEST_F(PageEditing, NewDataWithOtherFieldsKeepTheFocusAndTheTab) {
  auto& before = control<QTabWidget>("");
  before.setCurrentIndex(1);
  control<QLineEdit>("Founded").setFocus();
  engine->DataXml(engine::replaced(data, "<Builder>Unknown</Builder>", ""));
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(window->findChild<QLabel*>("Builder"), nullptr);
  EXPECT_EQ(control<QTabWidget>("").currentIndex(), 1);
  EXPECT_EQ(window->focusWidget(), &control<QLineEdit>("Founded"));
}

TEST_F(PageEditing, FieldsAreHiddenAndDisabledInPlace) {
  retype("Name", "Arosa");
  engine->FindControl("@ViewPointControl")->Visible(false);
  engine->FindControl("@Operator")->Enabled(false);
  EXPECT_TRUE(control<QPushButton>("ViewPointControl").isHidden() ||
              !control<QPushButton>("ViewPointControl").isVisible());
  EXPECT_FALSE(control<QLineEdit>("Operator").isEnabled());
  QTest::keyClick(&control<QLineEdit>("Name"), Qt::Key_Z, Qt::ControlModifier);
  EXPECT_NE(control<QLineEdit>("Name").text(), "Arosa");
}

TEST_F(PageEditing, DetachingWhileAFieldHasTheFocusTellsNothing) {
  retype("Name", "Arosa");
  engine->ParentWindow(0);
  EXPECT_THAT(told, IsEmpty());
  EXPECT_EQ(engine->GetResultXml(), dataWith("Davos", "Arosa"));
}

TEST_F(PageEditing, TheEditOutlastsAWindowThatGoesFirst) {
  retype("Name", "Arosa");
  window.reset();
  EXPECT_EQ(engine->GetResultXml(), dataWith("Davos", "Arosa"));
  engine->DataXml(data);
  EXPECT_TRUE(engine->Commit());
  engine->Visible(false);
  engine->ParentWindow(0);
}

TEST_F(PageEditing, AReleaseWithoutDetachingTakesThePageOutOfTheWindow) {
  retype("Name", "Arosa");
  engine.reset();
  EXPECT_EQ(window->findChild<QLineEdit*>("Name"), nullptr);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(PageEditing, AHandlerMayReleaseThePageInsideItsOwnEdit) {
  onNotify = [this] {
    engine->ParentWindow(0);
    engine.reset();
  };
  auto& box = control<QComboBox>("Ground");
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_Down);
  EXPECT_EQ(engine, nullptr);
}

TEST_F(PageEditing, AFailureOfAHandlerIsReported) {
  onNotify = [] { throw RuntimeFailure("notify failed"); };
  answerNextMessage();
  control<QCheckBox>("Open").setFocus();
  QTest::keyClick(&control<QCheckBox>("Open"), Qt::Key_Space);
  EXPECT_THAT(messages, ElementsAre(QStringLiteral("notify failed")));
}

TEST_F(PageEditing, WithoutAScrollBarThePageStillScrolls) {
  ASSERT_TRUE(engine->SetOption("ShowVScrollBar", "False"));
  engine->Height(200);
  QCoreApplication::processEvents();
  auto& area = *window->findChild<QScrollArea*>();
  control<QLineEdit>("Name").setFocus();
  for (int step = 0; step < 8; ++step) leave();
  EXPECT_GT(area.verticalScrollBar()->value(), 0);
  const int before = area.verticalScrollBar()->value();
  QWheelEvent wheel(QPointF(5, 5), area.viewport()->mapToGlobal(QPoint(5, 5)), {}, {0, 120}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(area.viewport(), &wheel);
  EXPECT_LT(area.verticalScrollBar()->value(), before);
}

}  // namespace
}  // namespace vlclientui::test
