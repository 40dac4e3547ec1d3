#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QStyleFactory>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "frame/General.h"
#include "host/Compose.h"
#include "viewer/tour/Tour.h"
#include "viewer/window/Session.h"
#include "viewer/window/ViewerWindow.h"

namespace {

namespace fs = std::filesystem;
using namespace vlclientui;
using viewer::Session;

// A tour must not touch the user's settings: it gets a home folder of its own, made anew each time.
void moveHome(const fs::path& tourFolder) {
  const fs::path home = tourFolder / "tour-home";
  fs::remove_all(home);
  fs::create_directories(home / "Documents");
  for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_DOCUMENTS_DIR"}) unsetenv(variable);
  setenv("HOME", home.c_str(), 1);
  setenv("XDG_CACHE_HOME", (home / ".cache").c_str(), 1);
}

// The steps of the tour know what the samples hold.
Session onSamples(Session session) {
  unsetenv("VLCLIENTUI_CATALOGUE");
  session.catalogue.clear();
  return session;
}

// Pictures of a tour look the same on every machine.
void fixAppearance() {
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  QApplication::setFont(QFont("DejaVu Sans", 9));
}

host::ComposedHost compose(const Session& session) {
  host::HostOptions options;
  options.catalogue = session.catalogue;
  return host::start(host::composeDesktopPlatform(options));
}

int runTour(const Session& session, int argumentCount, char** arguments) {
  if (session.forWantOfDisplay) {
    std::cout << "There is no display, so here is a tour of the windows on the samples instead:" << std::endl;
  }
  fs::create_directories(session.tourFolder);
  moveHome(session.tourFolder);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const QApplication application(argumentCount, arguments);
  fixAppearance();
  const host::ComposedHost composed = compose(onSamples(session));
  viewer::ViewerWindow window(composed, session.tourFolder);
  const std::string settings =
      composed.platform->system->nativePath(GetSpecialFolder(specialFolder::documents) + userDataFolderTail);
  return viewer::Tour(window, session.tourFolder, settings).run();
}

fs::path documentsFolder() {
  const char* told = std::getenv("XDG_DATA_HOME");
  const char* home = std::getenv("HOME");
  if (told != nullptr && *told != '\0') return fs::path(told) / "VLClientUI";
  return fs::path(home == nullptr ? "." : home) / ".local" / "share" / "VLClientUI";
}

int runWindow(const Session& session, int argumentCount, char** arguments) {
  const QApplication application(argumentCount, arguments);
  // By these the desktop finds the icon, once installed.
  QApplication::setDesktopFileName("org.vlclientui.Viewer");
  QApplication::setWindowIcon(QIcon::fromTheme("vlviewer"));
  const host::ComposedHost composed = compose(session);
  viewer::ViewerWindow window(composed, documentsFolder());
  window.keepSession();
  window.show();
  for (const fs::path& file : session.files) window.openFile(file);
  if (!session.server.empty()) window.offerServer(session.server);
  return QApplication::exec();
}

// Files ask the environment where they may lead, once, when the first is opened.
void allow(const std::vector<fs::path>& folders) {
  constexpr const char* variable = "VLCLIENTUI_ALLOW_OUTSIDE";
  for (const fs::path& folder : folders) {
    const char* const before = std::getenv(variable);
    const std::string all = before == nullptr ? std::string() : std::string(before) + ":";
    setenv(variable, (all + folder.string()).c_str(), 1);
  }
}

int run(int argumentCount, char** arguments) {
  const Session session = viewer::planSession({arguments + 1, arguments + argumentCount});
  allow(session.allowedFolders);
  switch (session.kind) {
    case Session::Kind::Help:
      std::cout << viewer::helpText();
      return 0;
    case Session::Kind::Version:
      std::cout << "vlviewer " << VLCLIENTUI_VERSION << "\n";
      return 0;
    case Session::Kind::WrongUsage:
      std::cerr << "vlviewer: " << session.problem << "; vlviewer --help tells the usage\n";
      return 2;
    case Session::Kind::Tour:
      return runTour(session, argumentCount, arguments);
    case Session::Kind::Window:
      break;
  }
  return runWindow(session, argumentCount, arguments);
}

// Output that could not be written counts as a failure, for example on a full disk.
int withOutputKept(int exitCode) {
  if (std::cout.flush()) return exitCode;
  std::cerr << "vlviewer: the output cannot be written\n";
  return exitCode == 0 ? 1 : exitCode;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  try {
    return withOutputKept(run(argumentCount, arguments));
  } catch (const std::exception& failure) {
    std::cerr << "vlviewer: " << failure.what() << "\n";
    return 1;
  }
}
