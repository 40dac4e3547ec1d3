#include <array>
#include <utility>

#include "client/network/CoverageClient.h"
#include "client/network/CoverageTiles.h"
#include "client/raster/NameMark.h"
#include "client/raster/Text.h"
#include "client/transport/Transport.h"

namespace vlclientui::client {
namespace {

constexpr std::int64_t sampleSide = 64;
constexpr std::size_t markDigits = 16;

// Along a diagonal: the first, third and fifth sixth of the coverage.
std::vector<CoveragePart> samplesOf(const CoverageDescription& coverage) {
  std::vector<CoveragePart> parts;
  for (const std::int64_t sixth : {1, 3, 5}) {
    const std::int64_t width = std::min(sampleSide, coverage.columns);
    const std::int64_t height = std::min(sampleSide, coverage.rows);
    const std::int64_t column = std::min(coverage.columns * sixth / 6, coverage.columns - width);
    const std::int64_t row = std::min(coverage.rows * sixth / 6, coverage.rows - height);
    parts.push_back({{column, row, width, height}, width, height});
  }
  return parts;
}

std::string textOf(const CoverageDescription& coverage, const CoverageFormat& format) {
  std::string text = coverage.system + ' ' + std::to_string(coverage.columns) + ' ' +
                     std::to_string(coverage.rows) + ' ' + format.name + ' ' + format.dataType + ' ' +
                     std::to_string(format.bandCount);
  for (const double edge :
       {coverage.envelope.xMin, coverage.envelope.yMin, coverage.envelope.xMax, coverage.envelope.yMax}) {
    text += ' ' + numberText(edge);
  }
  return text;
}

// A server that makes its answers as they are asked for may call all of them new.
std::string versionOf(const HttpAnswer& answer) {
  const std::string changed = answer.header("Last-Modified");
  return answer.header("ETag") + ' ' + (changed == answer.header("Date") ? std::string() : changed);
}

}  // namespace

OrProblem<std::string> CoverageClient::fingerprint(const CoverageDescription& coverage,
                                                   const CoverageFormat& format) {
  auto told = describeAnew(coverage.id);
  if (auto* problem = std::get_if<CoverageProblem>(&told)) return std::move(*problem);
  const CoverageDescription& now = *std::get<Description>(told);
  std::string text = textOf(now, format);
  const std::vector<CoveragePart> parts = samplesOf(now);
  std::vector<HttpRequest> requests;
  for (const CoveragePart& part : parts)
    requests.push_back(pixels(now, part, format.name, format.bytesOfPixel));
  auto results = transport_.fetchAll(requests, requests.size());
  for (std::size_t i = 0; i < results.size(); ++i) {
    if (const auto* answer = std::get_if<HttpAnswer>(&results[i])) text += ' ' + versionOf(*answer);
    auto image = imageOf(std::move(results[i]));
    if (auto* problem = std::get_if<CoverageProblem>(&image)) return std::move(*problem);
    CoverageTiles tiles;
    const std::string problem = tiles.read(std::get<std::string>(image), now, format, parts[i], 1);
    if (!problem.empty()) return CoverageProblem{"", problem};
    const auto pixels = tiles.cut({parts[i].window.column, parts[i].window.column + parts[i].columns},
                                  {parts[i].window.row, parts[i].window.row + parts[i].rows});
    text += nameMark({reinterpret_cast<const char*>(pixels.data()), pixels.size()}, markDigits);
  }
  return nameMark(text, markDigits);
}

}  // namespace vlclientui::client
