#include "QgisProject.h"

#include <memory>

#include <cpl_error.h>
#include <cpl_string.h>
#include <gdal_utils.h>
#include <ogr_spatialref.h>

#include "../TiffFile.h"
#include "TextFile.h"

namespace vlclientui::samples {
namespace {

namespace fs = std::filesystem;

constexpr int serverSystem = 4326;

std::string escaped(const std::string& text) {
  const std::unique_ptr<char, void (*)(void*)> xml(CPLEscapeString(text.c_str(), -1, CPLES_XML), VSIFree);
  return xml.get();
}

std::string element(const std::string& name, const std::string& content, const std::string& attributes = {}) {
  return "<" + name + attributes + ">" + content + "</" + name + ">\n";
}

std::string attribute(const std::string& name, const std::string& value) {
  return " " + name + "=\"" + escaped(value) + "\"";
}

// The number alone names the system, and yet nothing would be brought from one system to another.
std::string system(int epsg) {
  OGRSpatialReference told;
  char* proj = nullptr;
  if (told.importFromEPSG(epsg) != OGRERR_NONE || told.exportToProj4(&proj) != OGRERR_NONE) {
    throw SampleFailure("the system " + std::to_string(epsg) + " is unknown");
  }
  const std::unique_ptr<char, void (*)(void*)> owned(proj, VSIFree);
  const std::string number = std::to_string(epsg);
  return element("spatialrefsys", element("proj4", escaped(proj)) + element("srid", number) +
                                      element("authid", "EPSG:" + number) +
                                      element("description", escaped(told.GetName())) +
                                      element("geographicflag", told.IsGeographic() != 0 ? "true" : "false"));
}

void writeVirtualRaster(const fs::path& path, const fs::path& catalogue, const Coverage& mosaic) {
  CPLStringList files;
  for (const std::string& each : mosaic.files) files.AddString((catalogue / each).c_str());
  const DatasetPtr made(GDALDataset::FromHandle(
      GDALBuildVRT(path.c_str(), files.Count(), nullptr, files.List(), nullptr, nullptr)));
  if (!made) throw SampleFailure(path.string() + ": " + CPLGetLastErrorMsg());
}

fs::path dataOf(const fs::path& folder, const fs::path& catalogue, const Coverage& coverage) {
  return coverage.isMosaic() ? folder / (coverage.name + ".vrt") : catalogue / coverage.files.front();
}

std::string treeRow(const Coverage& coverage, const fs::path& data) {
  return element("layer-tree-layer", "",
                 attribute("id", coverage.name) + attribute("name", coverage.name) +
                     attribute("source", data.string()) + attribute("providerKey", "gdal") +
                     attribute("checked", "Qt::Checked"));
}

std::string keywords(const Coverage& coverage) {
  std::string text;
  for (const std::string& each : coverage.keywords) text += element("value", escaped(each));
  return element("keywordList", text);
}

std::string layer(const Coverage& coverage, const fs::path& data) {
  const std::string name = escaped(coverage.name);
  return element("maplayer",
                 element("id", name) + element("datasource", escaped(data.string())) +
                     element("layername", name) + element("shortname", name) +
                     element("title", escaped(coverage.title)) +
                     element("abstract", escaped(coverage.description)) + keywords(coverage) +
                     element("srs", system(coverage.epsg)) + element("provider", "gdal"),
                 attribute("type", "raster"));
}

std::string properties(const std::vector<Coverage>& coverages) {
  std::string names;
  for (const Coverage& each : coverages) names += element("value", escaped(each.name));
  return element("properties",
                 element("WCSLayers", names, attribute("type", "QStringList")) +
                     element("WMSServiceCapabilities", "true", attribute("type", "bool")) +
                     element("WMSServiceTitle", "Sample catalogue", attribute("type", "QString")));
}

}  // namespace

void writeQgisProject(const fs::path& folder, const fs::path& catalogue,
                      const std::vector<Coverage>& coverages) {
  std::string tree;
  std::string layers;
  for (const Coverage& each : coverages) {
    const fs::path data = dataOf(folder, catalogue, each);
    if (each.isMosaic()) writeVirtualRaster(data, catalogue, each);
    tree += treeRow(each, data);
    layers += layer(each, data);
  }
  const std::string content =
      element("title", "Sample catalogue") + element("projectCrs", system(serverSystem)) +
      element("layer-tree-group", tree) + element("projectlayers", layers) + properties(coverages);
  writeText(folder / "samples.qgs",
            element("qgis", content, attribute("version", "3.22.16") + attribute("projectname", "Samples")));
}

}  // namespace vlclientui::samples
