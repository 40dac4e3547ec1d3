#include "widgets/QtSurface.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include "contracts/RuntimeFailure.h"
#include "engine/Engine.h"
#include "platform/LibXmlService.h"
#include "widgets/RowListView.h"
#include "widgets/SampleForm.h"
#include "widgets/ValueLabel.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* fields = "<list_fields><Name width='15'/></list_fields>";
constexpr const char* rows =
    "<list_values><E icon=\"fldr\" displayName=\"Europe\"/><a icon=\"VLSERVICE\" "
    "displayName=\"alpha\"/></list_values>";

/// An engine in the slot of the sample form's hosted control.
class QtSurface : public WidgetTest {
 protected:
  std::shared_ptr<Plexa> makeEngine() {
    auto made = engines.createPlexa();
    made->Notify.connect([this](Plexa&, const PlexaEvent& event) {
      log.push_back(event.EventName + " " + event.Value + " " + event.ItemName + " " +
                    std::to_string(event.KeyCode));
      if (onNotify) onNotify();
    });
    return made;
  }

  void showList() {
    widget("slot").setMinimumHeight(150);
    engine = makeEngine();
    engine->SetOption("List_Fields", fields);
    engine->SetOption("List_Values", rows);
    engine->ParentWindow(toolkit->windowOf(controls().hosted));
    engine->DataXml("<root><xfd_header/></root>");
    engine->Height(300);
    engine->Width(400);
    engine->Top(50);
    ASSERT_TRUE(engine->Show());
    QCoreApplication::processEvents();
  }

  [[nodiscard]] widgets::RowListView* list() {
    QWidget* slot = toolkit->viewOf(form)->findChild<QWidget*>("slot");
    for (auto* view : slot->findChildren<QTreeView*>()) {
      if (view->isVisible()) return dynamic_cast<widgets::RowListView*>(view);
    }
    return nullptr;
  }
  [[nodiscard]] QPoint rowCenter(int row) {
    return list()->visualRect(list()->model()->index(row, 0)).center();
  }
  void click(int row) { QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, rowCenter(row)); }
  std::vector<std::string> takeNotified() { return std::exchange(log, {}); }

  engine::EngineFactory engines{
      std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string())),
      std::make_shared<widgets::QtSurfaceFactory>(toolkit)};
  std::shared_ptr<Plexa> engine;
  std::vector<std::string> log;
  std::function<void()> onNotify;
};

TEST_F(QtSurface, ListFillsItsSlotWhateverPlaceItWasTold) {
  show([this] {
    toolkit->viewOf(form)->resize(700, 700);
    showList();
    ASSERT_TRUE(list());
    EXPECT_EQ(list()->width(), widget("slot").width());
    EXPECT_EQ(list()->height(), widget("slot").height());
    engine.reset();
  });
}

TEST_F(QtSurface, WhatIsShownFollowsTheSizeOfItsSlot) {
  show([this] {
    engine = makeEngine();
    engine->EmbeddedMode(true);
    engine->FormDefinition("<V><A/></V>");
    engine->DataXml("<V><A>1</A></V>");
    engine->ParentWindow(toolkit->windowOf(controls().hosted));
    engine->Width(50);
    engine->Height(20);
    ASSERT_TRUE(engine->Show());
    for (const int side : {500, 800}) {
      toolkit->viewOf(form)->resize(side, side);
      QCoreApplication::processEvents();
      const auto* page = widget("slot").findChild<QScrollArea*>();
      ASSERT_TRUE(page);
      EXPECT_EQ(page->size(), widget("slot").size());
    }
    engine.reset();
  });
}

TEST_F(QtSurface, TabGoesFromTheControlsIntoTheEditorsAndOn) {
  show([this] {
    engine = makeEngine();
    engine->FormDefinition("<V><A/><B/></V>");
    engine->DataXml("<V><A>1</A><B>2</B></V>");
    engine->ParentWindow(toolkit->windowOf(controls().hosted));
    ASSERT_TRUE(engine->Show());
    QCoreApplication::processEvents();
    auto* first = widget("slot").findChild<QLineEdit*>("A");
    first->setFocus();
    QTest::keyClick(first, Qt::Key_Tab);
    EXPECT_EQ(toolkit->viewOf(form)->focusWidget()->objectName(), "B");
    QTest::keyClick(toolkit->viewOf(form)->focusWidget(), Qt::Key_Backtab);
    QTest::keyClick(toolkit->viewOf(form)->focusWidget(), Qt::Key_Backtab);
    const QWidget* before = toolkit->viewOf(form)->focusWidget();
    EXPECT_FALSE(widget("slot").isAncestorOf(before));
    QTest::keyClick(toolkit->viewOf(form)->focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(toolkit->viewOf(form)->focusWidget(), first);
    engine.reset();
  });
}

TEST_F(QtSurface, ListIsAChildWindowOfItsParentByTitle) {
  show([this] {
    showList();
    const auto children = toolkit->childWindows(toolkit->windowOf(controls().hosted));
    EXPECT_TRUE(std::ranges::any_of(children, [this](WindowHandle child) {
      return toolkit->windowTitle(child, 4) == "CHSL" && toolkit->isWindowEnabled(child);
    }));
    engine.reset();
  });
}

TEST_F(QtSurface, WhatAPersonDoesReachesTheHolder) {
  show([this] {
    showList();
    click(1);
    QTest::keyClick(list(), Qt::Key_Up);
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_THAT(takeNotified(), ElementsAre("Click / alpha 0", "Click / Europe 0", "DblClick / Europe 0"));
    engine.reset();
  });
}

TEST_F(QtSurface, NewRowsOfADoubleClickedFolderLieInIt) {
  show([this] {
    showList();
    onNotify = [this] {
      if (log.back().starts_with("DblClick"))
        engine->SetOption("List_Values",
                          "<list_values><b icon=\"VLSERVICE\" displayName=\"beta\"/></list_values>");
    };
    click(0);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, rowCenter(0));
    takeNotified();
    click(0);
    EXPECT_EQ(takeNotified().back(), "Click /Europe beta 0");
    QTest::keyClick(list(), Qt::Key_Backspace);
    EXPECT_EQ(takeNotified().back().back(), '8');
    engine.reset();
  });
}

TEST_F(QtSurface, FocusInTheListIsNoFocusOfAControl) {
  show([this] {
    showList();
    form.log.clear();
    click(0);
    EXPECT_THAT(form.log, ElementsAre("box lost focus"));
    EXPECT_EQ(form.focusedControl(), nullptr);
    engine.reset();
  });
}

TEST_F(QtSurface, ListReplacedWhileItHasTheFocusMovesNoControl) {
  show([this] {
    showList();
    click(0);
    form.log.clear();
    engine->ParentWindow(0);
    engine.reset();
    showList();
    EXPECT_THAT(form.log, IsEmpty());
    engine.reset();
  });
}

TEST_F(QtSurface, EngineMayGoInsideItsOwnEvent) {
  show([this] {
    showList();
    onNotify = [this] { engine.reset(); };
    click(1);
    EXPECT_THAT(takeNotified(), ElementsAre("Click / alpha 0"));
    EXPECT_EQ(list(), nullptr);
  });
}

TEST_F(QtSurface, FormMayUnloadInsideAnEventOfTheList) {
  show([this] {
    showList();
    onNotify = [this] {
      engine->ParentWindow(0);
      form.unload();
    };
    click(1);
    EXPECT_FALSE(form.loaded());
  });
  engine.reset();
}

TEST_F(QtSurface, FailureOfAHandlerIsReported) {
  show([this] {
    showList();
    onNotify = [] { throw RuntimeFailure("notify failed"); };
    answerNextMessage();
    click(1);
    EXPECT_THAT(messages, ElementsAre(QStringLiteral("notify failed")));
    engine.reset();
  });
}

TEST_F(QtSurface, DetachingAfterTheWindowIsGoneIsHarmless) {
  show([this] { showList(); });
  engine->ParentWindow(0);
  engine.reset();
}

TEST_F(QtSurface, UnknownParentFailsToShow) {
  auto surface = widgets::QtSurfaceFactory(toolkit).createSurface({});
  EXPECT_THROW(surface->attach(4711, "CHSList"), RuntimeFailure);
}

TEST_F(QtSurface, WindowWithoutASlotHasTheSurfaceAtItsPlace) {
  QWidget parent;
  parent.resize(500, 400);
  auto surface = widgets::QtSurfaceFactory(toolkit).createSurface({});
  surface->attach(toolkit->windows().handleOf(&parent), "Page");
  surface->setGeometry({10, 20, 200, 100});
  auto* frame = parent.findChild<QWidget*>();
  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->geometry(), QRect(10, 20, 200, 100));
  EXPECT_EQ(frame->windowTitle(), "Page");
  EXPECT_TRUE(frame->isHidden());
  surface->setVisible(true);
  EXPECT_FALSE(frame->isHidden());
  surface->detach();
  EXPECT_EQ(parent.findChild<QWidget*>(), nullptr);
}

TEST_F(QtSurface, PageReplacesAListAndItsScrollBarCanBeSwitchedOff) {
  QWidget parent;
  auto surface = widgets::QtSurfaceFactory(toolkit).createSurface({});
  surface->attach(toolkit->windows().handleOf(&parent), "Page");
  auto page = std::make_shared<engine::FormModel>();
  page->groups.push_back({"G", {engine::FormField{}}});
  surface->setPageScrollBar(false);
  surface->showForm(page);
  auto* area = parent.findChild<QScrollArea*>();
  ASSERT_TRUE(area);
  EXPECT_EQ(area->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
  surface->setPageScrollBar(true);
  EXPECT_EQ(area->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
}

TEST_F(QtSurface, SeparateWindowRunsUntilItIsClosed) {
  show([this] {
    auto surface = widgets::QtSurfaceFactory(toolkit).createSurface({});
    auto page = std::make_shared<engine::FormModel>();
    engine::FormField field;
    field.name = "title";
    field.value = "C:\\maps";
    field.readOnly = true;
    page->groups.push_back({"G", {field}});
    QString shown;
    QTimer::singleShot(0, [&] {
      auto* window = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(window, toolkit->viewOf(form));
      EXPECT_EQ(window->parentWidget(), toolkit->viewOf(form));
      shown = window->windowTitle() + " " +
              dynamic_cast<widgets::ValueLabel&>(*window->findChild<QLabel*>("title")).value();
      QTest::keyClick(window, Qt::Key_Escape);
    });
    surface->runWindow("Service Properties", engine::WindowFrame::Resizable, page);
    EXPECT_EQ(shown.toStdString(), "Service Properties C:\\maps");
    EXPECT_TRUE(form.loaded());
  });
}

}  // namespace
}  // namespace vlclientui::test
