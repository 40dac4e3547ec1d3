#include "metadata/SourceMetadata.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QSplitter>
#include <QTabBar>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QTreeWidget>

#include <gmock/gmock.h>

#include "engine/Engine.h"
#include "frame/ThreadState.h"
#include "platform/LibXmlService.h"
#include "support/MetadataFixture.h"
#include "widgets/PageView.h"
#include "widgets/QtSurface.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {
namespace {

using testing::IsEmpty;

/// The real page on real windows and the real form engine, with a fake image service.
class MetadataPageWindow : public testing::Test {
 protected:
  MetadataPageWindow() {
    auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
    auto surfaces = std::make_shared<widgets::QtSurfaceFactory>(toolkit);
    auto engines = std::make_shared<engine::EngineFactory>(xml, surfaces);
    setPlatform(std::make_shared<Platform>(
        Platform{system, xml, toolkit, engines, std::make_shared<FakeClientLibrary>()}));
    writeDefinitions();
    service->answers["ServiceInfo"] =
        "<Vorlane><ImageServiceInfo><KeyDetails><Title>Alps</Title></KeyDetails></ImageServiceInfo></"
        "Vorlane>";
    service->answers["GetMetaData "] = "<Metadata><Author>survey</Author></Metadata>";
    service->answers["GetImageMetadata "] = imageOf({{}, {.id = "2", .name = "south", .visible = "False"}});
    service->answers["GetDefinition 1"] =
        "<XADef><Vorlane><ImageServiceProperties><MosaicMethod MosaicMethod_LIST_='Lock Raster'/>"
        "</ImageServiceProperties></Vorlane></XADef>";
    service->answers["GetDefinition 3"] = "<XADef><Metadata><Author/></Metadata></XADef>";
    service->answers["GetDefinition 4"] = "<XFDef><Metadata><Author/></Metadata></XFDef>";
  }
  ~MetadataPageWindow() override {
    page.reset();
    setPlatform(nullptr);
  }

  void writeDefinitions() const {
    const std::string sections =
        "<ImageServiceInfo><KeyDetails><Title/></KeyDetails><Vorlane><ImageServiceInfo><KeyDetails><Title/>"
        "</KeyDetails></ImageServiceInfo></Vorlane></ImageServiceInfo>"
        "<RasterInfo><Info><RasterId/><RasterName/><Visible/></Info></RasterInfo>";
    ThreadState& state = threadState();
    state.ClientXADefPath = "C:\\Program\\VLClient.XADef";
    state.ClientXfdefPath = "C:\\Program\\VLClient.Xfdef";
    system->writeFile(state.ClientXADefPath,
                      "<Vorlane><Client><ImageMetadata><Basic><NRows/></Basic></ImageMetadata></Client>" +
                          sections + "</Vorlane>");
    system->writeFile(
        state.ClientXfdefPath,
        "<Vorlane><ImageMetadata><Basic><NRows/></Basic></ImageMetadata>" + sections + "</Vorlane>");
  }

  void open() {
    page = std::make_unique<SourceMetadata>(*toolkit);
    page->myImageServiceObject = service;
    page->load();
    window = toolkit->viewOf(*page);
    toolkit->showWindow(toolkit->windowOf(*page), showModeShow);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    QApplication::processEvents();
  }

  template <class Widget = QWidget>
  Widget& widget(const char* name) {
    return *window->findChild<Widget*>(QLatin1String(name));
  }
  void clickNode(int row) {
    auto& tree = widget<QTreeWidget>("uiTreeView");
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                      tree.visualItemRect(tree.topLevelItem(row)).center());
    QApplication::processEvents();
  }
  void clickTab(const char* strip, int tab) {
    auto& bar = widget<QTabBar>(strip);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(tab).center());
    QApplication::processEvents();
  }
  /// The surface that shows in a slot; null when none does.
  QWidget* surfaceIn(const char* slot) {
    const auto children = widget(slot).findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* const child : children) {
      if (child->isVisible()) return child;
    }
    return nullptr;
  }

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<widgets::QtToolkit> toolkit = std::make_shared<widgets::QtToolkit>(system);
  std::shared_ptr<FakeMetadataService> service = std::make_shared<FakeMetadataService>();
  std::unique_ptr<SourceMetadata> page;
  QWidget* window = nullptr;
};

TEST_F(MetadataPageWindow, EveryControlHasExactlyOneWidgetOfItsKind) {
  open();
  EXPECT_THAT(toolkit->missingWidgets(*page), IsEmpty());
}

TEST_F(MetadataPageWindow, EachNodeHasItsIconAndWhatIsHiddenByDesignStaysHidden) {
  open();
  const auto& tree = widget<QTreeWidget>("uiTreeView");
  ASSERT_EQ(tree.topLevelItemCount(), 4);
  for (int row = 0; row < 4; ++row) {
    EXPECT_FALSE(tree.topLevelItem(row)->icon(0).isNull()) << row;
    clickNode(row);
    for (const char* const name :
         {"MDRichText", "MetadataText", "ProcessMetadata", "SourceImagesList", "Send"}) {
      EXPECT_FALSE(widget(name).isVisible()) << name;
    }
  }
}

TEST_F(MetadataPageWindow, PagesOfTheServiceFillTheirFrame) {
  open();
  clickNode(0);
  EXPECT_TRUE(widget("TabStrip2").isVisible());
  for (int tab = 0; tab < 3; ++tab) {
    clickTab("TabStrip2", tab);
    QWidget* const surface = surfaceIn("FirstPageFrame");
    ASSERT_TRUE(surface) << tab;
    EXPECT_EQ(surface->size(), widget("FirstPageFrame").size());
    EXPECT_FALSE(surface->findChildren<QLabel*>().isEmpty()) << tab;
  }
}

TEST_F(MetadataPageWindow, TheImageFillsItsFrameAndFollowsTheWindow) {
  open();
  clickNode(1);
  QWidget* const surface = surfaceIn("Frame1");
  ASSERT_TRUE(surface);
  const QSize before = surface->size();
  window->resize(window->width() + 200, window->height() + 150);
  QApplication::processEvents();
  EXPECT_EQ(surface->size(), widget("Frame1").size());
  EXPECT_EQ(surface->height(), before.height() + 150);
  EXPECT_GT(surface->width(), before.width());
}

TEST_F(MetadataPageWindow, TheServerProcessIsATreeInTheFrameOfTheImage) {
  open();
  clickNode(2);
  QWidget* const surface = surfaceIn("Frame1");
  ASSERT_TRUE(surface);
  EXPECT_EQ(surface->size(), widget("Frame1").size());
  EXPECT_TRUE(surface->findChild<QTreeView*>());
  clickNode(1);
  EXPECT_EQ(surfaceIn("Frame1")->findChild<QTreeView*>(), nullptr);
}

TEST_F(MetadataPageWindow, PagesOfARasterFillTheirFrame) {
  open();
  clickNode(3);
  ASSERT_TRUE(surfaceIn("InfoFrame"));
  EXPECT_EQ(surfaceIn("InfoFrame")->size(), widget("InfoFrame").size());
  for (const int tree : {1, 3}) {
    clickTab("TabStrip1", tree);
    ASSERT_TRUE(surfaceIn("Frame1")) << tree;
    EXPECT_EQ(surfaceIn("Frame1")->size(), widget("Frame1").size()) << tree;
    EXPECT_FALSE(widget("InfoFrame").isVisible());
  }
  clickTab("TabStrip1", 2);
  EXPECT_EQ(surfaceIn("Frame1"), nullptr);
  EXPECT_TRUE(widget("ListView1").isVisible());
}

TEST_F(MetadataPageWindow, TheKeyboardPicksARaster) {
  open();
  clickNode(3);
  auto& list = widget<QComboBox>("RasterList");
  list.setFocus(Qt::TabFocusReason);
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(page->controls().RasterList.text(), "* south - 2");
}

TEST_F(MetadataPageWindow, TheLockButtonHasItsPicture) {
  open();
  clickNode(3);
  const auto& lock = widget<QToolButton>("Command7");
  EXPECT_TRUE(lock.isVisible());
  EXPECT_FALSE(lock.icon().isNull());
}

TEST_F(MetadataPageWindow, TheSplitterGivesTheTreeMoreRoomAndLosesNeitherSide) {
  open();
  clickNode(1);
  auto& sides = widget<QSplitter>("sides");
  const int before = widget("uiTreeView").width();
  sides.setSizes({before + 80, sides.width() - before - 80});
  QApplication::processEvents();
  EXPECT_GT(widget("uiTreeView").width(), before);
  EXPECT_EQ(surfaceIn("Frame1")->size(), widget("Frame1").size());
  sides.setSizes({0, sides.width()});
  EXPECT_GE(widget("uiTreeView").width(), 100);
}

TEST_F(MetadataPageWindow, ClosingLeavesNoSurfaceBehind) {
  open();
  clickNode(3);
  const QPointer<QWidget> surface = surfaceIn("InfoFrame");
  ASSERT_TRUE(surface);
  page.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(surface);
}

TEST_F(MetadataPageWindow, ThousandsOfRastersAreListedAtOnce) {
  std::vector<RasterText> rasters;
  for (int number = 1; number <= 5000; ++number) rasters.push_back({.id = std::to_string(number)});
  service->answers["GetImageMetadata "] = imageOf(rasters);
  open();
  auto& list = widget<QComboBox>("RasterList");
  QSignalSpy filled(list.model(), &QAbstractItemModel::rowsInserted);
  clickNode(3);
  EXPECT_EQ(list.count(), 5000);
  // Told row by row, the list would be filled anew with each of them.
  EXPECT_EQ(filled.count(), 5000);
}

}  // namespace
}  // namespace vlclientui::test
