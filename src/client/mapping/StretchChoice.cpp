#include "client/mapping/StretchChoice.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "client/drawing/PictureKind.h"
#include "client/mapping/SourceBands.h"
#include "client/mapping/ValueSample.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t mostSources = 8;
// Data of many bits are mostly dark with a few bright spots; lifting the middle shows the ground.
constexpr double usualLift = 0.72;

// What the first source tells, which counts for all.
struct Model {
  PictureKind kind;
  std::vector<int> colors;
  bool isByte = true;
};

Model modelOf(const Drawing& drawing, RasterHandles& handles) {
  const ImageServiceRecord& service = *drawing.service;
  const ImageSource& first = service.sources.front();
  const OpenRaster* raster = handles.raster(service, first);
  if (raster == nullptr) throw RuntimeFailure(handles.problem(service, first));
  const auto title =
      service.kind == ServiceKind::Mosaic ? std::optional<std::string>(service.facts.title) : std::nullopt;
  Model model{pictureKindOf(*raster->dataset, title), raster->colors, true};
  const auto isColor = [&](int band) { return std::ranges::find(model.colors, band) != model.colors.end(); };
  if (!std::ranges::all_of(model.kind.bands, isColor)) model.kind.bands.fill(model.colors.front());
  model.isByte = raster->dataset->GetRasterBand(model.kind.bands.front())->GetRasterDataType() == GDT_Byte;
  return model;
}

Coloring coloringOf(const PictureKind& kind) {
  switch (kind.form) {
    case PictureKind::Form::Palette:
      return Coloring::Palette;
    case PictureKind::Form::Heights:
      return Coloring::Relief;
    case PictureKind::Form::Deviations:
      return Coloring::Deviations;
    case PictureKind::Form::Colors:
      break;
  }
  const bool isGray = kind.bands[0] == kind.bands[1] && kind.bands[0] == kind.bands[2];
  return isGray ? Coloring::Ramp : Coloring::Colors;
}

// Sources from all over the order.
std::vector<std::size_t> someOf(const std::vector<std::size_t>& order) {
  if (order.size() <= mostSources) return order;
  std::vector<std::size_t> some;
  for (std::size_t i = 0; i < mostSources; ++i) some.push_back(order[i * order.size() / mostSources]);
  return some;
}

// One that cannot be read tells nothing. @returns false when the work was given up.
bool sampleAll(const Drawing& drawing, const Model& model, const std::vector<int>& shown,
               RasterHandles& handles, ValueSample& sample) {
  const std::vector<std::size_t> some = someOf(drawing.order);
  for (const std::size_t i : some) {
    if (WaitScope::isGivenUp()) return false;
    const OpenRaster* raster = handles.raster(*drawing.service, drawing.service->sources[i]);
    const auto bands = raster != nullptr ? sourceBandsOf(*raster, model.colors, shown) : std::nullopt;
    if (!bands || bands->palette != nullptr) continue;
    if (sample.add(*raster, *bands, some.size()) == ReadingEnd::GivenUp) return false;
  }
  return true;
}

// One span for all bands keeps the balance of colors; a floor for each removes haze.
void setRanges(Stretch& stretch, const ValueSample& sample, double lowShare, double highShare) {
  std::vector<ValueSample::Range> ranges;
  double span = 0;
  for (std::size_t band = 0; band < stretch.shownBands().size(); ++band) {
    ranges.push_back(sample.range(band, lowShare, highShare));
    span = std::max(span, ranges.back().high - ranges.back().low);
  }
  for (std::size_t band = 0; band < stretch.lowest.size(); ++band) {
    stretch.lowest[band] = ranges[std::min(band, ranges.size() - 1)].low;
    stretch.highest[band] = stretch.lowest[band] + span;
  }
}

}  // namespace

std::optional<Stretch> chosenStretch(const Drawing& drawing, RasterHandles& handles) {
  const GdalScope scope;
  const Model model = modelOf(drawing, handles);
  Stretch stretch;
  stretch.coloring = coloringOf(model.kind);
  stretch.bands = model.kind.bands;
  const bool isSampled = stretch.coloring != Coloring::Palette && !model.isByte;
  if (!isSampled) return stretch;
  ValueSample sample(stretch.shownBands().size());
  if (!sampleAll(drawing, model, stretch.shownBands(), handles, sample)) return std::nullopt;
  if (stretch.isRelief()) {
    setRanges(stretch, sample, 0.005, 0.995);
    const ValueSample::Slopes slopes = sample.slopes();
    stretch.steepness = slopes.steepness;
    stretch.roughness = slopes.roughness;
  } else {
    setRanges(stretch, sample, 0.02, 0.98);
    stretch.lift = usualLift;
  }
  return stretch;
}

}  // namespace vlclientui::client
