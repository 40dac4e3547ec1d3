#include "client/output/ExportIdentity.h"

#include <algorithm>
#include <iterator>

#include "client/raster/ContentMark.h"
#include "client/raster/NameMark.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t markDigits = 16;

std::string textOf(const Bounds& bounds) {
  return numberText(bounds.xMin) + ' ' + numberText(bounds.yMin) + ' ' + numberText(bounds.xMax) + ' ' +
         numberText(bounds.yMax) + '\n';
}

std::string textOf(const GetImageRequest& request) {
  return textOf(request.grid.extent) + std::to_string(request.grid.columns) + ' ' +
         std::to_string(request.grid.rows) + ' ' + lowered(request.format) + ' ' +
         lowered(request.compression) + ' ' + std::to_string(request.tileSize) + ' ' +
         std::to_string(request.quality) + '\n';
}

std::string textOf(const PixelChoice& pixels) {
  const std::string resampling =
      pixels.resampling ? std::to_string(static_cast<int>(*pixels.resampling)) : "-";
  return resampling + ' ' + (pixels.noData ? numberText(*pixels.noData) : "-") + '\n';
}

// Whoever signs an address signs it anew each day, with the date and the end in the clear.
std::string withoutPassingKeys(const std::string& name) {
  constexpr std::string_view hidden = "***";
  const std::size_t key = name.find(hidden);
  if (key == std::string::npos) return name;
  const std::size_t query = std::min(name.rfind('?', key), name.rfind("%3F", key));
  return name.substr(0, query);
}

}  // namespace

std::vector<std::size_t> sourcesWithin(const ImageServiceRecord& service,
                                       const std::vector<std::size_t>& order, const OutputGrid& grid) {
  std::vector<std::size_t> within;
  std::ranges::copy_if(order, std::back_inserter(within), [&](std::size_t index) {
    const Bounds& place = service.sources[index].place;
    return place.xMin < grid.extent.xMax && grid.extent.xMin < place.xMax && place.yMin < grid.extent.yMax &&
           grid.extent.yMin < place.yMax;
  });
  return within;
}

ExportIdentity exportIdentity(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                              const GetImageRequest& request) {
  std::string asked = textOf(request) + textOf(service.pixels) + service.facts.srsWkt + '\n';
  std::string content;
  for (const std::size_t index : sourcesWithin(service, order, request.grid)) {
    const ImageSource& source = service.sources[index];
    asked += withoutPassingKeys(source.file.string()) + ' ' + textOf(source.place);
    content += contentMark(source.file) + '\n';
  }
  return {nameMark(asked, markDigits), nameMark(content, markDigits)};
}

}  // namespace vlclientui::client
