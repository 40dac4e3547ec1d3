// A host in one page: the properties of a service in a window of its own, and what a person made of them.
// example_host [reference of a service [picture.png]]    with a picture it closes by itself
#include <QApplication>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <exception>
#include <iostream>

#include "client/facade/CatalogueImageService.h"
#include "host/Compose.h"
#include "host/DesktopWindows.h"
#include "library/ClassFactory.h"
#include "properties/ServicePropertiesInterfaces.h"

using namespace vlclientui;

namespace {

int run(const QApplication& application) {
  const QStringList words = application.arguments();
  const auto host = host::start(host::composeDesktopPlatform({}));
  const auto service = std::make_shared<client::CatalogueImageService>(
      host.catalogue, *host.platform->xml,
      words.value(1, "ImageService://127.0.0.1/Imagery/Overlap_Study").toStdString(),
      client::ImageServiceSettings{host.installation.definitions});

  const auto dialog = queryInterface<IServicePropertiesDialog>(createObject("ServicePropertiesDialog"));
  QWidget window;
  QVBoxLayout layout(&window);
  window.setWindowTitle("Properties of a service");
  window.resize(640, 720);
  window.show();
  if (!dialog->Init("", nullptr, service) ||
      !dialog->ShowPropertyPage(PropertyPageId::PropertyPageProperties, host::windowHandleOf(host, window))) {
    std::cerr << dialog->Status() << "\n";
    return 1;
  }
  layout.addWidget(window.findChild<QWidget*>());  // the page has become a child
  const QString picture = words.value(2);
  const auto leavePicture = [&] { window.grab().save(picture) && window.close(); };
  if (!picture.isEmpty()) QTimer::singleShot(0, &window, leavePicture);
  QObject::connect(&application, &QApplication::lastWindowClosed, &application, [&] {
    std::cout << dialog->GetUpdatedProperties() << "\n";  // before the page is gone
  });
  const int code = QApplication::exec();
  dialog->Close(PropertyPageId::PropertyPageProperties);
  return code;
}

}  // namespace

int main(int argc, char** argv) try {
  const QApplication application(argc, argv);
  return run(application);
} catch (const std::exception& failure) {
  std::cerr << failure.what() << "\n";
  return 1;
}
