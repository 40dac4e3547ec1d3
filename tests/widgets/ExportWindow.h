#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contracts/Platform.h"
#include "export/ExportDialog.h"
#include "frame/ThreadState.h"
#include "platform/LibXmlService.h"
#include "support/ExportFixture.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {

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

}  // namespace vlclientui::test
