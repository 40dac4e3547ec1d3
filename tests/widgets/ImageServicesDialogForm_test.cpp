#include "selection/ImageServicesDialogForm.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <gmock/gmock.h>

#include "contracts/Platform.h"
#include "engine/Engine.h"
#include "frame/ThreadState.h"
#include "platform/LibXmlService.h"
#include "selection/ImageServicesDialog.h"
#include "support/FakeClient.h"
#include "support/SelectionFixture.h"
#include "support/TestFolders.h"
#include "widgets/QtSurface.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

std::string definition(const std::string& name) { return sourceFileText("definitions/" + name); }

std::string info(const std::string& name) {
  return "<ImageServiceInfo><Name>" + name + "</Name><KeyDetails><Title>Title of " + name +
         "</Title></KeyDetails><PixelType>UInt16</PixelType><NBands>3</NBands></ImageServiceInfo>";
}

/// The real dialog on real windows, with the real engine and a fake server.
class ImageServicesWindow : public testing::Test {
 protected:
  ImageServicesWindow() {
    for (const char* name : {"VLClient.XADef", "VLClient.Xfdef"}) {
      system->writeFile(std::string("C:\\Program\\") + name, definition(name));
    }
    auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
    auto engines =
        std::make_shared<engine::EngineFactory>(xml, std::make_shared<widgets::QtSurfaceFactory>(toolkit));
    setPlatform(std::make_shared<Platform>(
        Platform{system, xml, toolkit, engines, std::make_shared<FakeClientLibrary>()}));
    server->answer = serverInfo({{"Europe/alps", info("alps")}, {"relief", info("relief")}});
  }
  ~ImageServicesWindow() override { setPlatform(nullptr); }

  /// Shows the dialog; the script acts on its window. @returns the selected services.
  std::string show(const std::function<void()>& script, const std::string& extent = {}) {
    auto dialog = std::make_shared<ImageServicesDialog>();
    auto older = queryInterface<IImageServicesDialog>(dialog);
    EXPECT_EQ(older->Init("", std::make_shared<FakeServerClient>(server)), boolean16True);
    QTimer::singleShot(0, [&] {
      window = QApplication::activeModalWidget();
      ASSERT_TRUE(window);
      ASSERT_TRUE(QTest::qWaitForWindowActive(window));
      script();
      if (window && window->isVisible()) window->close();
    });
    EXPECT_EQ(older->ShowDialogEx(extent), boolean16True);
    return older->GetSelectedServices();
  }

  template <class Widget = QWidget>
  Widget& widget(const char* name) {
    return *window->findChild<Widget*>(QLatin1String(name));
  }
  QTreeView& list() {
    for (auto* view : widget("myPlexa").findChildren<QTreeView*>()) {
      if (view->isVisible()) return *view;
    }
    throw std::runtime_error("no list");
  }
  QPoint rowCenter(int row) { return list().visualRect(list().model()->index(row, 0)).center(); }
  void click(int row) { QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, rowCenter(row)); }
  void doubleClick(int row) {
    click(row);
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, rowCenter(row));
  }
  void keepPicture(const QString& name) {
    const QString folder = qEnvironmentVariable("VLCLIENTUI_PICTURES");
    if (!folder.isEmpty()) window->grab().save(folder + "/" + name + ".png");
  }
  void press(const char* name) { QTest::mouseClick(&widget(name), Qt::LeftButton); }
  QString rowName(int row) { return list().model()->index(row, 0).data().toString(); }

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<widgets::QtToolkit> toolkit = std::make_shared<widgets::QtToolkit>(system);
  std::shared_ptr<FakeServer> server = std::make_shared<FakeServer>();
  QPointer<QWidget> window;
};

TEST_F(ImageServicesWindow, EveryControlHasExactlyOneWidgetOfItsKind) {
  ImageServicesDialogForm form(*toolkit);
  form.load();
  EXPECT_THAT(toolkit->missingWidgets(form), IsEmpty());
  form.unload();
}

/// A person who picks a file whose name no document can hold.
class OddFilePicked : public widgets::QtToolkit {
 public:
  using QtToolkit::QtToolkit;
  std::optional<std::string> openFile(const FileDialog& /*dialog*/) override { return "C:\\bell\a.VLRef"; }
};

TEST_F(ImageServicesWindow, TellsAtItsFootWhyOkDidNothing) {
  toolkit = std::make_shared<OddFilePicked>(system);
  auto parts = std::make_shared<Platform>(*threadState().platform);
  parts->toolkit = toolkit;
  parts->plexa = std::make_shared<engine::EngineFactory>(
      parts->xml, std::make_shared<widgets::QtSurfaceFactory>(toolkit));
  setPlatform(parts);
  show([this] {
    press("Browse");
    EXPECT_FALSE(widget("formNotice").isVisible());
    press("uibtnok");
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(widget("formNotice").isVisible());
    EXPECT_TRUE(widget<QLabel>("formNotice").text().startsWith("Not done: "));
  });
}

TEST_F(ImageServicesWindow, TellsAtItsFootWhyADoubleClickInTheListDidNothing) {
  server->answer = serverInfo({{"Europe/alps &amp; lakes", info("alps")}, {"relief", info("relief")}});
  show([this] {
    doubleClick(0);
    EXPECT_EQ(rowName(0), "Europe");
    EXPECT_TRUE(widget("formNotice").isVisible());
    EXPECT_TRUE(widget<QLabel>("formNotice").text().startsWith("Not done: "));
    keepPicture("add-service-notice");
    doubleClick(1);
    EXPECT_EQ(widget<QListWidget>("ListBox").count(), 1);
    EXPECT_FALSE(widget("formNotice").isVisible());
  });
}

TEST_F(ImageServicesWindow, TellsNothingOfADoubleClickOnARowThatIsNoService) {
  server->answer = serverInfo({});
  show([this] {
    ASSERT_EQ(rowName(0), "(empty)");
    doubleClick(0);
    EXPECT_EQ(widget<QListWidget>("ListBox").count(), 0);
    EXPECT_FALSE(widget("formNotice").isVisible());
  });
}

TEST_F(ImageServicesWindow, TabVisitsTheControlsAsAPersonReads) {
  show([this] {
    std::vector<std::string> visited;
    click(1);
    press("SelectButton");
    widget("uiTxtBoxServerName").setFocus(Qt::TabFocusReason);
    for (int step = 0; step < 8; ++step) {
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
      visited.push_back(window->focusWidget()->objectName().toStdString());
    }
    EXPECT_THAT(visited, testing::ElementsAre("uiBtnBrowseServer", "", "SelectButton", "Info", "Desc",
                                              "ListBox", "Browse", "uibtnok"));
  });
}

TEST_F(ImageServicesWindow, ServiceIsPickedInsideAFolderAndHandedOver) {
  const std::string selected = show([this] {
    ASSERT_EQ(rowName(0), "Europe");
    click(0);
    QTest::keyClick(&list(), Qt::Key_Return);
    ASSERT_EQ(rowName(0), "alps");
    click(0);
    QTest::keyClick(&list(), Qt::Key_Return);
    QTest::keyClick(&list(), Qt::Key_Backspace);
    EXPECT_EQ(rowName(0), "Europe");
    click(1);
    press("SelectButton");
    ASSERT_EQ(widget<QListWidget>("ListBox").count(), 2);
    EXPECT_TRUE(widget("uibtnok").isEnabled());
    press("uibtnok");
  });
  EXPECT_THAT(selected, HasSubstr("<Name>ImageService://127.0.0.1/Europe/alps</Name>"));
  EXPECT_THAT(selected, HasSubstr("<Name>ImageService://127.0.0.1/relief</Name>"));
}

TEST_F(ImageServicesWindow, EscapeSelectsNothing) {
  const std::string selected = show([this] {
    click(1);
    press("SelectButton");
    QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
  });
  EXPECT_EQ(selected, "");
}

TEST_F(ImageServicesWindow, EnterInTheServerBoxAsksOnceAndKeepsTheWindow) {
  show([this] {
    auto& box = widget<QComboBox>("uiTxtBoxServerName");
    box.setFocus(Qt::MouseFocusReason);
    box.lineEdit()->selectAll();
    const auto asked = server->requests.size();
    QTest::keyClicks(&box, "relief.example");
    EXPECT_EQ(server->requests.size(), asked);
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(server->requests.size(), asked + 1);
    EXPECT_EQ(box.itemText(0), "relief.example");
    EXPECT_EQ(box.currentText(), "relief.example");
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(box.hasFocus());
  });
}

TEST_F(ImageServicesWindow, SilentServerDisablesTheServiceButtons) {
  server->answer.clear();
  show([this] {
    EXPECT_EQ(rowName(0), "(Server not found)");
    EXPECT_FALSE(widget("SelectButton").isEnabled());
    EXPECT_FALSE(widget("Info").isEnabled());
  });
}

TEST_F(ImageServicesWindow, FilterShowsOnlyWithAnExtent) {
  show([this] { EXPECT_FALSE(widget("Check1").isVisible()); });
  show([this] { EXPECT_TRUE(widget("Check1").isVisible()); }, "<AddImageServiceDialog/>");
}

TEST_F(ImageServicesWindow, InformationShowsInAWindowAndTheListIsEnabledAfterwards) {
  show([this] {
    click(1);
    EXPECT_EQ(widget<QLineEdit>("Desc").text(), "Title of relief");
    QString title;
    QTimer::singleShot(0, [&] {
      QWidget* popup = QApplication::activeModalWidget();
      ASSERT_NE(popup, window);
      title = popup->windowTitle();
      popup->close();
    });
    press("Info");
    EXPECT_EQ(title, "Service Properties");
    EXPECT_TRUE(list().isEnabled());
  });
}

TEST_F(ImageServicesWindow, RemoveFollowsTheMarkedEntries) {
  show([this] {
    click(1);
    press("SelectButton");
    auto& selected = widget<QListWidget>("ListBox");
    EXPECT_FALSE(widget("Remove").isEnabled());
    QTest::mouseClick(selected.viewport(), Qt::LeftButton, {},
                      selected.visualItemRect(selected.item(0)).center());
    EXPECT_TRUE(widget("Remove").isEnabled());
    press("Remove");
    EXPECT_EQ(selected.count(), 0);
    EXPECT_FALSE(widget("Remove").isEnabled());
    EXPECT_FALSE(widget("uibtnok").isEnabled());
  });
}

}  // namespace
}  // namespace vlclientui::test
