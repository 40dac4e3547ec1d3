#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "client/facade/CatalogueServer.h"
#include "contracts/Platform.h"
#include "host/Installation.h"

/// Ready-made platforms for hosts that do not want to choose adapters themselves.
#pragma GCC visibility push(default)
namespace vlclientui::host {

/// Whatever is empty gets a default.
struct HostOptions {
  /// The folder served as "127.0.0.1". Empty: the one that VLCLIENTUI_CATALOGUE names, else the samples.
  std::filesystem::path catalogue;
  /// The folder that holds `definitions` and `help`. Empty: see findInstallation.
  std::filesystem::path home;
  /// The locale that tells how numbers are written, such as "de_DE.UTF-8". Empty: the user's.
  std::string locale;
};

/// What a host holds as long as it uses the library. Copies share it.
struct ComposedHost {
  /// For the thread that composed it; see start.
  std::shared_ptr<const Platform> platform;
  /// Behind the server clients that a host hands to the dialogs; see client/facade/CatalogueServerClient.h.
  std::shared_ptr<client::CatalogueServer> catalogue;
  Installation installation;  ///< its catalogue is the one that is served
};

/// A platform with windows. The host's application object must exist before it and outlive it. @throws
/// RuntimeFailure without an installation, or when the given catalogue is not a folder.
[[nodiscard]] ComposedHost composeDesktopPlatform(const HostOptions& options);

/// A platform without windows: boxes get their first button as an answer, dialogs close at once.
/// @throws RuntimeFailure without an installation, or when the given catalogue is not a folder.
[[nodiscard]] ComposedHost composeHeadlessPlatform(const HostOptions& options);

/// Gives the calling thread its adapters, once, before any object is made on it.
/// @returns its argument. @throws RuntimeFailure when the platform lacks an adapter.
ComposedHost start(ComposedHost composed);

}  // namespace vlclientui::host
#pragma GCC visibility pop
