#include "client/raster/RasterHoles.h"

#include <algorithm>
#include <cmath>

#include <gdal_priv.h>

namespace vlclientui::client {
namespace {

// A file may declare more digits than its pixels have, or a value of a wider type.
std::optional<double> fitted(GDALDataType type, double value) {
  int isClamped = 0;
  int isRounded = 0;
  const double adjusted = GDALAdjustValueToDataType(type, value, &isClamped, &isRounded);
  if (GDALDataTypeIsFloating(type) != 0) return adjusted;
  return isClamped != 0 || isRounded != 0 ? std::nullopt : std::optional<double>(value);
}

std::optional<double> declaredBy(GDALRasterBand& band) {
  int isSet = 0;
  const double value = band.GetNoDataValue(&isSet);
  return isSet != 0 ? std::optional<double>(value) : std::nullopt;
}

}  // namespace

int alphaBandOf(GDALDataset& dataset) {
  const int count = dataset.GetRasterCount();
  for (int band = 1; band <= count && count > 1; ++band) {
    if (dataset.GetRasterBand(band)->GetColorInterpretation() == GCI_AlphaBand) return band;
  }
  return 0;
}

std::vector<int> colorBandsOf(GDALDataset& dataset) {
  const int alpha = alphaBandOf(dataset);
  std::vector<int> bands;
  for (int band = 1; band <= dataset.GetRasterCount(); ++band) {
    if (band != alpha) bands.push_back(band);
  }
  return bands;
}

NoDataValues noDataOf(GDALDataset& dataset, std::optional<double> instead) {
  NoDataValues values;
  for (const int number : colorBandsOf(dataset)) {
    GDALRasterBand& band = *dataset.GetRasterBand(number);
    const auto value = instead ? instead : declaredBy(band);
    values.push_back(value ? fitted(band.GetRasterDataType(), *value) : std::nullopt);
  }
  return values;
}

bool hasAnyNoData(const NoDataValues& values) {
  return std::ranges::any_of(values, [](const auto& value) { return value.has_value(); });
}

bool isSameValue(double one, double other) { return one == other || (std::isnan(one) && std::isnan(other)); }

bool hasMaskOfItsOwn(GDALDataset& dataset) {
  const int flags = dataset.GetRasterBand(1)->GetMaskFlags();
  return (flags & (GMF_ALL_VALID | GMF_ALPHA)) == 0 && flags != GMF_NODATA;
}

bool hasHoles(GDALDataset& dataset, std::optional<double> noData) {
  return alphaBandOf(dataset) != 0 || hasAnyNoData(noDataOf(dataset, noData)) || hasMaskOfItsOwn(dataset);
}

}  // namespace vlclientui::client
