#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// The versions of the coverage service that are spoken, best first.
enum class CoverageVersion { V201, V111, V100 };

/// "2.0.1" and so on.
[[nodiscard]] std::string versionText(CoverageVersion version);

/// When pixels were taken, in the words of the server: days or moments as ISO 8601 writes them. Empty for an
/// open end.
struct CoverageDates {
  std::string from;
  std::string to;

  bool operator==(const CoverageDates&) const = default;
};

/// What the list of a server tells of one coverage.
struct CoverageSummary {
  std::string id;
  std::string title;
  std::string abstract;
  std::vector<std::string> keywords;
  std::optional<Bounds> geographic;  ///< WGS 84 degrees, longitude first
  std::optional<CoverageDates> dates = {};
};

/// What a server says of itself.
struct CoverageCapabilities {
  CoverageVersion version = CoverageVersion::V201;
  std::string title;
  std::string abstract;
  std::vector<std::string> keywords;
  std::vector<std::string> versions;  ///< that it offers; empty where it does not say
  std::string describeAddress;        ///< empty where it does not say
  std::string getAddress;
  std::vector<std::string> formats;  ///< of all coverages
  bool canScale = true;              ///< whether it gives pixels at another size
  std::vector<CoverageSummary> coverages;
};

struct CoverageBand {
  std::string name;
  std::string description;
  std::string unit;
  std::optional<double> noData;
  std::optional<std::pair<double, double>> range = {};  ///< that values stay within
};

/// Numbers along and across, in this order in the server's documents and requests.
enum class AxisOrder { EastNorth, NorthEast };

/// A point on an axis that no image has, such as a time or a height, as requests tell it.
struct CoverageSlice {
  std::string label;
  std::string point;  ///< a number, or a text in quotes

  bool operator==(const CoverageSlice&) const = default;
};

/// What is needed to ask for pixels of one coverage. Pixels lie north up, the first one at the north-west
/// corner.
struct CoverageDescription {
  std::string id;
  std::string title;
  std::string abstract;
  std::vector<std::string> keywords;
  std::string system;  ///< "EPSG:32632"; empty where the server names none that is known
  AxisOrder axes = AxisOrder::EastNorth;
  std::string xLabel;  ///< names of the axes in requests of 2.0.1
  std::string yLabel;
  std::vector<CoverageSlice> slices;  ///< of a coverage of more axes than two: where it is shown
  std::int64_t columns = 0;
  std::int64_t rows = 0;
  Bounds envelope;  ///< outer edges of the outermost pixels
  std::optional<Bounds> geographic;
  std::optional<CoverageDates> dates;
  std::vector<CoverageBand> bands;
  std::string nativeFormat;
  std::vector<std::string> formats;  ///< of this coverage; empty where the server tells those of all alone

  [[nodiscard]] double pixelWidth() const {
    return (envelope.xMax - envelope.xMin) / static_cast<double>(columns);
  }
  [[nodiscard]] double pixelHeight() const {
    return (envelope.yMax - envelope.yMin) / static_cast<double>(rows);
  }
};

}  // namespace vlclientui::client
