#include "client/mapping/ServicePainter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include <gdal_priv.h>

#include "client/mapping/Areas.h"
#include "client/mapping/CopyWriting.h"
#include "client/mapping/MapSystem.h"
#include "client/mapping/SpreadSources.h"
#include "client/mapping/TileGround.h"
#include "client/raster/GdalScope.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr int partSide = 256;
constexpr std::size_t mostOpenedQuickly = 16;  // sources of a part

ClassColors classesOf(const GDALColorTable& table) {
  ClassColors classes;
  for (int i = 0; i < table.GetColorEntryCount(); ++i) {
    GDALColorEntry entry{0, 0, 0, 0};
    table.GetColorEntryAsRGB(i, &entry);
    classes.push_back({static_cast<std::uint8_t>(entry.c1), static_cast<std::uint8_t>(entry.c2),
                       static_cast<std::uint8_t>(entry.c3), static_cast<std::uint8_t>(entry.c4)});
  }
  return classes;
}

// A part of a grid, which may reach beyond it.
OutputGrid partOf(const OutputGrid& grid, const Window& part) {
  const double left = grid.extent.xMin + part.x * grid.pixelWidth();
  const double top = grid.extent.yMax - part.y * grid.pixelHeight();
  return {{left, top - part.height * grid.pixelHeight(), left + part.width * grid.pixelWidth(), top},
          part.width,
          part.height};
}

void copyInto(ServicePicture& picture, const Window& part, const std::vector<std::uint8_t>& rgba, int width,
              int margin) {
  const auto bytes = static_cast<std::ptrdiff_t>(part.width) * 4;
  for (int row = 0; row < part.height; ++row) {
    const auto from = (static_cast<std::ptrdiff_t>(row + margin) * width + margin) * 4;
    const auto to = (static_cast<std::ptrdiff_t>(part.y + row) * picture.columns + part.x) * 4;
    std::copy_n(rgba.begin() + from, bytes, picture.rgba.begin() + to);
  }
}

}  // namespace

ServicePainter::ServicePainter(const Drawing& drawing, const Stretch& stretch, RasterHandles& handles)
    : drawing_(drawing), stretch_(stretch), handles_(handles), shown_(stretch.shownBands()) {}

std::optional<ServicePicture> ServicePainter::paint(const MapGrid& map, Pass pass) {
  const GdalScope scope;
  learnModel();
  ServicePicture picture;
  picture.columns = map.grid.columns;
  picture.rows = map.grid.rows;
  picture.rgba.resize(static_cast<std::size_t>(map.grid.columns) * static_cast<std::size_t>(map.grid.rows) *
                      4);
  for (int row = 0; row < map.grid.rows; row += partSide) {
    for (int column = 0; column < map.grid.columns; column += partSide) {
      const Window part{column, row, std::min(partSide, map.grid.columns - column),
                        std::min(partSide, map.grid.rows - row)};
      if (!paintPart(map, pass, part, picture)) return std::nullopt;
    }
  }
  if (!isAnyRead_ && !picture.missing.empty()) {
    throw RuntimeFailure(picture.missing.begin()->second);
  }
  return picture;
}

// Bands and colors of the first source count for all.
void ServicePainter::learnModel() {
  const ImageServiceRecord& service = *drawing_.service;
  const ImageSource& first = service.sources.front();
  const OpenRaster* model = handles_.raster(service, first);
  if (model == nullptr) throw RuntimeFailure(handles_.problem(service, first));
  model_ = model->colors;
  if (model->palette != nullptr) classes_ = classesOf(*model->palette);
}

double ServicePainter::usualScale(const MapGrid& map) {
  const RasterFacts& facts = drawing_.service->facts;
  const auto there = handles_.way(facts.srsWkt, map.wkt);
  const auto back = handles_.way(map.wkt, facts.srsWkt);
  if (!there || !back || !(facts.pixelSize > 0)) return 1;
  const MapPoint middle = there->of(
      {(facts.envelope.xMin + facts.envelope.xMax) / 2, (facts.envelope.yMin + facts.envelope.yMax) / 2});
  const MapPoint one = back->of(middle);
  const MapPoint other = back->of({middle.x + map.grid.pixelWidth(), middle.y});
  const double scale = std::hypot(one.x - other.x, one.y - other.y) / facts.pixelSize;
  return std::isfinite(scale) && scale > 0 ? scale : 1;
}

TileGround ServicePainter::groundOf(const MapGrid& map, const OutputGrid& part) {
  TileGround ground;
  if (stretch_.isRelief()) ground.scale = usualScale(map);
  if (stretch_.coloring != Coloring::Shading) return ground;
  static const auto degrees = mapSystemOf(degreesCode);
  const auto way = map.wkt.empty() || !degrees ? nullptr : handles_.way(map.wkt, degrees->wkt);
  ground.cells = cornerCells(part, way.get());
  ground.meters = metersOfHeightUnit(drawing_.service->facts.pixelUnit);
  return ground;
}

bool ServicePainter::paintPart(const MapGrid& map, Pass pass, const Window& part, ServicePicture& picture) {
  // Slopes need the neighbors.
  const int margin = stretch_.needsNeighbors() ? 1 : 0;
  const Window wide{part.x - margin, part.y - margin, part.width + 2 * margin, part.height + 2 * margin};
  SampleTile tile(wide.width, wide.height, shown_.size());
  if (!sampleSources({map.wkt, partOf(map.grid, wide)}, pass, tile, picture)) return false;
  const TileGround ground = groundOf(map, partOf(map.grid, wide));
  const auto colors = coloredTile(tile, stretch_, classes_, ground);
  if (colors.empty()) return false;
  copyInto(picture, part, colors, wide.width, margin);
  return true;
}

bool ServicePainter::sampleSources(const MapGrid& map, Pass pass, SampleTile& tile, ServicePicture& picture) {
  const std::vector<const ImageSource*> sources = touched(map);
  // Classes have no means.
  const bool isCoarse =
      pass == Pass::Coarse && sources.size() > mostOpenedQuickly && stretch_.coloring != Coloring::Palette;
  if (isCoarse) {
    const ReadingEnd end = sampleSome(map, sources, tile, picture);
    if (end != ReadingEnd::Failed) return end == ReadingEnd::Whole;
  }
  for (const ImageSource* source : sources) {
    if (std::ranges::find(tile.alpha, 0) == tile.alpha.end()) break;
    const ReadingEnd end = sampleOne(map, pass, *source, tile, picture);
    if (end == ReadingEnd::GivenUp) return false;
    isAnyRead_ = isAnyRead_ || end == ReadingEnd::Whole;
  }
  return true;
}

// From the topmost down.
std::vector<const ImageSource*> ServicePainter::touched(const MapGrid& map) {
  const ImageServiceRecord& service = *drawing_.service;
  const auto way = handles_.way(map.wkt, service.facts.srsWkt);
  const auto reach = way ? reachOf(map.grid.extent, *way) : std::nullopt;
  const bool isInDegrees = service.facts.srsWkt.starts_with("GEOG");
  std::vector<const ImageSource*> sources;
  if (!reach || isElsewhere(map)) return sources;
  for (auto i = drawing_.order.rbegin(); i != drawing_.order.rend(); ++i) {
    const ImageSource& source = service.sources[*i];
    if (partWithin(source.place, *reach, isInDegrees)) sources.push_back(&source);
  }
  return sources;
}

// A few for all. @returns Failed when none of them can be read, which tells nothing of the others.
ReadingEnd ServicePainter::sampleSome(const MapGrid& map, const std::vector<const ImageSource*>& sources,
                                      SampleTile& tile, ServicePicture& picture) {
  const auto way = handles_.way(drawing_.service->facts.srsWkt, map.wkt);
  if (!way) return ReadingEnd::Failed;
  const std::vector<PlacedSource> placed = placedOn(map.grid, *way, sources);
  const std::vector<std::size_t> chosen = spreadOver(map.grid, placed);
  ServicePicture untold;
  for (const std::size_t i : chosen) {
    const ReadingEnd end = sampleOne(map, Pass::Coarse, *placed[i].source, tile, untold);
    if (end == ReadingEnd::GivenUp) return end;
    isAnyRead_ = isAnyRead_ || end == ReadingEnd::Whole;
  }
  if (!fillBetween(placed, chosen, tile)) return ReadingEnd::Failed;
  picture.isQuick = true;
  return ReadingEnd::Whole;
}

// Where the map reaches beyond what the service's system can tell, the service still knows where it lies.
bool ServicePainter::isElsewhere(const MapGrid& map) {
  const RasterFacts& facts = drawing_.service->facts;
  if (facts.srsWkt.starts_with("GEOG") && map.wkt.starts_with("GEOG")) return false;
  const auto there = handles_.way(facts.srsWkt, map.wkt);
  const auto place = there ? reachOf(facts.envelope, *there) : std::nullopt;
  return place && !overlap(*place, map.grid.extent);
}

ReadingEnd ServicePainter::sampleOne(const MapGrid& map, Pass pass, const ImageSource& source,
                                     SampleTile& tile, ServicePicture& picture) {
  if (WaitScope::isGivenUp()) return ReadingEnd::GivenUp;
  const GdalScope scope;
  const ImageServiceRecord& service = *drawing_.service;
  const auto fail = [&](const std::string& reason) {
    picture.missing.emplace(source.shownName(), reason);
    return ReadingEnd::Failed;
  };
  const OpenRaster* raster = handles_.raster(service, source);
  const RasterPlacing* placing = raster != nullptr ? handles_.placing(service, source, map.wkt) : nullptr;
  if (WaitScope::isGivenUp()) return ReadingEnd::GivenUp;
  if (raster == nullptr) return fail(handles_.problem(service, source));
  if (placing == nullptr) return fail(unreadable(source, "nothing tells where it lies"));
  const auto bands = sourceBandsOf(*raster, model_, shown_);
  if (!bands) return ReadingEnd::Whole;
  const SamplingEnd sampled =
      sampleSource({*raster, *placing, *bands, service.pixels.resampling, pass}, map.grid, tile);
  if (sampled.end == ReadingEnd::Failed) return fail(unreadable(source, scope.readFailure()));
  picture.isQuick = picture.isQuick || sampled.isQuick;
  // A copy has the holes that the raster declares.
  const bool mayHaveCopy = !raster->copy && !service.pixels.noData && deservesCopy(*raster);
  if (sampled.isQuick && mayHaveCopy && SmallCopies::canBeOf(source.file)) {
    picture.slow.insert(source.file.string());
  }
  return sampled.end;
}

}  // namespace vlclientui::client
