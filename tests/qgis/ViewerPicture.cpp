// What the viewer's map draws of one service, as a picture: a reference for other hosts.
// Usage: vl_viewer_picture REFERENCE SYSTEM X Y PIXEL COLUMNS ROWS FILE, with the middle in coordinates of
// the system.

#include <QApplication>
#include <QElapsedTimer>
#include <iostream>

#include "client/mapping/MapSystem.h"
#include "host/Compose.h"
#include "viewer/list/ServiceListModel.h"
#include "viewer/map/MapFrame.h"
#include "viewer/map/MapLayers.h"

using namespace vlclientui;

namespace {

constexpr int mostMilliseconds = 60'000;

template <class Condition>
bool waitUntil(Condition condition) {
  QElapsedTimer timer;
  timer.start();
  while (!condition() && timer.elapsed() < mostMilliseconds) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
  }
  return condition();
}

QImage pictureOf(const QStringList& words) {
  viewer::ServiceListModel services(host::start(host::composeDesktopPlatform({})));
  viewer::MapFrame frame;
  const auto system = client::mapSystemOf(words[2].toStdString());
  if (!system || !frame.setSystem(*system)) return {};
  frame.resize({words[6].toInt(), words[7].toInt()});
  frame.place({words[3].toDouble(), words[4].toDouble()}, words[5].toDouble());
  services.add({words[1].toStdString()});
  if (!waitUntil([&] { return !services.isLoading(); })) return {};
  viewer::MapLayers layers(services);
  layers.show(frame, 1);
  if (!waitUntil([&] { return !layers.isBusy(); })) return {};
  return layers.picture(words[1], frame, 1, frame.size());
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  const QStringList words = QApplication::arguments();
  constexpr int wordCount = 9;
  if (words.size() != wordCount) return 2;
  const QImage picture = pictureOf(words);
  if (!picture.isNull() && picture.save(words[8])) return 0;
  std::cerr << "The service cannot be drawn\n";
  return 1;
}
