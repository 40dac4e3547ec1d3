#include "properties/ServiceProperties.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <gmock/gmock.h>

#include "engine/Engine.h"
#include "frame/ThreadState.h"
#include "platform/LibXmlService.h"
#include "support/PropertiesFixture.h"
#include "widgets/QtSurface.h"

namespace vlclientui::test {
namespace {

using testing::IsEmpty;

constexpr const char* attributes =
    "<XADef><Vorlane><ImageServiceProperties>"
    "<MosaicMethod MosaicMethod_LIST_=\"By Attribute; Closest to Viewpoint\"/><TileOrderField/><LockImageID/>"
    "</ImageServiceProperties></Vorlane></XADef>";
constexpr const char* fields =
    "<XFDef><Vorlane><ImageServiceProperties ImageServiceProperties_READONLY_=\"True\">"
    "<MosaicMethod MosaicMethod_LABEL_=\"&amp;Mosaic method\" MosaicMethod_READONLY_=\"True\"/>"
    "<TileOrderField TileOrderField_LABEL_=\"Order &amp;by\" TileOrderField_READONLY_=\"True\"/>"
    "<LockImageID LockImageID_LABEL_=\"&amp;Locked to\" LockImageID_READONLY_=\"True\"/>"
    "</ImageServiceProperties></Vorlane></XFDef>";
constexpr auto page2 = PropertyPageId::PropertyPageProperties;

/// The real page with the real engine in a window of a host, and a fake image service.
class PropertiesPageWidget : public testing::Test {
 protected:
  PropertiesPageWidget() {
    system->writeFile("C:\\Program\\VLClient.XADef", "<Vorlane/>");
    system->writeFile("C:\\Program\\VLClient.Xfdef", "<Vorlane/>");
    service->definitions = {{1, attributes}, {2, fields}};
    service->properties = propertiesXml(
        "<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>Year</TileOrderField><LockImageID/>");
    auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
    auto engines =
        std::make_shared<engine::EngineFactory>(xml, std::make_shared<widgets::QtSurfaceFactory>(toolkit));
    setPlatform(std::make_shared<Platform>(
        Platform{system, xml, toolkit, engines, std::make_shared<FakeClientLibrary>()}));
    dialog = std::make_shared<ServicePropertiesDialog>();
    host = new QWidget;
    new QVBoxLayout(host);
    host->resize(500, 500);
    host->show();
  }
  ~PropertiesPageWidget() override {
    dialog.reset();
    delete host.data();
    setPlatform(nullptr);
    threadState() = {};
  }

  /// Shows the page in the host's window, where the host lays it out.
  void show() {
    const auto older = queryInterface<IServicePropertiesDialog>(dialog);
    ASSERT_EQ(older->Init("", nullptr, service), boolean16True) << threadState().gStatus;
    ASSERT_EQ(older->ShowPropertyPage(page2, toolkit->windows().handleOf(host)), boolean16True)
        << threadState().gStatus;
    host->layout()->addWidget(view());
    QCoreApplication::processEvents();
  }
  [[nodiscard]] QWidget* view() const { return toolkit->viewOf(dialog->propertiesPage()); }
  template <class Widget = QWidget>
  [[nodiscard]] Widget& widget(const char* name) const {
    return *view()->findChild<Widget*>(QLatin1String(name));
  }

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<widgets::QtToolkit> toolkit = std::make_shared<widgets::QtToolkit>(system);
  std::shared_ptr<FakeImageService> service = std::make_shared<FakeImageService>();
  std::shared_ptr<ServicePropertiesDialog> dialog;
  QPointer<QWidget> host;
};

TEST_F(PropertiesPageWidget, EveryControlHasExactlyOneWidgetOfItsKind) {
  ServiceProperties page(*toolkit);
  page.load();
  EXPECT_THAT(toolkit->missingWidgets(page), IsEmpty());
}

TEST_F(PropertiesPageWidget, StandsInTheWindowOfTheHost) {
  show();
  EXPECT_EQ(view()->parentWidget(), host);
  EXPECT_TRUE(view()->isVisible());
}

TEST_F(PropertiesPageWidget, GrowsAndLetsTheEngineFillIt) {
  show();
  for (const QSize size : {QSize(500, 500), QSize(800, 700), QSize(400, 300)}) {
    host->resize(size);
    QCoreApplication::processEvents();
    const QWidget& frame = widget("Frame1");
    const auto surfaces = frame.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_EQ(surfaces.size(), 1);
    EXPECT_EQ(surfaces.front()->size(), frame.size());
    EXPECT_GT(frame.width(), view()->width() - 40);
  }
}

TEST_F(PropertiesPageWidget, HasAButtonWithMnemonicAndToolTip) {
  show();
  const auto& button = widget<QPushButton>("SaveAs");
  EXPECT_EQ(button.text(), "&Save As");
  EXPECT_EQ(button.toolTip(), "Save as an xml file.");
  EXPECT_EQ(button.shortcut(), QKeySequence("Alt+S"));
}

TEST_F(PropertiesPageWidget, LeavesTheWindowWhenItIsClosed) {
  show();
  const QPointer<QWidget> page = view();
  EXPECT_EQ(dialog->Close(page2), boolean16True);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(page.isNull());
  EXPECT_TRUE(host);
}

TEST_F(PropertiesPageWidget, SurvivesAHostThatClosesItsWindowFirst) {
  show();
  delete host.data();
  QCoreApplication::processEvents();
  EXPECT_EQ(view(), nullptr);
  const auto older = queryInterface<IServicePropertiesDialog>(dialog);
  EXPECT_NO_THROW(static_cast<void>(older->HasChanged()));
  EXPECT_NO_THROW(static_cast<void>(older->Refresh()));
  EXPECT_THAT(older->GetUpdatedProperties(), testing::HasSubstr("<TileOrderField>Year</TileOrderField>"));
  EXPECT_EQ(older->Close(page2), boolean16True);
}

TEST_F(PropertiesPageWidget, IsShownAnewAfterTheHostClosedItsWindow) {
  show();
  delete host.data();
  host = new QWidget;
  new QVBoxLayout(host);
  host->show();
  show();
  EXPECT_EQ(view()->parentWidget(), host);
  EXPECT_TRUE(view()->isVisible());
}

}  // namespace
}  // namespace vlclientui::test
