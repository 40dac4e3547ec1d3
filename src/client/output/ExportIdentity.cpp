#include "client/output/ExportIdentity.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <future>
#include <iterator>

#include "client/raster/ContentMark.h"
#include "client/raster/NameMark.h"
#include "client/raster/Text.h"
#include "client/waiting/SideBySide.h"

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

// What came of it, in the order of the sources; each is a text or a failure.
struct Mark {
  std::string text;
  std::exception_ptr failure;
};

Mark markOf(const std::filesystem::path& file) {
  try {
    return {contentMark(file), nullptr};
  } catch (...) {
    return {{}, std::current_exception()};
  }
}

std::vector<Mark> readMarks(const std::vector<std::filesystem::path>& files, const WaitScope::Link& link) {
  const WaitScope scope(link);
  std::vector<Mark> marks(files.size());
  doSideBySide(files.size(), waitersAtATime,
               [&] { return [&](std::size_t i) { marks[i] = markOf(files[i]); }; });
  return marks;
}

// The progress belongs to this thread, so that others wait for the servers.
std::vector<Mark> marksOf(const std::vector<std::filesystem::path>& files, const ExportProgress& progress) {
  constexpr auto patience = std::chrono::milliseconds(100);
  CancelToken end;
  const WaitScope scope(nullptr, end);
  auto marks =
      std::async(std::launch::async, [&, link = WaitScope::link()] { return readMarks(files, link); });
  while (marks.wait_for(patience) != std::future_status::ready) {
    if (progress && !progress(0)) end.cancel();
  }
  if (end.isCanceled()) failCanceled();
  return marks.get();
}

}  // namespace

std::vector<std::size_t> sourcesWithin(const ImageServiceRecord& service,
                                       const std::vector<std::size_t>& order, const OutputGrid& grid) {
  std::vector<std::size_t> within;
  std::ranges::copy_if(order, std::back_inserter(within),
                       [&](std::size_t index) { return overlap(service.sources[index].place, grid.extent); });
  return within;
}

ExportIdentity exportIdentity(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                              const GetImageRequest& request, const ExportProgress& progress) {
  std::string asked = textOf(request) + textOf(service.pixels) + service.facts.srsWkt + '\n';
  std::vector<std::filesystem::path> files;
  for (const std::size_t index : sourcesWithin(service, order, request.grid)) {
    const ImageSource& source = service.sources[index];
    asked += withoutPassingKeys(source.file.string()) + ' ' + textOf(source.place);
    files.push_back(source.file);
  }
  std::string content;
  for (const Mark& mark : marksOf(files, progress)) {
    if (mark.failure) std::rethrow_exception(mark.failure);
    content += mark.text + '\n';
  }
  return {nameMark(asked, markDigits), nameMark(content, markDigits)};
}

}  // namespace vlclientui::client
