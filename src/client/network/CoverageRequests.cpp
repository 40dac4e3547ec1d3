#include "client/network/CoverageRequests.h"

#include <algorithm>
#include <array>
#include <utility>

#include "client/raster/Text.h"
#include "client/transport/Address.h"

namespace vlclientui::client {
namespace {

using Parameters = std::vector<std::pair<std::string, std::string>>;

// The names that requests of this client set; a server's address may hold some of another request, pasted.
bool isOwn(std::string_view name) {
  static constexpr std::array<std::string_view, 22> names = {
      "service",     "request",     "version",  "acceptversions", "coverageid",  "coverage",
      "identifier",  "identifiers", "format",   "subset",         "scalesize",   "scalefactor",
      "bbox",        "crs",         "width",    "height",         "boundingbox", "gridbasecrs",
      "gridoffsets", "gridtype",    "sections", "mediatype"};
  const std::string small = lowered(name);
  return std::ranges::find(names, small) != names.end();
}

std::string ownQuery(const std::string& query) {
  std::string kept;
  std::size_t begin = 0;
  while (begin < query.size()) {
    const std::size_t end = std::min(query.find('&', begin), query.size());
    const std::string part = query.substr(begin, end - begin);
    if (!part.empty() && !isOwn(part.substr(0, part.find('=')))) kept += (kept.empty() ? "" : "&") + part;
    begin = end + 1;
  }
  return kept;
}

std::string requestTo(const std::string& server, std::string_view operation, const Parameters& parameters) {
  auto address = parsedAddress(server);
  if (!address) return {};
  address->query = ownQuery(address->query);
  std::string text = withParameter(address->text(), "SERVICE", "WCS");
  text = withParameter(text, "REQUEST", operation);
  for (const auto& [name, value] : parameters) text = withParameter(text, name, value);
  return text;
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : ",") + word;
  return text;
}

std::string pairText(double one, double other) { return numberText(one) + "," + numberText(other); }

std::string inOrder(AxisOrder order, double east, double north) {
  return order == AxisOrder::EastNorth ? pairText(east, north) : pairText(north, east);
}

std::string codeOf(const std::string& system) { return system.substr(system.find(':') + 1); }

Parameters secondVersion(const CoverageDescription& coverage, const Bounds& bounds, bool isScaled,
                         std::int64_t columns, std::int64_t rows) {
  Parameters parameters = {
      {"COVERAGEID", coverage.id},
      {"SUBSET", coverage.xLabel + "(" + pairText(bounds.xMin, bounds.xMax) + ")"},
      {"SUBSET", coverage.yLabel + "(" + pairText(bounds.yMin, bounds.yMax) + ")"},
  };
  for (const CoverageSlice& slice : coverage.slices)
    parameters.emplace_back("SUBSET", slice.label + "(" + slice.point + ")");
  if (isScaled) {
    parameters.emplace_back("SCALESIZE", coverage.xLabel + "(" + std::to_string(columns) + ")," +
                                             coverage.yLabel + "(" + std::to_string(rows) + ")");
  }
  return parameters;
}

// Boxes of 1.1 run between the centers of the outermost pixels of the image.
Parameters middleVersion(const CoverageDescription& coverage, const Bounds& bounds, std::int64_t columns,
                         std::int64_t rows) {
  const double across = (bounds.xMax - bounds.xMin) / static_cast<double>(columns);
  const double down = (bounds.yMax - bounds.yMin) / static_cast<double>(rows);
  const std::string system = "urn:ogc:def:crs:EPSG::" + codeOf(coverage.system);
  return {{"IDENTIFIER", coverage.id},
          {"BOUNDINGBOX", inOrder(coverage.axes, bounds.xMin + across / 2, bounds.yMin + down / 2) + "," +
                              inOrder(coverage.axes, bounds.xMax - across / 2, bounds.yMax - down / 2) + "," +
                              system},
          {"GRIDBASECRS", system},
          {"GRIDTYPE", "urn:ogc:def:method:WCS:1.1:2dSimpleGrid"},
          {"GRIDOFFSETS", inOrder(coverage.axes, across, -down)}};
}

Parameters firstVersion(const CoverageDescription& coverage, const Bounds& bounds, std::int64_t columns,
                        std::int64_t rows) {
  return {{"COVERAGE", coverage.id},
          {"CRS", coverage.system},
          {"BBOX", pairText(bounds.xMin, bounds.yMin) + "," + pairText(bounds.xMax, bounds.yMax)},
          {"WIDTH", std::to_string(columns)},
          {"HEIGHT", std::to_string(rows)}};
}

}  // namespace

std::string capabilitiesRequest(const std::string& server, std::optional<CoverageVersion> version) {
  if (version) return requestTo(server, "GetCapabilities", {{"VERSION", versionText(*version)}});
  return requestTo(server, "GetCapabilities", {{"ACCEPTVERSIONS", "2.0.1,1.1.1,1.0.0"}});
}

std::string descriptionRequest(const std::string& server, CoverageVersion version,
                               const std::vector<std::string>& ids) {
  const char* const name = version == CoverageVersion::V201   ? "COVERAGEID"
                           : version == CoverageVersion::V111 ? "IDENTIFIERS"
                                                              : "COVERAGE";
  return requestTo(server, "DescribeCoverage", {{"VERSION", versionText(version)}, {name, joined(ids)}});
}

std::string pixelsRequest(const std::string& server, CoverageVersion version,
                          const CoverageDescription& coverage, const PixelWindow& window,
                          std::int64_t columns, std::int64_t rows, const std::string& format) {
  const Bounds bounds = boundsOfWindow(coverage, window);
  const bool isScaled = columns != window.width || rows != window.height;
  Parameters parameters = version == CoverageVersion::V201
                              ? secondVersion(coverage, bounds, isScaled, columns, rows)
                          : version == CoverageVersion::V111 ? middleVersion(coverage, bounds, columns, rows)
                                                             : firstVersion(coverage, bounds, columns, rows);
  parameters.insert(parameters.begin(), {"VERSION", versionText(version)});
  parameters.emplace_back("FORMAT", format);
  return requestTo(server, "GetCoverage", parameters);
}

Bounds boundsOfWindow(const CoverageDescription& coverage, const PixelWindow& window) {
  const auto east = [&](std::int64_t column) {
    if (column == coverage.columns) return coverage.envelope.xMax;
    return coverage.envelope.xMin + static_cast<double>(column) * coverage.pixelWidth();
  };
  const auto north = [&](std::int64_t row) {
    if (row == coverage.rows) return coverage.envelope.yMin;
    return coverage.envelope.yMax - static_cast<double>(row) * coverage.pixelHeight();
  };
  return {east(window.column), north(window.row + window.height), east(window.column + window.width),
          north(window.row)};
}

}  // namespace vlclientui::client
