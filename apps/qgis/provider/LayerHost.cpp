#include "qgis/provider/LayerHost.h"

#include <mutex>

namespace vlclientui::qgis {
namespace {

struct Shared {
  std::mutex mutex;
  host::ComposedHost host;
  std::shared_ptr<client::BlockDrawer> drawer;
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

void useForLayers(const host::ComposedHost& host) {
  const std::lock_guard lock(shared().mutex);
  shared().host = host;
}

std::shared_ptr<client::BlockDrawer> layerDrawer() {
  const std::lock_guard lock(shared().mutex);
  if (!shared().drawer) shared().drawer = std::make_shared<client::BlockDrawer>();
  return shared().drawer;
}

void releaseLayerHost() {
  const std::lock_guard lock(shared().mutex);
  shared().host = {};
  shared().drawer.reset();
}

}  // namespace vlclientui::qgis
