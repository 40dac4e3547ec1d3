#include "client/facade/ServiceDrawing.h"

#include <utility>

#include "client/drawing/Drawing.h"
#include "client/drawing/ImageSource.h"
#include "client/drawing/RasterPicture.h"
#include "client/drawing/RequestRaster.h"
#include "client/facade/MosaicReading.h"
#include "client/raster/GdalScope.h"
#include "client/raster/OutputGrid.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {

ServiceDrawing::ServiceDrawing(std::shared_ptr<const Drawing> drawing,
                               std::shared_ptr<const ImageServiceRecord> record,
                               std::shared_ptr<MosaicReading> mosaic)
    : drawing_(std::move(drawing)), record_(std::move(record)), mosaic_(std::move(mosaic)) {}

const RasterFacts& ServiceDrawing::facts() const { return drawing_->service->facts; }

// With the sources of an area that only a catalogue told of so far.
std::shared_ptr<const Drawing> ServiceDrawing::broughtIn(const Bounds& area, Needed needed) const {
  if (!mosaic_) return drawing_;
  const auto opening = needed == Needed::All ? MosaicReading::Opening::All : MosaicReading::Opening::Topmost;
  const auto record = mosaic_->openedWithin(record_, *drawing_, area, opening);
  if (record == record_) return drawing_;
  return std::make_shared<const Drawing>(drawingOf(*record, drawing_->properties));
}

std::shared_ptr<const Drawing> ServiceDrawing::within(const std::optional<Bounds>& area) const {
  return area ? withoutUnopened(broughtIn(*area, Needed::Topmost), *area) : drawing_;
}

std::shared_ptr<const Drawing> ServiceDrawing::wholeWithin(const std::optional<Bounds>& area) const {
  return area ? broughtIn(*area, Needed::All) : drawing_;
}

Thumbnail ServiceDrawing::draw(const Bounds& extent, int columns, int rows) const {
  if (columns < 1 || rows < 1 || !(extent.xMax > extent.xMin) || !(extent.yMax > extent.yMin)) {
    throw RuntimeFailure("An image needs an extent and at least one pixel");
  }
  const auto now = withoutUnopened(broughtIn(extent, Needed::Topmost), extent);
  const GdalScope scope;
  const DatasetPtr request = openRequest(*now->service, now->order, {extent, columns, rows});
  Thumbnail picture{columns, rows, drawRaster(*request, columns, rows)};
  if (WaitScope::isGivenUp()) throw RuntimeFailure("The drawing was given up");
  if (picture.isEmpty()) throw RuntimeFailure("The image cannot be drawn. " + scope.readFailure());
  return picture;
}

}  // namespace vlclientui::client
