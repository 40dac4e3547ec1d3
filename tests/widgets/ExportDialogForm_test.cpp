#include "export/ExportDialogForm.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include "contracts/Platform.h"
#include "export/ExportDialog.h"
#include "frame/ThreadState.h"
#include "platform/LibXmlService.h"
#include "support/ExportFixture.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The real dialog on real windows, with a fake image service.
class ExportWindow : public testing::Test {
 protected:
  ExportWindow() {
    plexa->record->templateXml = exportTemplateXml;
    system->writeFile("C:\\Program\\VLClient.XADef", exportTemplateXml);
    system->variables["APPDATA"] = "C:\\Data";
    service->metadata = imageMetadata({});
    service->info = serviceInfo({});
    auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
    setPlatform(std::make_shared<Platform>(
        Platform{system, xml, toolkit, plexa, std::make_shared<FakeClientLibrary>()}));
  }
  ~ExportWindow() override { setPlatform(nullptr); }

  /// Shows the dialog; the script acts on its window. @returns the `GetImage` element.
  std::string show(const std::function<void()>& script) {
    auto dialog = std::make_shared<ExportDialog>();
    auto host = queryInterface<IExportImageDialog>(dialog);
    EXPECT_EQ(host->IExportImageDialog_Init("", nullptr, service), boolean16True);
    QTimer::singleShot(0, [&] {
      window = QApplication::activeModalWidget();
      ASSERT_TRUE(window);
      ASSERT_TRUE(QTest::qWaitForWindowActive(window));
      script();
      if (window && window->isVisible()) window->close();
    });
    host->iExportImageDialog_ShowModalDialogEx("");
    return host->iExportImageDialog_GetUpdatedProperties();
  }

  template <class Widget = QWidget>
  Widget& widget(const char* name) {
    return *window->findChild<Widget*>(QLatin1String(name));
  }
  QLineEdit& box(const char* name) { return widget<QLineEdit>(name); }
  void typeInto(const char* name, const QString& text) {
    QTest::mouseClick(&box(name), Qt::LeftButton);
    box(name).selectAll();
    QTest::keyClicks(&box(name), text);
  }
  /// Answers message boxes to come; their texts stand in `messages`.
  void answerMessages() {
    QObject::connect(&answerer, &QTimer::timeout, [this] {
      if (auto* top = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        messages.push_back(top->text().toStdString());
        top->accept();
      }
    });
    answerer.start(5);
  }

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<widgets::QtToolkit> toolkit = std::make_shared<widgets::QtToolkit>(system);
  std::shared_ptr<RecordingPlexaFactory> plexa = std::make_shared<RecordingPlexaFactory>();
  std::shared_ptr<FakeImageService> service = std::make_shared<FakeImageService>();
  QPointer<QWidget> window;
  QTimer answerer;
  std::vector<std::string> messages;
};

TEST_F(ExportWindow, EveryControlHasExactlyOneWidgetOfItsKind) {
  ExportDialogForm form(*toolkit);
  form.load();
  EXPECT_THAT(toolkit->missingWidgets(form), IsEmpty());
  form.unload();
}

TEST_F(ExportWindow, FirstDisplayFillsTheBoxesFromTheService) {
  show([this] {
    EXPECT_EQ(window->windowTitle(), "Export Image Properties");
    EXPECT_EQ(widget<QGroupBox>("Frame1").title(), "Extents");
    EXPECT_EQ(box("uiTxtLeft").text(), "1000.000");
    EXPECT_EQ(box("uiTxtTop").text(), "2000.000");
    EXPECT_EQ(box("uiTxtCols").text(), "1000");
    EXPECT_EQ(widget<QComboBox>("FormatCombo").currentText(), "TIFF-No Compression");
    EXPECT_FALSE(box("uiTxtMB").isEnabled());
  });
}

TEST_F(ExportWindow, LeavingABoxRecalculatesWhatFollowsIt) {
  show([this] {
    typeInto("uiTxtCols", "500");
    EXPECT_EQ(box("uiTxtGSDX").text(), "1.0000");
    QTest::keyClick(&box("uiTxtCols"), Qt::Key_Tab);
    EXPECT_EQ(box("uiTxtGSDX").text(), "2.0000");
    EXPECT_EQ(box("uiTxtRight").text(), "2000.000");
  });
}

TEST_F(ExportWindow, ARefusalIsToldOnceRestoresTheTextAndRecalculatesNothing) {
  answerMessages();
  show([this] {
    typeInto("uiTxtWidth", "wide");
    QTest::keyClick(&box("uiTxtWidth"), Qt::Key_Tab);
    EXPECT_EQ(box("uiTxtWidth").text(), "1000.000");
    EXPECT_EQ(box("uiTxtRight").text(), "2000.000");
  });
  EXPECT_EQ(messages.size(), 1U);
}

TEST_F(ExportWindow, AClickOnOkLeavesTheEditedBoxFirst) {
  answerMessages();
  const std::string request = show([this] {
    typeInto("uiTxtCols", "500");
    QTest::mouseClick(&widget("Command1"), Qt::LeftButton);
  });
  EXPECT_THAT(request, HasSubstr("500"));
  EXPECT_THAT(service->exportRequest, HasSubstr(request));
}

TEST_F(ExportWindow, EscapeWritesNothing) {
  EXPECT_EQ(show([this] { QTest::keyClick(window, Qt::Key_Escape); }), "");
  EXPECT_EQ(service->exportRequest, "");
}

TEST_F(ExportWindow, TabVisitsTheBoxesAsAPersonReads) {
  show([this] {
    std::vector<std::string> visited;
    widget("MainCombo").setFocus(Qt::TabFocusReason);
    for (int step = 0; step < 6; ++step) {
      QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
      visited.push_back(window->focusWidget()->objectName().toStdString());
    }
    EXPECT_THAT(visited, ElementsAre("uiTxtTop", "uiTxtLeft", "uiTxtRight", "uiTxtBottom", "uiTxtWidth",
                                     "uiTxtHeight"));
  });
}

}  // namespace
}  // namespace vlclientui::test
