#pragma once

#include <optional>
#include <vector>

class GDALDataset;

namespace vlclientui::client {

/// Numbers of the bands that tell no transparency, in their order; never empty.
[[nodiscard]] std::vector<int> colorBandsOf(GDALDataset& dataset);

/// The band that tells transparency; 0 for none.
[[nodiscard]] int alphaBandOf(GDALDataset& dataset);

/// What "no data" is in each colour band; nothing where no pixel of the band's type could hold the value.
using NoDataValues = std::vector<std::optional<double>>;

/// @param instead for all bands, of what they declare.
[[nodiscard]] NoDataValues noDataOf(GDALDataset& dataset, std::optional<double> instead = std::nullopt);

[[nodiscard]] bool hasAnyNoData(const NoDataValues& values);

/// Not a number is the same as itself here.
[[nodiscard]] bool isSameValue(double one, double other);

/// True when a mask beside the bands tells of holes.
[[nodiscard]] bool hasMaskOfItsOwn(GDALDataset& dataset);

/// True when any pixel may be a hole: by transparency, by a mask or by a value.
/// @param noData instead of what the bands declare.
[[nodiscard]] bool hasHoles(GDALDataset& dataset, std::optional<double> noData = std::nullopt);

}  // namespace vlclientui::client
