#include "properties/ServiceProperties.h"

#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

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
  /// Whether a label with that text can be seen.
  [[nodiscard]] bool shows(const char* text) const {
    return std::ranges::any_of(view()->findChildren<QLabel*>(), [text](const QLabel* label) {
      return label->isVisible() && label->text() == QLatin1String(text);
    });
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

TEST_F(PropertiesPageWidget, StandsInTheWindowOfTheHostWithTheServicesFields) {
  show();
  EXPECT_EQ(view()->parentWidget(), host);
  EXPECT_TRUE(view()->isVisible());
  EXPECT_FALSE(widget<QLabel>("ErrorLabel").isVisible());
  EXPECT_TRUE(shows("Mosaic method") || shows("&Mosaic method") || shows("Mosaic method:"));
}

TEST_F(PropertiesPageWidget, ShowsNoFieldOfAMethodThatTheServiceLacks) {
  show();
  const auto labels = view()->findChildren<QLabel*>();
  const auto names = [&labels](const QString& word) {
    return std::ranges::any_of(labels, [&word](const QLabel* label) { return label->text().contains(word); });
  };
  EXPECT_TRUE(names("rder"));
  EXPECT_FALSE(names("ocked to"));
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

TEST_F(PropertiesPageWidget, TellsWhyItCannotShowTheProperties) {
  service->definitions = {{1, "<XADef/>"}, {2, "<XFDef/>"}};
  show();
  EXPECT_TRUE(shows("Cannot show service properties.Unable to retrieve information from the xml."));
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

constexpr const char* mosaicAttributes =
    "<XADef><Vorlane><ImageServiceProperties>"
    "<MosaicMethod MosaicMethod_LIST_=\"By Attribute; Closest to Viewpoint; Lock "
    "Raster\"/><ViewPointControl/>"
    "<TileOrderField/><LockImageID/></ImageServiceProperties></Vorlane></XADef>";
constexpr const char* editableFields =
    "<XFDef><Vorlane><ImageServiceProperties><MosaicMethod/>"
    "<ViewPointControl ViewPointControl_KIND_=\"button\"/><TileOrderField/><LockImageID/>"
    "</ImageServiceProperties></Vorlane></XFDef>";

/// The same page with fields that a person may edit.
class EditedPropertiesPage : public PropertiesPageWidget {
 protected:
  EditedPropertiesPage() {
    service->definitions = {{1, mosaicAttributes}, {2, editableFields}};
    service->metadata =
        "<Vorlane><Client><ImageMetadata><Basic><XMin>100</XMin><YMin>10</YMin><XMax>200</XMax>"
        "<YMax>30</YMax></Basic></ImageMetadata></Client></Vorlane>";
  }

  void SetUp() override {
    show();
    host->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(host));
  }
  [[nodiscard]] std::shared_ptr<IServicePropertiesDialog> older() const {
    return queryInterface<IServicePropertiesDialog>(dialog);
  }
  [[nodiscard]] bool hasChanged() const { return older()->HasChanged() == boolean16True; }
  void typeOrder(const char* text) {
    auto& edit = widget<QLineEdit>("TileOrderField");
    QTest::mouseClick(&edit, Qt::LeftButton);
    edit.selectAll();
    QTest::keyClicks(&edit, QLatin1String(text));
  }
  void choose(const char* method) {
    auto& box = widget<QComboBox>("MosaicMethod");
    box.setFocus();
    while (box.currentText() != QLatin1String(method) && box.currentIndex() > 0)
      QTest::keyClick(&box, Qt::Key_Up);
    for (int i = 0; i < box.count() && box.currentText() != QLatin1String(method); ++i) {
      QTest::keyClick(&box, Qt::Key_Down);
    }
    ASSERT_EQ(box.currentText(), QLatin1String(method));
  }
  [[nodiscard]] QAbstractButton& viewPointButton() const {
    return widget<QAbstractButton>("ViewPointControl");
  }
};

TEST_F(EditedPropertiesPage, HasNotChangedWhileNobodyEdits) {
  EXPECT_FALSE(hasChanged());
  QTest::mouseClick(&widget<QLineEdit>("TileOrderField"), Qt::LeftButton);
  EXPECT_FALSE(hasChanged());
}

TEST_F(EditedPropertiesPage, HasChangedWithTheLastEditStillInTheFocusedField) {
  typeOrder("Date");
  EXPECT_TRUE(widget<QLineEdit>("TileOrderField").hasFocus());
  EXPECT_TRUE(hasChanged());
  typeOrder("Year");
  EXPECT_FALSE(hasChanged());
}

TEST_F(EditedPropertiesPage, HandsOverTheEditInTheFocusedField) {
  typeOrder("Date");
  EXPECT_THAT(older()->GetUpdatedProperties(), testing::HasSubstr("<TileOrderField>Date</TileOrderField>"));
}

TEST_F(EditedPropertiesPage, ClosingPublishesNothing) {
  typeOrder("Date");
  const std::string before = threadState().gServicePropertiesXml;
  EXPECT_EQ(older()->Close(page2), boolean16True);
  EXPECT_EQ(threadState().gServicePropertiesXml, before);
}

TEST_F(EditedPropertiesPage, EnablesTheViewpointButtonForItsMethodOnly) {
  EXPECT_TRUE(viewPointButton().isVisible());
  EXPECT_FALSE(viewPointButton().isEnabled());
  choose("Closest to Viewpoint");
  EXPECT_TRUE(viewPointButton().isEnabled());
  choose("Lock Raster");
  EXPECT_FALSE(viewPointButton().isEnabled());
}

TEST_F(EditedPropertiesPage, SteersTheViewpointFromItsButtonIntoTheProperties) {
  choose("Closest to Viewpoint");
  // A window that has just come reads its viewpoint anew; a person is slower than that.
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&watch] {
    const QWidget* const window = QApplication::activeModalWidget();
    if (!window) return;
    watch.stop();
    QTimer::singleShot(50, window, [window] {
      QTest::mouseClick(window->findChild<QAbstractButton*>(QStringLiteral("Center")), Qt::LeftButton);
      QTest::mouseClick(window->findChild<QAbstractButton*>(QStringLiteral("uibtnok")), Qt::LeftButton);
    });
  });
  watch.start(1);
  QTest::mouseClick(&viewPointButton(), Qt::LeftButton);
  const std::string updated = older()->GetUpdatedProperties();
  EXPECT_THAT(updated, testing::HasSubstr("<MosaicMethod>Closest to Viewpoint</MosaicMethod>"));
  EXPECT_THAT(
      updated,
      testing::HasSubstr("<ViewPointY>20</ViewPointY><ViewPointX>150</ViewPointX></ImageServiceProperties>"));
}

}  // namespace
}  // namespace vlclientui::test
