#include "qgis/provider/LayerHost.h"

#include <QCoreApplication>
#include <QThread>
#include <mutex>
#include <utility>

namespace vlclientui::qgis {
namespace {

struct Shared {
  std::mutex mutex;
  host::ComposedHost host;
  std::shared_ptr<client::BlockDrawer> drawer;
  Patience patience;
};

Shared& shared() {
  static Shared all;
  return all;
}

}  // namespace

host::ComposedHost layerHost() {
  const std::lock_guard lock(shared().mutex);
  if (!shared().host.platform) shared().host = host::composeHeadlessPlatform({});
  return shared().host;
}

void useForLayers(const host::ComposedHost& host, Patience patience) {
  const std::lock_guard lock(shared().mutex);
  shared().host = host;
  shared().patience = std::move(patience);
}

Patiently doPatiently(const QString& what, const std::function<void()>& work) {
  Patience patience;
  {
    const std::lock_guard lock(shared().mutex);
    patience = shared().patience;
  }
  const QCoreApplication* const program = QCoreApplication::instance();
  const bool isOfInterface = program != nullptr && QThread::currentThread() == program->thread();
  if (patience && isOfInterface) return patience(what, work);
  work();
  return Patiently::Done;
}

std::shared_ptr<client::BlockDrawer> layerDrawer() {
  const std::lock_guard lock(shared().mutex);
  if (!shared().drawer) shared().drawer = std::make_shared<client::BlockDrawer>();
  return shared().drawer;
}

void releaseLayerHost() {
  const std::lock_guard lock(shared().mutex);
  shared().host = {};
  shared().patience = {};
  shared().drawer.reset();
}

}  // namespace vlclientui::qgis
