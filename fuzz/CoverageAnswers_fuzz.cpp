// Input: any bytes, as what a coverage service answers to each of its requests.

#include <cmath>
#include <variant>

#include "Require.h"
#include "client/network/CoverageAnswers.h"
#include "client/network/Coverages.h"

namespace {

using namespace vlclientui::client;
using vlclientui::fuzzing::require;

void check(const CoverageProblem& problem) {
  require(!problem.text.empty() || !problem.code.empty(), "a problem has words");
  static_cast<void>(isRefusedForSize(problem));
}

void check(const CoverageCapabilities& capabilities) {
  for (const CoverageSummary& coverage : capabilities.coverages)
    require(!coverage.id.empty(), "a coverage has an id");
}

void check(const CoverageDescription& coverage) {
  require(!coverage.id.empty(), "a coverage has an id");
  require(coverage.columns > 0 && coverage.rows > 0, "a coverage has pixels");
  const Bounds& place = coverage.envelope;
  require(std::isfinite(place.xMin) && std::isfinite(place.xMax) && place.xMin < place.xMax,
          "it has a width");
  require(std::isfinite(place.yMin) && std::isfinite(place.yMax) && place.yMin < place.yMax,
          "it has a height");
  require(coverage.pixelWidth() > 0 && coverage.pixelHeight() > 0, "its pixels have an area");
}

void check(const std::vector<CoverageDescription>& coverages) {
  for (const CoverageDescription& coverage : coverages) check(coverage);
}

void check(std::string_view image) { require(image.size() >= 4, "an image begins as one"); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view body(reinterpret_cast<const char*>(data), size);
  const auto checkEither = [](const auto& read) { check(read); };
  std::visit(checkEither, readCapabilities(body));
  for (const CoverageVersion version : {CoverageVersion::V201, CoverageVersion::V111, CoverageVersion::V100})
    std::visit(checkEither, readDescriptions(body, version));
  for (const char* const type : {"image/tiff", "multipart/related; boundary=\"wcs\"", "text/xml"})
    std::visit(checkEither, readImage(body, type));
  if (const auto problem = readException(body)) check(*problem);
  return 0;
}
