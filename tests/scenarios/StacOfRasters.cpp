#include "scenarios/StacOfRasters.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>

#include <stdlib.h>

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;

void writeDocument(const fs::path& file, const std::string& text) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << text;
}

std::string linkText(const std::string& relation, const std::string& address) {
  return R"({"rel":")" + relation + R"(","href":")" + address + "\"}";
}

std::string catalogueText(const std::string& id, const std::string& links) {
  return R"({"type":"Catalog","stac_version":"1.0.0","id":")" + id + R"(","links":[)" + links + "]}";
}

// What stands in a list comes from here; the exact place from the image.
std::string collectionText(const std::string& id) {
  return R"({"type":"Collection","stac_version":"1.0.0","id":")" + id +
         R"(","extent":{"spatial":{"bbox":[[8.4,46.3,8.7,46.6]]},"temporal":{"interval":[["2021-07-14T00:00:00Z",null]]}},
             "item_assets":{"data":{"type":"image/tiff; application=geotiff","roles":["data"],"raster:bands":[{}]}},
             "links":[)" +
         linkText("item", "item.json") + "]}";
}

std::string itemText(const std::string& id, const std::string& image) {
  return R"({"type":"Feature","stac_version":"1.0.0","id":")" + id +
         R"(","bbox":[8.4,46.3,8.7,46.6],"properties":{"datetime":"2021-07-14T10:00:00Z"},
             "assets":{"data":{"type":"image/tiff; application=geotiff","roles":["data"],"href":")" +
         image + "\"}}}";
}

std::string catalogueFolder(const std::vector<std::string>& names) {
  std::string made = (fs::temp_directory_path() / "vl-stac-XXXXXX").string();
  if (mkdtemp(made.data()) == nullptr) throw std::runtime_error("No temporary folder");
  std::map<std::string, std::string> linksOfFolders;
  for (const std::string& name : names) {
    const std::string leaf = fs::path(name).filename().string();
    const fs::path folder = *fs::path(name).begin();
    std::string& links = linksOfFolders[folder.string()];
    const std::string seen = fs::path(name).lexically_relative(folder).string();
    links += (links.empty() ? "" : ",") + linkText("child", seen + "/collection.json");
    writeDocument(fs::path(made) / name / "collection.json", collectionText(leaf));
    writeDocument(fs::path(made) / name / "item.json",
                  itemText(leaf, StaticServer::samples().address() + "/" + name + ".tif"));
  }
  std::string root;
  for (const auto& [folder, links] : linksOfFolders) {
    writeDocument(fs::path(made) / folder / "catalog.json", catalogueText(folder, links));
    root += (root.empty() ? "" : ",") + linkText("child", folder + "/catalog.json");
  }
  writeDocument(fs::path(made) / "catalog.json", catalogueText("samples", root));
  return made;
}

}  // namespace

StacOfRasters::StacOfRasters(const std::vector<std::string>& names)
    : folder_(catalogueFolder(names)), server_(folder_) {}

StacOfRasters::~StacOfRasters() { fs::remove_all(folder_); }

const StacOfRasters& StacOfRasters::shared() {
  static const StacOfRasters made({"Elevation/Shaded_Relief_30m", "Elevation/Terrain_30m",
                                   "Imagery/Valley/Scene_2021-07-14", "Landcover/Land_Cover_2021",
                                   "World/EGM96_Geoid"});
  return made;
}

}  // namespace vlclientui::test
