#include "servers/MapServer.h"

#include <unistd.h>

#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

std::vector<std::string> serve(const std::string& kind, const std::string& what) {
  return {pythonProgram(), sourceFolder() + "/script/support/serve.py", kind, what};
}

std::vector<std::string> serveStatic(const std::filesystem::path& folder, const std::filesystem::path& log) {
  std::vector<std::string> words = serve("static", folder.string());
  if (!log.empty()) words.push_back("--log=" + log.string());
  return words;
}

}  // namespace

MapServer::MapServer() : ServerProcess(serve("mapserver", serverFilesFolder())) {}

MapServer::MapServer(const std::filesystem::path& folder)
    : ServerProcess(serve("mapserver", folder.string())) {}

const MapServer& MapServer::shared() {
  static const MapServer server;
  return server;
}

StaticServer::StaticServer(const std::filesystem::path& folder, const std::filesystem::path& log)
    : ServerProcess(serveStatic(folder, log)) {}

const StaticServer& StaticServer::samples() {
  static const StaticServer server(samplesFolder());
  return server;
}

SecuredServer::SecuredServer(const std::string& behind, const std::filesystem::path& certificate)
    : ServerProcess({pythonProgram(), sourceFolder() + "/script/support/serve.py",
                     "--certificate=" + certificate.string(), "secured", behind}) {}

QgisServer::QgisServer() : ServerProcess(serve("qgis", serverFilesFolder() + "/samples.qgs")) {}

std::string QgisServer::missing() {
  if (access("/usr/lib/cgi-bin/qgis_mapserv.fcgi", X_OK) == 0) return {};
  return "QGIS Server (package qgis-server) is not installed";
}

const QgisServer& QgisServer::shared() {
  static const QgisServer server;
  return server;
}

}  // namespace vlclientui::test
