#pragma once

#include <optional>
#include <vector>

class GDALDataset;

namespace vlclientui::client {

/// Numbers of all bands but transparency, in order; never empty.
[[nodiscard]] std::vector<int> colorBandsOf(GDALDataset& dataset);

/// The band for transparency; 0 without one.
[[nodiscard]] int alphaBandOf(GDALDataset& dataset);

/// The no-data value of each color band; nothing when the band's type cannot hold it.
using NoDataValues = std::vector<std::optional<double>>;

/// @param instead replaces what the bands declare.
[[nodiscard]] NoDataValues noDataOf(GDALDataset& dataset, std::optional<double> instead = std::nullopt);

[[nodiscard]] bool hasAnyNoData(const NoDataValues& values);

/// Equality under which NaN equals itself.
[[nodiscard]] bool isSameValue(double one, double other);

/// Whether a mask beside the bands marks holes.
[[nodiscard]] bool hasMaskOfItsOwn(GDALDataset& dataset);

/// Whether any pixel may be a hole, by transparency, mask or value.
/// @param noData replaces what the bands declare.
[[nodiscard]] bool hasHoles(GDALDataset& dataset, std::optional<double> noData = std::nullopt);

}  // namespace vlclientui::client
