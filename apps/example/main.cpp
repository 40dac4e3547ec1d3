#include <QApplication>
#include <iostream>

#include "client/facade/CatalogueServerClient.h"
#include "host/Compose.h"
#include "library/ClassFactory.h"
#include "selection/ImageServicesDialogInterfaces.h"

int main(int argc, char** argv) {
  using namespace vlclientui;
  const QApplication application(argc, argv);
  // Once per thread, before any object is made. The adapters: Qt windows, GDAL client, XML, system.
  const auto host = host::start(host::composeDesktopPlatform({}));
  const auto dialog = queryInterface<IOVLImageServicesDialog>(createObject("ImageServicesDialog"));
  if (!dialog->Init("", std::make_shared<client::OVLCatalogueServerClient>(host.catalogue)) ||
      !dialog->ShowDialog()) {
    std::cerr << dialog->Status() << "\n";
    return 1;
  }
  std::cout << dialog->GetSelectedServices() << "\n";  // empty after Cancel
}
