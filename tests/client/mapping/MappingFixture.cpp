#include "client/mapping/MappingFixture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <cpl_string.h>
#include <gdal_utils.h>
#include <ogr_spatialref.h>

#include "client/facade/ServiceLoading.h"
#include "client/mapping/RasterHandles.h"
#include "client/mapping/StretchChoice.h"
#include "client/raster/Text.h"

namespace vlclientui::test {

using client::MapGrid;
using client::MapPoint;

MapPoint MappingFixture::placeIn(int epsg, MapPoint at) {
  return client::PointWay::between(wktOf(4326), wktOf(epsg))->of(at);
}

std::string MappingFixture::wktOf(int epsg) {
  OGRSpatialReference system;
  system.importFromEPSG(epsg);
  char* text = nullptr;
  system.exportToWkt(&text);
  std::string wkt = text;
  CPLFree(text);
  return wkt;
}

MapGrid MappingFixture::mapAround(int epsg, MapPoint middle, double pixel, int columns, int rows) {
  const MapPoint at = placeIn(epsg, middle);
  const double across = pixel * columns / 2;
  const double down = pixel * rows / 2;
  return {wktOf(epsg), {{at.x - across, at.y - down, at.x + across, at.y + down}, columns, rows}};
}

std::string MappingFixture::makePlaced(const std::string& name, int epsg, MapPoint middle, double pixel,
                                       std::function<void(GDALDataset&)> finish) const {
  return makeChecked(name, epsg, middle, pixel, 1, finish);
}

std::string MappingFixture::makeDeep(const std::string& name, int epsg, MapPoint middle, double pixel) const {
  return makeChecked(name, epsg, middle, pixel, deeper, {});
}

std::string MappingFixture::makeChecked(const std::string& name, int epsg, MapPoint middle, double pixel,
                                        int factor, const std::function<void(GDALDataset&)>& finish) const {
  const MapPoint at = placeIn(epsg, middle);
  RasterRecipe recipe;
  recipe.width = recipe.height = side;
  recipe.bands = 3;
  recipe.type = factor == 1 ? GDT_Byte : GDT_UInt16;
  recipe.epsg = epsg;
  recipe.transform = {at.x - pixel * side / 2, pixel, 0, at.y + pixel * side / 2, 0, -pixel};
  recipe.finish = [&](GDALDataset& dataset) {
    std::vector<std::uint16_t> line(side);
    for (int row = 0; row < side; ++row) {
      for (int band = 1; band <= 3; ++band) {
        for (int column = 0; column < side; ++column) {
          const int value = band == 1 ? column : band == 2 ? row : (column + row) % 2 * 200;
          line[static_cast<std::size_t>(column)] = static_cast<std::uint16_t>((value % 250 + 1) * factor);
        }
        EXPECT_EQ(dataset.GetRasterBand(band)->RasterIO(GF_Write, 0, row, side, 1, line.data(), side, 1,
                                                        GDT_UInt16, 0, 0, nullptr),
                  CE_None);
      }
    }
    if (finish) finish(dataset);
  };
  return makeRaster(name, recipe).string();
}

client::Drawing MappingFixture::drawingOf(const std::string& name, const std::string& content) const {
  const auto record = client::loadImageService(*server_, "ImageService://localhost/" + name);
  const std::string document =
      "<Vorlane><ImageServiceProperties>" + content + "</ImageServiceProperties></Vorlane>";
  return client::drawingOf(record, client::readDrawingProperties(document, xml()));
}

client::ServicePicture MappingFixture::painted(const client::Drawing& drawing, const MapGrid& map,
                                               client::Pass pass) const {
  client::RasterHandles handles;
  const auto stretch = client::chosenStretch(drawing, handles);
  return *client::ServicePainter(drawing, *stretch, handles).paint(map, pass);
}

MappingFixture::Pixel MappingFixture::pixelOf(const client::ServicePicture& picture, int column, int row) {
  const auto at = (static_cast<std::size_t>(row) * static_cast<std::size_t>(picture.columns) +
                   static_cast<std::size_t>(column)) *
                  4;
  return {picture.rgba[at], picture.rgba[at + 1], picture.rgba[at + 2], picture.rgba[at + 3]};
}

std::vector<MappingFixture::Pixel> MappingFixture::warped(const std::string& file, int epsg,
                                                          const MapGrid& map) {
  const client::Bounds& extent = map.grid.extent;
  CPLStringList words;
  for (const std::string& word :
       {std::string("-of"), std::string("MEM"), std::string("-t_srs"), "EPSG:" + std::to_string(epsg),
        std::string("-te"), client::numberText(extent.xMin), client::numberText(extent.yMin),
        client::numberText(extent.xMax), client::numberText(extent.yMax), std::string("-ts"),
        std::to_string(map.grid.columns), std::to_string(map.grid.rows), std::string("-r"),
        std::string("near"), std::string("-et"), std::string("0"), std::string("-dstalpha"),
        std::string("-ovr"), std::string("NONE")}) {
    words.AddString(word.c_str());
  }
  GDALWarpAppOptions* options = GDALWarpAppOptionsNew(words.List(), nullptr);
  GDALDatasetH source = GDALOpen(file.c_str(), GA_ReadOnly);
  GDALDatasetH result = GDALWarp("", nullptr, 1, &source, options, nullptr);
  GDALWarpAppOptionsFree(options);
  auto* dataset = GDALDataset::FromHandle(result);
  constexpr GSpacing pixel = 4 * sizeof(std::uint16_t);
  std::vector<std::uint16_t> values(static_cast<std::size_t>(map.grid.columns * map.grid.rows) * 4);
  EXPECT_EQ(dataset->RasterIO(GF_Read, 0, 0, map.grid.columns, map.grid.rows, values.data(), map.grid.columns,
                              map.grid.rows, GDT_UInt16, 4, nullptr, pixel, pixel * map.grid.columns,
                              sizeof(std::uint16_t)),
            CE_None);
  GDALClose(result);
  GDALClose(source);
  std::vector<Pixel> pixels;
  for (std::size_t i = 0; i < values.size(); i += 4) {
    pixels.push_back({values[i], values[i + 1], values[i + 2], values[i + 3] > 0 ? 255 : 0});
  }
  return pixels;
}

double MappingFixture::nearLikeness(const client::ServicePicture& picture,
                                    const std::vector<Pixel>& reference) {
  std::size_t same = 0;
  for (std::size_t i = 0; i < reference.size(); ++i) {
    const std::uint8_t* drawn = picture.rgba.data() + i * 4;
    const bool areHoles = drawn[3] == 0 && reference[i][3] == 0;
    bool areNear = drawn[3] == reference[i][3];
    for (std::size_t band = 0; band < 3; ++band)
      areNear = areNear && std::abs(drawn[band] - reference[i][band]) <= 1;
    if (areHoles || areNear) ++same;
  }
  return static_cast<double>(same) / static_cast<double>(reference.size());
}

double MappingFixture::likeness(const client::ServicePicture& picture, const std::vector<Pixel>& reference) {
  std::size_t same = 0;
  for (std::size_t i = 0; i < reference.size(); ++i) {
    const Pixel drawn = {picture.rgba[i * 4], picture.rgba[i * 4 + 1], picture.rgba[i * 4 + 2],
                         picture.rgba[i * 4 + 3]};
    const bool areHoles = drawn[3] == 0 && reference[i][3] == 0;
    if (areHoles || drawn == reference[i]) ++same;
  }
  return static_cast<double>(same) / static_cast<double>(reference.size());
}

double MappingFixture::filledShare(const std::vector<Pixel>& reference) {
  const auto filled = std::ranges::count_if(reference, [](const Pixel& pixel) { return pixel[3] != 0; });
  return static_cast<double>(filled) / static_cast<double>(reference.size());
}

}  // namespace vlclientui::test
