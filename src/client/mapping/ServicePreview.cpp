#include "client/mapping/ServicePreview.h"

#include <algorithm>
#include <cmath>

#include "client/mapping/ServicePainter.h"
#include "client/mapping/StretchChoice.h"

namespace vlclientui::client {
namespace {

constexpr double mostPixels = 36e6;  // of a service that is read whole, if it has no overviews

}  // namespace

std::optional<ServicePicture> previewOf(const Drawing& drawing, int side) {
  RasterHandles handles;
  const auto stretch = chosenStretch(drawing, handles);
  if (!stretch) return std::nullopt;
  const RasterFacts& facts = drawing.service->facts;
  const Bounds& whole = facts.envelope;
  const double across = whole.xMax - whole.xMin;
  const double down = whole.yMax - whole.yMin;
  const auto pixels = [&](double length) {
    return std::max(1, static_cast<int>(std::lround(side * length / std::max(across, down))));
  };
  const bool isLarge = static_cast<double>(facts.columns) * static_cast<double>(facts.rows) > mostPixels;
  const MapGrid grid{facts.srsWkt, {whole, pixels(across), pixels(down)}};
  return ServicePainter(drawing, *stretch, handles).paint(grid, isLarge ? Pass::Quick : Pass::Fine);
}

}  // namespace vlclientui::client
