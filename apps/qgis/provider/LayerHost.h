#pragma once

#include <memory>

#include "client/mapping/BlockDrawer.h"
#include "host/Compose.h"

/// What all layers of this process share.
namespace vlclientui::qgis {

/// What they read their services with: that of the plugin, else one without windows, as where a program uses
/// the provider alone. Any thread. @throws RuntimeFailure without an installation.
[[nodiscard]] host::ComposedHost layerHost();
/// From now on.
void useForLayers(const host::ComposedHost& host);

/// Draws all of them. Any thread.
[[nodiscard]] std::shared_ptr<client::BlockDrawer> layerDrawer();

/// Lets both go, before the process ends. Layers that are still there keep what they use.
void releaseLayerHost();

}  // namespace vlclientui::qgis
