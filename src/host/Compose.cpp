#include "host/Compose.h"

#include <system_error>
#include <utility>

#include "client/facade/CatalogueClientLibrary.h"
#include "client/facade/NetworkServers.h"
#include "contracts/RuntimeFailure.h"
#include "engine/Engine.h"
#include "frame/General.h"
#include "headless/HeadlessSurface.h"
#include "headless/HeadlessToolkit.h"
#include "library/HostThread.h"
#include "platform/LibXmlService.h"
#include "platform/PosixSystem.h"
#include "widgets/QtSurface.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::host {
namespace {

// An object of the client, and the XML service that must outlive it.
template <class Held>
struct WithXml {
  template <class... Args>
  explicit WithXml(std::shared_ptr<const XmlService> service, Args&&... args)
      : xml(std::move(service)), held(*xml, std::forward<Args>(args)...) {}

  std::shared_ptr<const XmlService> xml;
  Held held;
};

template <class Held, class... Args>
std::shared_ptr<Held> makeWithXml(std::shared_ptr<const XmlService> xml, Args&&... args) {
  auto whole = std::make_shared<WithXml<Held>>(std::move(xml), std::forward<Args>(args)...);
  return {whole, &whole->held};
}

/// An installation may lack samples, but a folder given by name must exist.
std::filesystem::path namedCatalogue(const std::filesystem::path& folder) {
  std::error_code error;
  if (std::filesystem::is_directory(folder, error)) return std::filesystem::absolute(folder);
  throw RuntimeFailure("The catalogue '" + folder.string() + "' is no folder");
}

std::filesystem::path chosenCatalogue(const HostOptions& options, const std::filesystem::path& samples) {
  if (!options.catalogue.empty()) return namedCatalogue(options.catalogue);
  const auto folder = client::embeddedCatalogueFolder({});
  return folder.empty() ? samples : namedCatalogue(folder);
}

Installation chosenInstallation(const HostOptions& options) {
  Installation installation = options.home.empty() ? findInstallation() : installationIn(options.home);
  installation.catalogue = chosenCatalogue(options, installation.catalogue);
  return installation;
}

platform::Environment environmentWithLocale(const std::string& locale) {
  auto own = platform::processEnvironment();
  if (locale.empty()) return own;
  return [own, locale](const std::string& name) -> std::optional<std::string> {
    return name == "LC_ALL" ? locale : own(name);
  };
}

std::shared_ptr<System> makeSystem(const HostOptions& options, const Installation& installation) {
  platform::PosixSystem::Settings settings;
  settings.helpFolder = installation.help.string();
  settings.environment = environmentWithLocale(options.locale);
  return std::make_shared<platform::PosixSystem>(std::move(settings));
}

client::InstallFolders installFolders(const System& system, const Installation& installation) {
  const auto logic = [&](const std::filesystem::path& folder) { return system.logicPath(folder.string()); };
  return {logic(installation.definitions), logic(installation.home), logic(installation.help)};
}

/// The window side of a platform.
struct Front {
  std::shared_ptr<Toolkit> toolkit;
  std::shared_ptr<engine::SurfaceFactory> surfaces;
};

Front desktopFront(const std::shared_ptr<System>& system) {
  auto toolkit = std::make_shared<widgets::QtToolkit>(system);
  return {toolkit, std::make_shared<widgets::QtSurfaceFactory>(toolkit)};
}

Front headlessFront(const std::shared_ptr<System>& /*system*/) {
  auto toolkit = std::make_shared<headless::HeadlessToolkit>();
  headless::ChildWindowHooks hooks;
  hooks.registerChildWindow = [toolkit](WindowHandle parent, const std::string& title) {
    return toolkit->addChildWindow(parent, title);
  };
  hooks.unregisterChildWindow = [toolkit](WindowHandle window) { toolkit->removeWindow(window); };
  return {toolkit, std::make_shared<headless::HeadlessSurfaceFactory>(std::move(hooks))};
}

/// Pages of the engine have their help in the same folder as the windows.
engine::HelpOpener helpOpener(std::shared_ptr<System> system, std::shared_ptr<ClientLibrary> clientLibrary) {
  return [system = std::move(system), clientLibrary = std::move(clientLibrary)](const std::string& helpFile,
                                                                                const std::string& page) {
    std::string home = clientLibrary->createInstallPaths()->GetPath(installFolder::home);
    if (!home.empty() && !home.ends_with('\\')) home += '\\';
    system->launch("hh.exe " + home + "Help\\" + helpFile + (page.empty() ? "" : "::/" + page + ".htm"));
  };
}

using FrontMaker = Front (*)(const std::shared_ptr<System>& system);

ComposedHost compose(const HostOptions& options, FrontMaker makeFront) {
  ComposedHost composed;
  composed.installation = chosenInstallation(options);
  const auto system = makeSystem(options, composed.installation);
  const auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation::ofUser());
  const Front front = makeFront(system);

  auto parts = std::make_shared<Platform>();
  parts->system = system;
  parts->xml = xml;
  parts->toolkit = front.toolkit;
  parts->clientLibrary =
      makeWithXml<client::CatalogueClientLibrary>(xml, installFolders(*system, composed.installation));
  parts->plexa =
      std::make_shared<engine::EngineFactory>(xml, front.surfaces, helpOpener(system, parts->clientLibrary));
  composed.platform = parts;

  client::CatalogueSettings settings;
  settings.embeddedFolder = composed.installation.catalogue;
  settings.toNativePath = [system](const std::string& path) { return system->nativePath(path); };
  composed.catalogue = makeWithXml<client::CatalogueServer>(xml, std::move(settings));
  client::addNetworkServers(*composed.catalogue);
  return composed;
}

}  // namespace

ComposedHost composeDesktopPlatform(const HostOptions& options) { return compose(options, desktopFront); }

ComposedHost composeHeadlessPlatform(const HostOptions& options) { return compose(options, headlessFront); }

ComposedHost start(ComposedHost composed) {
  startThread(composed.platform);
  return composed;
}

}  // namespace vlclientui::host
