#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <deque>
#include <utility>

#include <gdal_priv.h>

#include "client/connections/Refusal.h"
#include "client/network/CoverageClient.h"
#include "client/network/MemoryImage.h"
#include "client/raster/Text.h"
#include "client/transport/Transport.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t mostFormats = 8;
constexpr std::int64_t sampleSide = 64;
constexpr std::size_t requestsAtATime = 4;
constexpr std::uint64_t headBytes = std::uint64_t{1} << 20U;

bool isTiffName(const std::string& format) { return lowered(format).find("tif") != std::string::npos; }

bool isSpoken(const CoverageCapabilities& capabilities, std::string_view version) {
  return capabilities.versions.empty() ||
         std::ranges::find(capabilities.versions, version) != capabilities.versions.end();
}

CoveragePart middleOf(const CoverageDescription& coverage) {
  const std::int64_t width = std::min(sampleSide, coverage.columns);
  const std::int64_t height = std::min(sampleSide, coverage.rows);
  return {{(coverage.columns - width) / 2, (coverage.rows - height) / 2, width, height}, width, height};
}

constexpr int tooManyRequests = 429;
constexpr int firstOfServerFaults = 500;

// What may be otherwise the next time: it tells nothing of what the server gives.
bool isPassingFault(const HttpResult& result) {
  if (const auto* failure = std::get_if<HttpFailure>(&result)) return failure->fault != HttpFault::TooLarge;
  const auto& answer = std::get<HttpAnswer>(result);
  const bool isFault = answer.status == tooManyRequests || answer.status >= firstOfServerFaults;
  return isFault && !readException(answer.body);
}

CoverageProblem passingProblem(const HttpResult& result) {
  const auto* failure = std::get_if<HttpFailure>(&result);
  return {"", failure != nullptr ? failure->text : refusalText(std::get<HttpAnswer>(result))};
}

struct Sample {
  CoverageFormat format;
  std::vector<double> values;
};

std::optional<double> noDataOf(GDALRasterBand& band) {
  int has = FALSE;
  const double value = band.GetNoDataValue(&has);
  return has != FALSE ? std::optional(value) : std::nullopt;
}

std::optional<Sample> readSample(std::string_view image, const std::string& name) {
  const MemoryImage memory(image);
  GDALDataset* const raster = memory.raster();
  if (raster == nullptr || raster->GetRasterCount() == 0) return std::nullopt;
  const GDALDataType type = raster->GetRasterBand(1)->GetRasterDataType();
  Sample sample;
  sample.format = {name, GDALGetDataTypeName(type), raster->GetRasterCount(), {}, {}, 0};
  sample.format.bytesOfPixel = GDALGetDataTypeSizeBytes(type) * sample.format.bandCount;
  for (GDALRasterBand* band : raster->GetBands()) {
    sample.format.noData.push_back(noDataOf(*band));
    sample.format.colorInterpretations.emplace_back(
        GDALGetColorInterpretationName(band->GetColorInterpretation()));
  }
  const int width = raster->GetRasterXSize();
  const int height = raster->GetRasterYSize();
  sample.values.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  const CPLErr read = raster->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, width, height, sample.values.data(),
                                                         width, height, GDT_Float64, 0, 0, nullptr);
  return read == CE_None ? std::optional(std::move(sample)) : std::nullopt;
}

GDALDataType typeOf(const Sample& sample) { return GDALGetDataTypeByName(sample.format.dataType.c_str()); }

// Type of pixels that holds the most, first; of equals the one that was offered earlier.
const Sample& widestOf(const std::vector<Sample>& samples) {
  return *std::ranges::max_element(samples, [](const Sample& one, const Sample& other) {
    return GDALDataTypeUnion(typeOf(one), typeOf(other)) != typeOf(one);
  });
}

bool isHole(const Sample& sample, double value) {
  return std::isnan(value) || (!sample.format.noData.empty() && sample.format.noData[0] == value);
}

// A narrow type that changed values made the image of something else.
bool hasValuesOf(const Sample& sample, const Sample& widest) {
  if (sample.format.bandCount != widest.format.bandCount || sample.values.size() != widest.values.size())
    return false;
  for (std::size_t i = 0; i < sample.values.size(); ++i) {
    const bool isSame = sample.values[i] == widest.values[i];
    if (!isSame && !(isHole(sample, sample.values[i]) && isHole(widest, widest.values[i]))) return false;
  }
  return true;
}

bool holds(GDALDataType type, double value) {
  int isClamped = FALSE;
  int isRounded = FALSE;
  GDALAdjustValueToDataType(type, value, &isClamped, &isRounded);
  return isClamped == FALSE && isRounded == FALSE;
}

bool holdsRange(const Sample& sample, const CoverageDescription& coverage) {
  const GDALDataType type = typeOf(sample);
  return std::ranges::all_of(coverage.bands, [&](const CoverageBand& band) {
    if (!band.range || std::abs(band.range->second) > 1e37) return true;
    return holds(type, band.range->first) && holds(type, band.range->second);
  });
}

// Of the formats that are this coverage's own the first with true values; of those of all coverages the
// widest.
const Sample& bestOf(const std::vector<Sample>& samples, const CoverageDescription& coverage) {
  const Sample& widest = widestOf(samples);
  const bool areOwn = !coverage.formats.empty() || isTiffName(coverage.nativeFormat);
  if (!areOwn) return widest;
  for (const Sample& sample : samples) {
    if (hasValuesOf(sample, widest) && holdsRange(sample, coverage)) return sample;
  }
  return widest;
}

}  // namespace

OrProblem<std::string> imageOf(HttpResult&& result) {
  if (const auto* failure = std::get_if<HttpFailure>(&result)) return silenceOf(*failure);
  auto& answer = std::get<HttpAnswer>(result);
  auto image = readImage(answer.body, answer.header("Content-Type"));
  if (auto* problem = std::get_if<CoverageProblem>(&image)) {
    const bool isMute = problem->code.empty() && answer.status != 200;
    if (isMute) problem->text = refusalText(answer);
    return std::move(*problem);
  }
  const auto bytes = std::get<std::string_view>(image);
  if (bytes.size() == answer.body.size()) return std::move(answer.body);
  return std::string(bytes);
}

HttpRequest CoverageClient::pixels(const CoverageDescription& coverage, const CoveragePart& part,
                                   const std::string& format, int bytesOfPixel) {
  HttpRequest request;
  const auto capabilities = told();
  request.address = pixelsRequest(addressFor(capabilities->getAddress), capabilities->version, coverage,
                                  part.window, part.columns, part.rows, format);
  request.patience = Patience::Pixels;
  const auto count = static_cast<std::uint64_t>(part.columns) * static_cast<std::uint64_t>(part.rows);
  request.mostBytes = headBytes + 2 * count * static_cast<std::uint64_t>(bytesOfPixel);
  return request;
}

// Formats of a media type each are told apart by newer versions only as far as their types differ; the first
// one has names for them, and tells those of each coverage. These come first, then the native one.
OrProblem<std::vector<std::string>> CoverageClient::formatNames(const CoverageDescription& coverage) {
  const auto capabilities = told();
  std::vector<std::string> names;
  const auto add = [&](const std::string& name) {
    if (isTiffName(name) && std::ranges::find(names, name) == names.end()) names.push_back(name);
  };
  if (capabilities->version != CoverageVersion::V100 &&
      isSpoken(*capabilities, versionText(CoverageVersion::V100))) {
    HttpRequest request;
    request.address = descriptionRequest(address_, CoverageVersion::V100, {coverage.id});
    const auto result = transport_.fetch(request);
    if (isPassingFault(result)) return passingProblem(result);
    const auto* answer = std::get_if<HttpAnswer>(&result);
    const auto read =
        readDescriptions(answer == nullptr ? std::string() : answer->body, CoverageVersion::V100);
    if (const auto* found = std::get_if<std::vector<CoverageDescription>>(&read);
        found != nullptr && !found->empty()) {
      std::ranges::for_each(found->front().formats, add);
    }
  }
  add(coverage.nativeFormat);
  std::ranges::for_each(coverage.formats.empty() ? capabilities->formats : coverage.formats, add);
  if (names.size() > mostFormats) names.resize(mostFormats);
  return names;
}

OrProblem<CoverageFormat> CoverageClient::chooseFormat(const CoverageDescription& coverage) {
  auto asked = capabilities(Freshness::Remembered);
  if (auto* problem = std::get_if<CoverageProblem>(&asked)) return std::move(*problem);
  auto named = formatNames(coverage);
  if (auto* problem = std::get_if<CoverageProblem>(&named)) return std::move(*problem);
  const auto& names = std::get<std::vector<std::string>>(named);
  if (names.empty()) return CoverageProblem{"", "the server offers no TIFF images"};
  constexpr int mostBytesOfPixel = 4096;
  std::vector<HttpRequest> requests;
  for (const std::string& name : names) {
    requests.push_back(pixels(coverage, middleOf(coverage), name, mostBytesOfPixel));
  }
  std::vector<Sample> samples;
  std::optional<CoverageProblem> firstProblem;
  auto results = transport_.fetchAll(requests, requestsAtATime);
  for (std::size_t i = 0; i < results.size(); ++i) {
    if (isPassingFault(results[i])) return passingProblem(results[i]);
    auto image = imageOf(std::move(results[i]));
    if (auto* problem = std::get_if<CoverageProblem>(&image)) {
      if (!firstProblem) firstProblem = std::move(*problem);
    } else if (auto sample = readSample(std::get<std::string>(image), names[i])) {
      samples.push_back(*std::move(sample));
    }
  }
  if (!samples.empty()) return bestOf(samples, coverage).format;
  return firstProblem.value_or(CoverageProblem{"", "the server's images cannot be read"});
}

OrProblem<CoverageClient::TimedImage> CoverageClient::fetchTimed(const CoverageDescription& coverage,
                                                                 const CoverageFormat& format,
                                                                 const CoveragePart& part) {
  auto result = transport_.fetch(pixels(coverage, part, format.name, format.bytesOfPixel));
  const auto* answer = std::get_if<HttpAnswer>(&result);
  const double seconds = answer == nullptr ? 0 : answer->seconds;
  auto image = imageOf(std::move(result));
  if (auto* problem = std::get_if<CoverageProblem>(&image)) return std::move(*problem);
  return TimedImage{std::get<std::string>(std::move(image)), seconds};
}

void CoverageClient::fetch(const CoverageDescription& coverage, const CoverageFormat& format,
                           const std::vector<CoveragePart>& parts, const Each& each) {
  std::vector<HttpRequest> requests;
  for (const CoveragePart& part : parts)
    requests.push_back(pixels(coverage, part, format.name, format.bytesOfPixel));
  transport_.fetchEach(requests, requestsAtATime, [&](std::size_t index, HttpResult&& result) {
    return each(index, imageOf(std::move(result)));
  });
}

}  // namespace vlclientui::client
