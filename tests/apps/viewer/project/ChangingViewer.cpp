// A viewer that a person changes all the time, until somebody kills it. Each state has a number, which is the
// name of its only service; it is printed as soon as it is the present one. Usage: changing_viewer
// HOME-OF-INSTALLATION FOLDER
#include <QApplication>
#include <QTimer>
#include <iostream>

#include "frame/ThreadState.h"
#include "viewer/list/ServiceList.h"
#include "viewer/map/MapView.h"
#include "viewer/window/ViewerWindow.h"

int main(int argumentCount, char** arguments) {
  using namespace vlclientui;
  const QApplication application(argumentCount, arguments);
  const auto host = host::composeDesktopPlatform({.catalogue = {}, .home = arguments[1], .locale = "C"});
  setPlatform(host.platform);
  viewer::ViewerWindow window(host, arguments[2]);
  window.keepSession();
  window.show();
  auto& services = *window.findChild<viewer::ServiceListModel*>();
  if (services.rowCount() == 0) services.add({"ImageService://127.0.0.1/World/EGM96_Geoid"});
  int number = services.rows().front().name().toInt();
  std::cout << number << std::endl;
  QTimer changing;
  QObject::connect(&changing, &QTimer::timeout, &window, [&] {
    services.rename(0, QString::number(++number));
    window.findChild<viewer::MapView*>()->zoom(number % 2 == 0 ? 2 : 0.5);
    std::cout << number << std::endl;
  });
  changing.start(15);
  return QApplication::exec();
}
