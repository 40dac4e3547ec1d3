#include "client/mapping/RasterPlacing.h"

#include <cmath>
#include <limits>
#include <utility>

#include <gdal_alg.h>

namespace vlclientui::client {
namespace {

constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
constexpr double wholeTurn = 360;

double middleOf(const OpenRaster& raster) {
  const GeoTransform& t = raster.transform;
  return t[0] + t[1] * raster.columns / 2 + t[2] * raster.rows / 2;
}

}  // namespace

RasterPlacing::RasterPlacing(const OpenRaster& raster, std::shared_ptr<const PointWay> way)
    : way_(std::move(way)), columns_(raster.columns), rows_(raster.rows), isInDegrees_(raster.isInDegrees) {
  if (!raster.isPlacedByPoints) middle_ = middleOf(raster);
}

RasterPlacing::~RasterPlacing() {
  if (points_ != nullptr) GDALDestroyGCPTransformer(points_);
}

std::unique_ptr<RasterPlacing> RasterPlacing::of(const OpenRaster& raster,
                                                 std::shared_ptr<const PointWay> way) {
  if (!way) return nullptr;
  std::unique_ptr<RasterPlacing> placing(new RasterPlacing(raster, std::move(way)));
  if (raster.isPlacedByPoints) {
    GDALDataset& dataset = *raster.dataset;
    placing->points_ = GDALCreateGCPTransformer(dataset.GetGCPCount(), dataset.GetGCPs(), 0, FALSE);
    return placing->points_ != nullptr ? std::move(placing) : nullptr;
  }
  std::array<double, 6> transform = raster.transform;
  const bool isUsed = GDALInvGeoTransform(transform.data(), placing->inverse_.data()) != 0;
  return isUsed ? std::move(placing) : nullptr;
}

MapPoint RasterPlacing::byTransform(MapPoint place) const {
  if (!place.isKnown()) return place;
  if (isInDegrees_) place.x += wholeTurn * std::round((middle_ - place.x) / wholeTurn);
  return {inverse_[0] + place.x * inverse_[1] + place.y * inverse_[2],
          inverse_[3] + place.x * inverse_[4] + place.y * inverse_[5]};
}

void RasterPlacing::byPoints(std::vector<MapPoint>& places) const {
  for (MapPoint& place : places) {
    if (!place.isKnown()) continue;
    double height = 0;
    int isDone = 0;
    GDALGCPTransform(points_, TRUE, 1, &place.x, &place.y, &height, &isDone);
    if (isDone == 0) place = {unknown, unknown};
  }
}

void RasterPlacing::toPixels(std::vector<MapPoint>& places) const {
  way_->apply(places);
  if (points_ != nullptr) return byPoints(places);
  for (MapPoint& place : places) place = byTransform(place);
}

bool RasterPlacing::isStraight(const OutputGrid& grid) const {
  if (points_ != nullptr || !way_->changesNothing()) return false;
  return !isInDegrees_ ||
         (grid.extent.xMin >= middle_ - wholeTurn / 2 && grid.extent.xMax <= middle_ + wholeTurn / 2);
}

}  // namespace vlclientui::client
