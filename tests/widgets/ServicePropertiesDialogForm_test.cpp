// The one-window dialog on real windows and the real form engine. The pictures of the documentation are made
// here too.

#include "properties/ServicePropertiesDialogForm.h"

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <functional>
#include <set>

#include <gmock/gmock.h>

#include "engine/Engine.h"
#include "platform/LibXmlService.h"
#include "support/MetadataFixture.h"
#include "support/PropertiesFixture.h"
#include "widgets/QtSurface.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* attributes =
    "<XADef><Vorlane><ImageServiceProperties>"
    "<MosaicMethod MosaicMethod_LIST_=\"By Attribute; Lock Raster\"/><TileOrderField/><LockImageID/>"
    "</ImageServiceProperties></Vorlane></XADef>";
constexpr const char* fields =
    "<XFDef><Vorlane><ImageServiceProperties>"
    "<MosaicMethod MosaicMethod_LABEL_=\"&amp;Mosaic method\" MosaicMethod_READONLY_=\"True\"/>"
    "<TileOrderField TileOrderField_LABEL_=\"Order &amp;by\"/>"
    "<LockImageID LockImageID_LABEL_=\"&amp;Locked to\" LockImageID_READONLY_=\"True\"/>"
    "</ImageServiceProperties></Vorlane></XFDef>";
constexpr const char* sections =
    "<ImageServiceInfo><KeyDetails><Title/></KeyDetails></ImageServiceInfo>"
    "<RasterInfo><Info><RasterId/><RasterName/><Visible/></Info></RasterInfo>";

class OneWindow : public testing::Test {
 protected:
  OneWindow() {
    system->writeFile("C:\\Program\\VLClient.XADef",
                      std::string("<Vorlane><Client><ImageMetadata><Basic><NRows/></Basic></ImageMetadata>"
                                  "</Client>") +
                          sections + "</Vorlane>");
    system->writeFile("C:\\Program\\VLClient.Xfdef",
                      std::string("<Vorlane><ImageMetadata><Basic><NRows/></Basic></ImageMetadata>") +
                          sections + "</Vorlane>");
    service->definitions = {{1, attributes}, {2, fields}, {3, "<XADef/>"}, {4, "<XFDef/>"}};
    service->properties = propertiesXml(
        "<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>Year</TileOrderField><LockImageID/>");
    service->info =
        "<Vorlane><ImageServiceInfo><Name>Alps</Name><KeyDetails><Title>The Alps from above</Title>"
        "</KeyDetails></ImageServiceInfo></Vorlane>";
    service->metadata = imageOf({{}, {.id = "2", .name = "south", .visible = "False"}});
    service->serviceMetadata = "<Metadata/>";
    auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
    auto engines =
        std::make_shared<engine::EngineFactory>(xml, std::make_shared<widgets::QtSurfaceFactory>(toolkit));
    setPlatform(std::make_shared<Platform>(
        Platform{system, xml, toolkit, engines, std::make_shared<FakeClientLibrary>()}));
    dialog = std::make_shared<ServicePropertiesDialog>();
  }
  ~OneWindow() override {
    dialog.reset();
    setPlatform(nullptr);
    threadState() = {};
  }

  /// Shows the window; the script acts on it. @returns what the host gets.
  std::int32_t show(const std::function<void()>& script) {
    const auto older = queryInterface<IServicePropertiesDialog>(dialog);
    EXPECT_EQ(older->Init("", nullptr, service), boolean16True) << threadState().gStatus;
    QTimer::singleShot(0, [&] {
      window = QApplication::activeModalWidget();
      ASSERT_TRUE(window);
      ASSERT_TRUE(QTest::qWaitForWindowActive(window));
      script();
      if (window && window->isVisible()) window->close();
    });
    return older->ShowPropertiesModalDialog();
  }

  template <class Widget = QWidget>
  [[nodiscard]] Widget& widget(const char* name) const {
    return *window->findChild<Widget*>(QLatin1String(name));
  }
  void click(const char* button) const {
    QTest::mouseClick(&widget(button), Qt::LeftButton);
    QApplication::processEvents();
  }
  void clickTab(const char* strip, int tab) const {
    auto& bar = widget<QTabBar>(strip);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(tab).center());
    QApplication::processEvents();
  }
  void showMetadata() const { clickTab("myTab", 1); }
  void clickNode(int row) const {
    auto& tree = widget<QTreeWidget>("uiTreeView");
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                      tree.visualItemRect(tree.topLevelItem(row)).center());
    QApplication::processEvents();
  }
  /// The surface that shows in a slot; null when none does.
  [[nodiscard]] QWidget* surfaceIn(const char* slot) const {
    const auto children = widget(slot).findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* const child : children) {
      if (child->isVisible()) return child;
    }
    return nullptr;
  }
  /// The editor of the properties that holds this text.
  [[nodiscard]] QLineEdit* editorWith(const char* text) const {
    for (QLineEdit* const editor : widget("propertiesSlot").findChildren<QLineEdit*>()) {
      if (editor->text() == QLatin1String(text)) return editor;
    }
    return nullptr;
  }
  void edit(const char* from, const char* to) const {
    QLineEdit* const editor = editorWith(from);
    ASSERT_TRUE(editor);
    QTest::mouseClick(editor, Qt::LeftButton);
    editor->selectAll();
    QTest::keyClicks(editor, QLatin1String(to));
  }
  [[nodiscard]] static std::string published() { return threadState().gServicePropertiesXml; }

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<widgets::QtToolkit> toolkit = std::make_shared<widgets::QtToolkit>(system);
  std::shared_ptr<FakeImageService> service = std::make_shared<FakeImageService>();
  std::shared_ptr<ServicePropertiesDialog> dialog;
  QPointer<QWidget> window;
};

TEST_F(OneWindow, EveryControlHasExactlyOneWidgetOfItsKind) {
  ServicePropertiesDialogForm form(*toolkit);
  form.load();
  EXPECT_THAT(toolkit->missingWidgets(form), IsEmpty());
}

TEST_F(OneWindow, GivesThePropertiesTheirWholeSide) {
  show([this] {
    ASSERT_TRUE(surfaceIn("propertiesSlot"));
    EXPECT_EQ(surfaceIn("propertiesSlot")->size(), widget("propertiesSlot").size());
    EXPECT_FALSE(widget("uiTreeView").isVisible());
  });
}

TEST_F(OneWindow, GivesTheServiceTheWholeFrameOfItsPages) {
  show([this] {
    showMetadata();
    EXPECT_FALSE(widget("propertiesSlot").isVisible());
    ASSERT_TRUE(surfaceIn("FirstPageFrame"));
    EXPECT_EQ(surfaceIn("FirstPageFrame")->size(), widget("FirstPageFrame").size());
  });
}

TEST_F(OneWindow, HasTreesInTheFrameOfTheMetadata) {
  show([this] {
    showMetadata();
    clickNode(2);
    ASSERT_TRUE(surfaceIn("Frame1"));
    EXPECT_TRUE(surfaceIn("Frame1")->findChild<QTreeView*>());
    EXPECT_TRUE(surfaceIn("Frame1")->isVisible());
    clickNode(3);
    clickTab("TabStrip1", 1);
    EXPECT_TRUE(surfaceIn("Frame1"));
    clickTab("TabStrip1", 2);
    EXPECT_EQ(surfaceIn("Frame1"), nullptr);
    EXPECT_TRUE(widget("ListView1").isVisible());
    EXPECT_EQ(widget("ListView1").size(), widget("Frame2").size());
  });
}

TEST_F(OneWindow, LeavesNothingOfTheMetadataOverTheProperties) {
  show([this] {
    showMetadata();
    clickNode(2);
    clickTab("myTab", 0);
    EXPECT_EQ(surfaceIn("Frame1"), nullptr);
    EXPECT_FALSE(widget("uiTreeView").isVisible());
    ASSERT_TRUE(surfaceIn("propertiesSlot"));
    EXPECT_EQ(surfaceIn("propertiesSlot")->size(), widget("propertiesSlot").size());
  });
}

TEST_F(OneWindow, GivesAnEditToTheHostWithEnter) {
  EXPECT_EQ(show([this] {
              EXPECT_TRUE(widget<QPushButton>("uibtnok").isDefault());
              edit("Year", "Sensor");
              QTest::keyClick(window->focusWidget(), Qt::Key_Return);
            }),
            1);
  EXPECT_THAT(published(), HasSubstr("<TileOrderField>Sensor</TileOrderField>"));
}

TEST_F(OneWindow, TheLockButtonHasItsPicture) {
  show([this] {
    showMetadata();
    clickNode(3);
    const auto& lock = widget<QToolButton>("Command7");
    EXPECT_TRUE(lock.isVisible());
    EXPECT_FALSE(lock.icon().isNull());
  });
}

TEST_F(OneWindow, GivesItsRoomToTheSideThatShows) {
  show([this] {
    const int height = widget("propertiesSlot").height();
    window->resize(window->width() + 150, window->height() + 100);
    QApplication::processEvents();
    EXPECT_EQ(widget("propertiesSlot").height(), height + 100);
    EXPECT_EQ(surfaceIn("propertiesSlot")->size(), widget("propertiesSlot").size());
    showMetadata();
    EXPECT_EQ(surfaceIn("FirstPageFrame")->size(), widget("FirstPageFrame").size());
  });
}

TEST_F(OneWindow, HasALetterForEachButtonThatShows) {
  show([this] {
    for (const int side : {0, 1}) {
      clickTab("myTab", side);
      std::multiset<QString> letters;
      for (const auto* const button : window->findChildren<QPushButton*>()) {
        if (button->isVisible()) letters.insert(button->shortcut().toString());
      }
      EXPECT_EQ(letters, (std::multiset<QString>{"Alt+C", "Alt+E", "Alt+O", "Alt+S"})) << side;
    }
  });
}

TEST_F(OneWindow, TabGoesThroughTheMetadataAndTheButtonsAndComesRound) {
  show([this] {
    showMetadata();
    clickNode(3);
    clickTab("TabStrip1", 2);
    widget("myTab").setFocus(Qt::TabFocusReason);
    std::vector<std::string> visited;
    do {
      visited.push_back(window->focusWidget()->objectName().toStdString());
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    } while (visited.size() < 30 && window->focusWidget() != &widget("myTab"));
    EXPECT_THAT(visited, ElementsAre("myTab", "uiTreeView", "RasterList", "Command7", "TabStrip1",
                                     "ListView1", "Save", "Command2", "uibtnok", "uibtncancel"));
  });
}

TEST_F(OneWindow, TabGoesFromTheTabsThroughTheFieldsToTheButtons) {
  show([this] {
    widget("myTab").setFocus(Qt::TabFocusReason);
    std::vector<QWidget*> visited;
    do {
      visited.push_back(window->focusWidget());
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    } while (visited.size() < 30 && window->focusWidget() != &widget("myTab"));
    ASSERT_GE(visited.size(), 6U);
    EXPECT_TRUE(widget("propertiesSlot").isAncestorOf(visited[1]));
    EXPECT_EQ(visited[visited.size() - 4], &widget("SaveAs"));
    EXPECT_EQ(visited.back(), &widget("uibtncancel"));
  });
}

TEST_F(OneWindow, LeavesNoSurfaceBehind) {
  QPointer<QWidget> properties;
  QPointer<QWidget> page;
  show([&] {
    properties = surfaceIn("propertiesSlot");
    showMetadata();
    page = surfaceIn("FirstPageFrame");
    ASSERT_TRUE(properties && page);
  });
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(properties);
  EXPECT_FALSE(page);
}

}  // namespace
}  // namespace vlclientui::test
