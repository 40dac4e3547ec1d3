#include "client/ServiceFixture.h"

#include <algorithm>

#include <cpl_conv.h>
#include <ogr_spatialref.h>

#include "client/raster/Text.h"

namespace vlclientui::test {
namespace {

using DatasetHandle = std::unique_ptr<GDALDataset, void (*)(GDALDataset*)>;

void closeDataset(GDALDataset* dataset) {
  if (dataset != nullptr) GDALClose(GDALDataset::ToHandle(dataset));
}

DatasetHandle open(const std::string& file) {
  return {GDALDataset::FromHandle(GDALOpen(file.c_str(), GA_ReadOnly)), closeDataset};
}

std::string element(const std::string& name, const std::string& text) {
  return "<" + name + ">" + text + "</" + name + ">";
}

void number(GDALDataset& dataset) {
  const int width = dataset.GetRasterXSize();
  const int height = dataset.GetRasterYSize();
  std::vector<double> values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int band = 1; band <= dataset.GetRasterCount(); ++band) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      values[i] = static_cast<double>((i * 7 + static_cast<std::size_t>(band) * 31) % 250 + 1);
    }
    EXPECT_EQ(dataset.GetRasterBand(band)->RasterIO(GF_Write, 0, 0, width, height, values.data(), width,
                                                    height, GDT_Float64, 0, 0, nullptr),
              CE_None);
  }
}

}  // namespace

std::string GetImage::document() const {
  using client::numberText;
  return "<Vorlane><Client><GetImage>" + element("OutputType", "File") +
         element("Top", numberText(extent.yMax)) + element("Left", numberText(extent.xMin)) +
         element("Right", numberText(extent.xMax)) + element("Bottom", numberText(extent.yMin)) +
         element("Cols", std::to_string(columns)) + element("Rows", std::to_string(rows)) +
         element("CreateWorldFile", worldFile ? "True" : "False") + element("Format", format) +
         element("CompressionMethod", compression) + element("TileSize", tileSize) +
         element("CompressionQuality", quality) + element("FileName", client::xmlEscaped(fileName)) +
         element("ExportMetadataXml", metadata ? "True" : "False") + "</GetImage></Client></Vorlane>";
}

ServiceFixture::ServiceFixture()
    : server_(std::make_shared<client::CatalogueServer>(xml(), client::CatalogueSettings{folder(), {}})) {
  std::filesystem::create_directories(folder() / "out");
}

std::shared_ptr<client::CatalogueImageService> ServiceFixture::service(const std::string& reference) const {
  return std::make_shared<client::CatalogueImageService>(server_, xml(), reference);
}

std::filesystem::path ServiceFixture::makeNumbered(const std::string& name, RasterRecipe recipe) const {
  const auto finish = recipe.finish;
  recipe.finish = [finish](GDALDataset& dataset) {
    if (finish) finish(dataset);
    number(dataset);
  };
  return makeRaster(name, recipe);
}

std::string ServiceFixture::exportFrom(const std::string& name, const GetImage& request) const {
  const auto made = service("ImageService://localhost/" + name);
  made->ExportProperties(request.document());
  if (made->ExportImage()) return {};
  const auto document = xml().createDocument();
  EXPECT_TRUE(document->loadXml(made->status()));
  const auto message = document->selectSingleNode("//Item/Message");
  return message ? message->text() : "(failed without a message)";
}

std::string ServiceFixture::out(const std::string& name) const { return (folder() / "out" / name).string(); }

std::vector<std::string> ServiceFixture::outputs() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder() / "out")) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<double> valuesOf(const std::string& file) {
  const auto dataset = open(file);
  if (!dataset) return {};
  const int width = dataset->GetRasterXSize();
  const int height = dataset->GetRasterYSize();
  std::vector<double> values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                             static_cast<std::size_t>(dataset->GetRasterCount()));
  const CPLErr result = dataset->RasterIO(GF_Read, 0, 0, width, height, values.data(), width, height,
                                          GDT_Float64, dataset->GetRasterCount(), nullptr, 0, 0, 0);
  return result == CE_None ? values : std::vector<double>();
}

std::array<double, 6> transformOf(const std::string& file, SideCars sideCars) {
  if (sideCars == SideCars::Ignored) CPLSetThreadLocalConfigOption("GDAL_PAM_ENABLED", "NO");
  std::array<double, 6> transform{};
  {
    const auto dataset = open(file);
    if (dataset) dataset->GetGeoTransform(transform.data());
  }
  CPLSetThreadLocalConfigOption("GDAL_PAM_ENABLED", nullptr);
  return transform;
}

std::string systemOf(const std::string& file) {
  const auto dataset = open(file);
  const OGRSpatialReference* system = dataset ? dataset->GetSpatialRef() : nullptr;
  const char* code = system != nullptr ? system->GetAuthorityCode(nullptr) : nullptr;
  return code != nullptr ? code : "(none)";
}

std::string structureItem(const std::string& file, const char* name) {
  const auto dataset = open(file);
  const char* item = dataset ? dataset->GetMetadataItem(name, "IMAGE_STRUCTURE") : nullptr;
  return item != nullptr ? item : "(none)";
}

}  // namespace vlclientui::test
