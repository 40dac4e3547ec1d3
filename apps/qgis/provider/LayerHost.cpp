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
  Surroundings around;
};

Shared& shared() {
  static Shared all;
  return all;
}

Patience patienceOfThread() {
  const QCoreApplication* const program = QCoreApplication::instance();
  if (program == nullptr || QThread::currentThread() != program->thread()) return {};
  const std::lock_guard lock(shared().mutex);
  return shared().around.patience;
}

}  // namespace

host::ComposedHost layerHost() {
  const std::lock_guard lock(shared().mutex);
  if (!shared().host.platform) shared().host = host::composeHeadlessPlatform({});
  return shared().host;
}

void useForLayers(const host::ComposedHost& host, Surroundings surroundings) {
  const std::lock_guard lock(shared().mutex);
  shared().host = host;
  shared().around = std::move(surroundings);
  // The next one draws with the copies.
  shared().drawer.reset();
}

void runBeside(std::function<void()> work) {
  decltype(Surroundings::beside) beside;
  {
    const std::lock_guard lock(shared().mutex);
    beside = shared().around.beside;
  }
  beside ? beside(std::move(work)) : work();
}

bool isPatient() { return patienceOfThread() != nullptr; }

Patiently doPatiently(const QString& what, const std::function<void()>& work) {
  if (const Patience patience = patienceOfThread()) return patience(what, work);
  work();
  return Patiently::Done;
}

std::shared_ptr<client::BlockDrawer> layerDrawer() {
  const std::lock_guard lock(shared().mutex);
  if (!shared().drawer) shared().drawer = std::make_shared<client::BlockDrawer>(shared().around.copies);
  return shared().drawer;
}

void releaseLayerHost() {
  const std::lock_guard lock(shared().mutex);
  shared().host = {};
  shared().around = {};
  shared().drawer.reset();
}

}  // namespace vlclientui::qgis
