#include "client/facade/Thumbnail.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <variant>

#include "client/catalogue/CatalogueScan.h"
#include "client/catalogue/MosaicFacts.h"
#include "client/drawing/RasterPicture.h"
#include "client/raster/GdalScope.h"
#include "client/raster/RasterReader.h"
#include "client/raster/Subdatasets.h"

namespace vlclientui::client {
namespace {

struct Size {
  int width = 0;
  int height = 0;
};

// The part of a picture that a source covers, in pixels.
struct Place {
  int left = 0;
  int top = 0;
  Size size;
};

Size fitted(double across, double down, Size room) {
  const double scale = std::min(room.width / across, room.height / down);
  const auto pixels = [scale](double length, int most) {
    return std::clamp(static_cast<int>(std::lround(length * scale)), 1, most);
  };
  return {pixels(across, room.width), pixels(down, room.height)};
}

std::vector<std::uint8_t> drawFile(const std::filesystem::path& file, Size size) {
  const GdalScope scope;
  const DatasetPtr dataset = openRasterAt(file);
  return dataset ? drawRaster(*dataset, size.width, size.height) : std::vector<std::uint8_t>();
}

Thumbnail drawSingle(const std::filesystem::path& file, Size room) {
  const RasterResult result = readRasterFacts(file);
  const auto* facts = std::get_if<RasterFacts>(&result);
  if (facts == nullptr) return {};
  const Size size =
      fitted(static_cast<double>(facts->fileColumns), static_cast<double>(facts->fileRows), room);
  Thumbnail picture{size.width, size.height, drawFile(file, size)};
  return picture.isEmpty() ? Thumbnail() : picture;
}

Place placeOf(const Bounds& part, const Bounds& whole, Size size) {
  const double across = size.width / (whole.xMax - whole.xMin);
  const double down = size.height / (whole.yMax - whole.yMin);
  const auto at = [](double pixel, int most) {
    return std::clamp(static_cast<int>(std::lround(pixel)), 0, most);
  };
  const int left = at((part.xMin - whole.xMin) * across, size.width - 1);
  const int top = at((whole.yMax - part.yMax) * down, size.height - 1);
  const int right = std::max(at((part.xMax - whole.xMin) * across, size.width), left + 1);
  const int bottom = std::max(at((whole.yMax - part.yMin) * down, size.height), top + 1);
  return {left, top, {right - left, bottom - top}};
}

void blend(std::uint8_t* under, const std::uint8_t* over) {
  const int alpha = over[3];
  if (alpha == 0) return;
  // Over nothing, take the color as it is; otherwise edges would mix with the empty picture's black.
  const int weight = under[3] == 0 ? 255 : alpha;
  for (int channel = 0; channel < 3; ++channel) {
    under[channel] =
        static_cast<std::uint8_t>((over[channel] * weight + under[channel] * (255 - weight)) / 255);
  }
  under[3] = static_cast<std::uint8_t>(std::max<int>(under[3], alpha));
}

void compose(Thumbnail& picture, const std::vector<std::uint8_t>& source, const Place& place) {
  if (source.empty()) return;
  for (int row = 0; row < place.size.height; ++row) {
    for (int column = 0; column < place.size.width; ++column) {
      const int target = (place.top + row) * picture.width + place.left + column;
      const int from = row * place.size.width + column;
      blend(&picture.rgba[static_cast<std::size_t>(target) * 4], &source[static_cast<std::size_t>(from) * 4]);
    }
  }
}

// Of a catalogue's many items a few show what the mosaic is like; none of them was opened yet.
MosaicDefinition someOf(const MosaicDefinition& definition) {
  constexpr std::size_t most = 16;
  const auto isTold = [](const MosaicSource& source) { return source.told.has_value(); };
  const std::size_t count = definition.sources.size();
  if (count <= most || !std::ranges::all_of(definition.sources, isTold)) return definition;
  MosaicDefinition some = definition;
  some.sources.clear();
  for (std::size_t i = 0; i < most; ++i) some.sources.push_back(definition.sources[i * count / most]);
  return some;
}

std::vector<RasterResult> factsOfSources(const MosaicDefinition& definition) {
  std::vector<RasterResult> results;
  for (const MosaicSource& source : definition.sources) results.push_back(readRasterFacts(source.file));
  return results;
}

Thumbnail drawMosaic(const MosaicDefinition& whole, Size room) {
  const MosaicDefinition definition = someOf(whole);
  const std::vector<RasterResult> sources = factsOfSources(definition);
  std::vector<LeftOut> ignored;
  const MosaicSummary united = summaryOf(definition, sources, ignored);
  const auto* facts = std::get_if<RasterFacts>(&united.whole);
  if (facts == nullptr) return {};
  const Size size = fitted(static_cast<double>(facts->columns), static_cast<double>(facts->rows), room);
  Thumbnail picture{size.width, size.height,
                    std::vector<std::uint8_t>(static_cast<std::size_t>(size.width * size.height) * 4)};
  for (std::size_t i = 0; i < sources.size(); ++i) {
    const auto* source = std::get_if<RasterFacts>(&sources[i]);
    // A thumbnail skips sources that would need warping.
    if (source == nullptr || !united.places[i] || source->srsWkt != facts->srsWkt) continue;
    const Place place = placeOf(source->envelope, facts->envelope, size);
    compose(picture, drawFile(definition.sources[i].file, place.size), place);
  }
  return picture;
}

}  // namespace

Thumbnail renderThumbnail(const CatalogueEntry& entry, int width, int height) {
  const Size room{std::max(width, 1), std::max(height, 1)};
  return entry.kind == EntryKind::Mosaic ? drawMosaic(entry.definition, room) : drawSingle(entry.file, room);
}

}  // namespace vlclientui::client
