#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "client/mapping/BlockDrawer.h"
#include "host/Compose.h"

/// What all layers of this process share.
namespace vlclientui::qgis {

/// What they read their services with: that of the plugin, else one without windows, as where a program uses
/// the provider alone. Any thread. @throws RuntimeFailure without an installation.
[[nodiscard]] host::ComposedHost layerHost();
enum class Patiently { Done, GivenUp };
/// Has work done that may wait for servers, and returns once it is done, or a person gave it up; throws what
/// it throws. The work holds all that it uses, since it may outlive the call. @param what is waited for, for
/// a person.
using Patience = std::function<Patiently(const QString& what, std::function<void()> work)>;
/// What the plugin has around the layers. All of it may be missing.
struct Surroundings {
  Patience patience = {};  ///< of the interface's thread, which must not stand still
  /// Runs work on a thread of its own.
  std::function<void(std::function<void()> work)> beside = {};
  std::shared_ptr<const client::SmallCopies> copies = nullptr;  ///< of large rasters
};
/// From now on.
void useForLayers(const host::ComposedHost& host, Surroundings surroundings = {});
/// Runs work beside this thread, where there is a way to do so, else right here. @param work raises nothing,
/// and holds all that it uses.
void runBeside(std::function<void()> work);
/// Whether this thread is that of the interface, and has such a patience.
[[nodiscard]] bool isPatient();
/// Does work that may wait for servers: by the patience of the interface's thread, elsewhere right here.
/// @throws what the work throws.
[[nodiscard]] Patiently doPatiently(const QString& what, const std::function<void()>& work);

/// Draws all of them. Any thread.
[[nodiscard]] std::shared_ptr<client::BlockDrawer> layerDrawer();

/// Lets both go, before the process ends. Layers that are still there keep what they use.
void releaseLayerHost();

}  // namespace vlclientui::qgis
