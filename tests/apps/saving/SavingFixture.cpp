#include "apps/saving/SavingFixture.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "client/connections/ConnectionFile.h"
#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/jobs/JobDocument.h"
#include "contracts/RuntimeFailure.h"
#include "library/Registration.h"
#include "platform/LibXmlService.h"
#include "viewer/project/ProjectDocument.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;

using State = Saver::State;

const XmlService& savingXml() {
  static const platform::LibXmlService xml(platform::PathTranslation("/home/u"));
  return xml;
}

// Long enough to be written in more than one part.
std::string longTextOf(State state) { return std::string(20000, state == State::First ? 'a' : 'b'); }

std::string saveSettingsFile(const fs::path& folder, State state) {
  const auto document = savingXml().createDocument();
  if (!document->loadXml("<Vorlane><Client><Text>" + longTextOf(state) + "</Text></Client></Vorlane>"))
    return "no XML";
  document->save((folder / "settings.xml").string());
  return {};
}

std::string saveProjectFile(const fs::path& folder, State state) {
  viewer::Project project;
  project.services = {{"ImageService://localhost/first", {}}};
  project.services.front().state.name = longTextOf(state);
  viewer::saveProject(project, savingXml(), folder / "a.VLProject");
  return {};
}

std::string saveJobFile(const fs::path& folder, State state) {
  client::ExportJob job;
  job.reference = "ImageService://localhost/" + longTextOf(state);
  job.extent = {0, 0, 1, 1};
  job.columns = job.rows = 1;
  job.file = folder / "a.tif";
  client::saveJob(job, folder / "a.VLJob", savingXml());
  return {};
}

std::string saveRegistration(const fs::path& folder, State state) {
  setenv("XDG_DATA_HOME", folder.c_str(), 1);
  state == State::First ? registerClasses() : unregisterClasses();
  return {};
}

std::string saveConnections(const fs::path& folder, State state) {
  client::ConnectionFile(folder / "own" / "connections.json").change([&](auto& connections) {
    connections.assign(1, {});
    connections.front().connection.name = "one";
    connections.front().connection.address = "https://example.org/" + longTextOf(state);
  });
  return {};
}

std::shared_ptr<client::CatalogueImageService> serviceOf(const fs::path& folder, State state) {
  const auto server = std::make_shared<client::CatalogueServer>(
      savingXml(), client::CatalogueSettings{folder.parent_path(), {}});
  const std::string name = state == State::First ? "first" : "second";
  return std::make_shared<client::CatalogueImageService>(server, savingXml(),
                                                         "ImageService://localhost/" + name);
}

std::string saveReference(const fs::path& folder, State state) {
  const auto service = serviceOf(folder, state);
  return service->SaveProperties((folder / "a.VLRef").string()) ? std::string() : service->status();
}

Saver exporter(const char* name, const std::string& file, const std::string& format,
               const std::string& compression) {
  const auto save = [=](const fs::path& folder, State state) {
    const auto service = serviceOf(folder, state);
    GetImage request;
    request.format = format;
    request.compression = compression;
    request.columns = 200;
    request.rows = 150;
    request.worldFile = true;
    request.metadata = true;
    request.fileName = (folder / file).string();
    service->ExportProperties(request.document());
    return service->ExportImage() ? std::string() : service->status();
  };
  return {name, file, save};
}

}  // namespace

const std::vector<Saver>& savers() {
  static const std::vector<Saver> all = {
      {"Settings", "settings.xml", saveSettingsFile},
      {"Project", "a.VLProject", saveProjectFile},
      {"Job", "a.VLJob", saveJobFile},
      {"Reference", "a.VLRef", saveReference},
      {"Registration", "VLClientUI/classes.tsv", saveRegistration},
      {"Connections", "own/connections.json", saveConnections},
      exporter("Tiff", "a.tif", "Tiff", ""),
      exporter("TiffAsJpeg", "a.tif", "Tiff", "JPEG"),
      exporter("TiffAsLz77", "a.tif", "Tiff", "LZ77"),
      exporter("Jpeg", "a.jpg", "JPEG", ""),
      exporter("Jpeg2000", "a.jp2", "JPEG2000", ""),
      exporter("Png", "a.png", "PNG", ""),
  };
  return all;
}

SavingFixture::SavingFixture() {
  RasterRecipe recipe;
  recipe.width = 200;
  recipe.height = 150;
  recipe.bands = 3;
  makeNumbered("first.tif", recipe);
  recipe.finish = [](GDALDataset& raster) { raster.SetMetadataItem("TIFFTAG_COPYRIGHT", "nobody"); };
  makeRaster("second.tif", recipe);
  fs::create_directories(home() / "VLClientUI");
  // Of another library, which has to stay.
  writeText("out/VLClientUI/classes.tsv", "Other\t{0}\tIOther\t/lib/other.so\n");
}

}  // namespace vlclientui::test
